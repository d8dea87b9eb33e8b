#include "answers.h"

namespace bench {

namespace {

// "0A" for 10 and 2 digits.
QByteArray hexText(int value, int digits)
{
    return QByteArray::number(value, 16).toUpper().rightJustified(digits, '0', true);
}

QByteArray framed(const QByteArray &text)
{
    const QByteArray answer = QByteArray(1, '\x06') + text + QByteArray(1, '\x03');
    unsigned sum = 0;
    for (const char character : answer) {
        sum += static_cast<unsigned char>(character);
    }
    return answer + hexText(static_cast<int>(sum % 256), 2);
}

quint16 wordAt(int index)
{
    return static_cast<quint16>(0x1203 + 257 * index);
}

} // namespace

QByteArray readAnswer(int station, const QVector<quint16> &words)
{
    QByteArray text =
        hexText(station, 2) + "rSB01" + hexText(2 * static_cast<int>(words.size()), 2);
    for (const quint16 word : words) {
        text += hexText(word, 4);
    }
    return framed(text);
}

QByteArray writeAnswer(int station, const char *command)
{
    return framed(hexText(station, 2) + command);
}

AnswerPair::AnswerPair(int stations, int words, quint16 flip)
{
    for (int turn = 0; turn < 2; ++turn) {
        QVector<quint16> values;
        for (int i = 0; i < words; ++i) {
            values.append(static_cast<quint16>(wordAt(i) ^ (turn == 0 ? 0 : flip)));
        }
        for (int station = 1; station <= stations; ++station) {
            m_answers[static_cast<size_t>(turn)].append(readAnswer(station, values));
        }
    }
}

} // namespace bench
