#pragma once

#include <QByteArray>

namespace cnet {

constexpr char kEtx = 0x03;
constexpr char kEot = 0x04;
constexpr char kEnq = 0x05;
constexpr char kAck = 0x06;
constexpr char kNak = 0x15;
constexpr int kBlockCheckLength = 2;

// NAK st(2) command(1) type(2) error code(4) ETX BCC(2)
constexpr int kRefusalLength = 1 + 2 + 1 + 2 + 4 + 1 + kBlockCheckLength;

/**
 * Finds the end of an answer in the bytes of a line, however they come in.
 *
 * What comes before ACK or NAK is noise. The answer ends two characters behind ETX or, where there
 * is no ETX, after as many bytes as were expected. Answers are printable between their control
 * characters, so an ACK or NAK within one begins a new answer.
 */
class AnswerCollector
{
public:
    /** @param expectedLength bytes of a good answer, at least 1 */
    void begin(int expectedLength);

    /** @return true once the answer is complete; further bytes are dropped */
    bool add(const QByteArray &bytes);

    bool isComplete() const { return m_complete; }

    /** True once ACK or NAK was seen. */
    bool hasBegun() const { return !m_answer.isEmpty(); }

    /**
     * What is to be handed to the driver: the answer; where none began, the noise, as far as it was
     * kept, since the driver describes what it was given.
     */
    QByteArray answer() const { return m_answer.isEmpty() ? m_noise : m_answer; }

    /** Bytes that belong to no answer, those behind it included. */
    int strayBytes() const { return m_strayBytes; }

private:
    bool isWholeAnswer(const QByteArray &bytes) const;
    int plainBytes(const char *bytes, int count) const;
    int longestAnswer() const;
    void addByte(char byte);
    void dropAsNoise(const QByteArray &bytes);

    QByteArray m_answer;
    QByteArray m_noise;
    int m_expectedLength = 1;
    int m_bytesMissing =
        -1; ///< not negative: ETX was seen, this many block check characters remain
    int m_strayBytes = 0;
    bool m_complete = false;
};

} // namespace cnet
