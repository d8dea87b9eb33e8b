#pragma once

#include <QByteArray>
#include <QVector>

/** A change as some place tells it. */
struct Told
{
    QByteArray tag;
    QByteArray what;    ///< value, quality, cause and time
    bool isOld = false; ///< it is said to have waited
    int connection = 0; ///< of the gateway with that place

    QByteArray key() const { return tag + '|' + what; }
};

inline QByteArray whatOf(const QByteArray &value, const QByteArray &quality,
                         const QByteArray &cause, qint64 atMs)
{
    return value + '|' + quality + '|' + cause + '|' + QByteArray::number(atMs);
}
