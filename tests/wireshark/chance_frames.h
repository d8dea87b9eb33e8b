#pragma once

#include "support/random.h"

#include <QByteArray>
#include <QList>

/**
 * Frames as they might go over a line: requests and answers that belong together or not, many of
 * them damaged. Built from the published layout alone.
 */
class ChanceFrames
{
public:
    explicit ChanceFrames(std::uint64_t seed)
        : m_random(seed)
    {}

    /** The next frame or noise, never empty. */
    QByteArray next();

private:
    /** A request as far as its answer depends on it. */
    struct Asked
    {
        QByteArray head;  ///< station, command and type
        QList<int> words; ///< of each block; 0 for a bit
    };

    QByteArray number(int value, int digits) const;
    QByteArray data(int words);
    QByteArray name(bool bit);
    QByteArray request();
    QByteArray answer();
    QByteArray refusal();
    QByteArray answerTo(const Asked &asked);
    void damage(QByteArray &frame);
    QByteArray framed(char head, const QByteArray &text, char tail) const;

    Random m_random;
    Asked m_asked;
};
