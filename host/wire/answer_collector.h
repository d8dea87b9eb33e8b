#pragma once

#include <QByteArray>

namespace cnet {

/**
 * Finds the answers in the bytes of a line, however they come in.
 *
 * What comes before ACK or NAK is noise. An answer ends two characters behind ETX; one that grows
 * beyond the longest frame is noise too. Answers are printable between their control characters, so
 * an ACK or NAK within one begins a new answer.
 */
class AnswerCollector
{
public:
    /** Forgets what has come so far. */
    void clear();

    /**
     * Takes bytes up to the end of the next answer.
     *
     * @param expectedLength bytes of the answer that is most likely to come; only speed depends on
     * it
     * @return how many bytes were taken: all, or fewer when the answer is complete
     */
    int add(const QByteArray &bytes, int expectedLength);

    /** True once a whole answer is here; clear() before the next add(). */
    bool isComplete() const { return m_complete; }

    /** True once ACK or NAK was seen. */
    bool hasBegun() const { return !m_answer.isEmpty(); }

    /** Bytes that are missing of an answer of this length that has begun; a refusal is short. */
    int missing(int expectedLength) const;

    /** What has come of the answer, from ACK or NAK on; where none began, the noise, as far as
     * kept. */
    QByteArray answer() const { return m_answer.isEmpty() ? m_noise : m_answer; }

    /** Bytes that belong to no answer. */
    int strayBytes() const { return m_strayBytes; }

private:
    void addByte(char byte);
    void dropAsNoise(const QByteArray &bytes);

    QByteArray m_answer;
    QByteArray m_noise;
    int m_bytesMissing = -1; ///< not negative: ETX was seen, this many characters remain
    int m_strayBytes = 0;
    bool m_complete = false;
};

} // namespace cnet
