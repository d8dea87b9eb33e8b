#pragma once

#include <QByteArray>
#include <QVector>

#include <array>

namespace bench {

/** Makes a station's answer to a block read: ACK, the words in hexadecimal, ETX, block check. */
QByteArray readAnswer(int station, const QVector<quint16> &words);

/** Makes a station's answer to a write. @param command as in the request: "wSB" or "wSS" */
QByteArray writeAnswer(int station, const char *command);

/**
 * Two alternating answers of each station to a block read. An answer does not contain its address,
 * so it can be used for every block of that length.
 */
class AnswerPair
{
public:
    /**
     * @param stations number of stations: 1, 2 and so on
     * @param words of the block
     * @param flip bits of every word in which the two answers differ; 0: they are the same
     */
    AnswerPair(int stations, int words, quint16 flip);

    /** @param turn 0 or 1 */
    QByteArray &of(int station, int turn)
    {
        return m_answers[static_cast<size_t>(turn)][station - 1];
    }

private:
    std::array<QVector<QByteArray>, 2> m_answers;
};

} // namespace bench
