#pragma once

#include "host/address/item.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

namespace cnet {

enum class FrameDirection {
    Unknown, ///< it begins with none of the head characters
    Request, ///< ENQ: from the panel to a station
    Answer,  ///< ACK: a station did what it was asked for
    Refusal, ///< NAK: a station did not
};

/** What is to be thought of a frame. Where several hold, the first in this order. */
enum class FrameVerdict {
    NoFrame,    ///< it does not begin as one
    Malformed,  ///< a character stands where another belongs, or a station cannot do what it says
    Cut,        ///< it ends too early
    WrongCheck, ///< a block check other than the bytes have
    Mismatch,   ///< an answer that is not one to the request before it
    Good,
};

/** How much of a frame is explained. */
enum class Detail {
    Fields,  ///< all of it, field by field
    Summary, ///< what frameSummary() says, in a fraction of the time
};

/** A part of a frame. The fields of a frame follow one another without gaps. */
struct FrameField
{
    int offset = 0;   ///< of its first byte in the frame, from 0
    int length = 0;   ///< bytes; 0 for one that is missing
    QString name;     ///< "station", "words", "block check"
    QString meaning;  ///< "5", "D_W:100"; may be empty
    QString fault;    ///< what is wrong with it, in words; empty: nothing
    int faultAt = -1; ///< offset in the frame of the byte that is wrong; -1: none
};

/** Consecutive words, bits or contacts that a frame asks for or has. */
struct FrameRange
{
    Item item;                 ///< of an answer whose request is not known, only station and count
    bool hasAddress = true;    ///< false: the request would tell which they are
    bool isBit = false;        ///< one bit or contact, else words
    QVector<quint16> values;   ///< of a write request and of an answer to a read
    QVector<int> valueOffsets; ///< where each value stands in the frame
};

/** A frame and what each part of it means. */
struct DecodedFrame
{
    QByteArray bytes;
    FrameDirection direction = FrameDirection::Unknown;
    int station = -1;   ///< 0 to 255 as it stands there; -1: none
    QByteArray command; ///< "rSB", upper case where there is no block check
    Detail detail = Detail::Fields;
    QVector<FrameField> fields;   ///< from the first byte to the last; none of a Detail::Summary
    QVector<FrameRange> ranges;   ///< as far as the frame is right
    std::optional<int> errorCode; ///< of a refusal
    QByteArray checkFound;        ///< the block check as it stands there
    QByteArray checkExpected;     ///< empty where there is none, or no end to count to
    FrameVerdict verdict = FrameVerdict::Good;
    QString fault;    ///< what the verdict stands for, in words; empty: Good
    int faultAt = -1; ///< offset of the byte where it goes wrong; may be the size

    bool isGood() const { return verdict == FrameVerdict::Good; }
    bool writes() const { return command.startsWith('w') || command.startsWith('W'); }
};

} // namespace cnet
