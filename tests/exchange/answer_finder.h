#pragma once

#include <QByteArray>

namespace exchange {

/**
 * Finds the answer in what a line brings, as a good host does.
 *
 * What comes before ACK or NAK is skipped: noise, or the echo of the request. From there the answer
 * runs to ETX and the two characters of the block check. Where no ETX comes it ends after as many
 * bytes as a good answer has, or as a refusal has when it begins with NAK.
 */
class AnswerFinder
{
public:
    /** @param expectedLength bytes of a good answer */
    explicit AnswerFinder(int expectedLength);

    /** @return true once the answer is complete; further bytes are dropped. */
    bool add(const QByteArray &bytes);

    /** What has come of the answer so far. */
    QByteArray answer() const { return m_answer; }

private:
    bool add(char byte);

    int m_expectedLength;
    int m_checkBytesMissing = -1; ///< not negative: ETX was seen
    QByteArray m_answer;
};

} // namespace exchange
