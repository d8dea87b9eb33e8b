#pragma once

#include <QByteArray>

#include <optional>

namespace plc {

constexpr char kEtx = 0x03;
constexpr char kEot = 0x04;
constexpr char kEnq = 0x05;
constexpr char kAck = 0x06;
constexpr char kNak = 0x15;

/** Longest frame in both directions, with head, text, tail and block check. */
constexpr int kMaxFrameBytes = 256;
constexpr int kMaxStation = 31;
/** Behind head and station. */
constexpr int kCommandPosition = 3;
constexpr int kMaxBlocks = 16;
constexpr int kMaxNameLength = 16;
/** Most words of one rSB or wSB request. */
constexpr int kMaxWords = 60;

constexpr int kBlockCheckBytes = 2;

// ACK st(2) r SB(2) blocks(2) bytes(2) data ETX check(2): the longest answer of rSB
static_assert(1 + 2 + 1 + 2 + 2 + 2 + kMaxWords * 4 + 1 + kBlockCheckBytes <= kMaxFrameBytes);
// ACK st(2) r SS(2) blocks(2), 16 x { bytes(2) word(4) }, ETX check(2): the longest answer of rSS
static_assert(1 + 2 + 1 + 2 + 2 + kMaxBlocks * (2 + 4) + 1 + kBlockCheckBytes <= kMaxFrameBytes);

/** Why a PLC refuses a request; the values are the error codes in the NAK frame. */
enum class Refusal : quint16 {
    TooManyBlocks = 0x0003,
    NameTooLong = 0x0004,
    TypeNotSupported = 0x0007,
    Malformed = 0x0011,
    NoSuchAddress = 0x1132,
    TooManyWords = 0x1232,
    ExtraCharacters = 0x1234,
    TypesDiffer = 0x1332,
    NotHexadecimal = 0x1432,
};

/** A lower-case command letter carries a block check and wants one in the answer. */
constexpr bool wantsBlockCheck(char command)
{
    return command >= 'a' && command <= 'z';
}

/** The low byte of the sum of all bytes, as two upper-case hexadecimal characters. */
QByteArray blockCheck(const QByteArray &headToTail);

/** `value` as exactly `digits` upper-case hexadecimal characters; higher digits are dropped. */
QByteArray hex(quint32 value, int digits);

/** Appends the same to `text`. */
void appendHex(QByteArray &text, quint32 value, int digits);

/** Reads the fields of a frame from left to right, never past its end. */
class FieldReader
{
public:
    explicit FieldReader(QByteArray text);

    bool atEnd() const { return left() == 0; }
    int left() const { return static_cast<int>(m_text.size()) - m_position; }

    /** Takes the next `count` characters, or nothing at all if fewer are left. */
    std::optional<QByteArray> take(int count);

    /** Takes the next `digits` (at most 4) characters as a hexadecimal number of either case. */
    std::optional<int> takeHex(int digits);

private:
    QByteArray m_text;
    int m_position = 0;
};

} // namespace plc
