#pragma once

#include "host/monitor/item_state.h"

#include <QByteArray>
#include <QDateTime>

namespace cnet::view {

/** Times of rows as files have them, "2024-05-01T12:00:00.123+02:00". Taking a date apart takes
 * longer than all the rest of a row, so that of the last second is kept. */
class RowTime
{
public:
    /** @param atMs since the epoch, 0 or more */
    QByteArray text(qint64 atMs)
    {
        const qint64 second = atMs / kMsPerSecond;
        if (second != m_second) {
            m_second = second;
            const QByteArray whole =
                wallTime(second * kMsPerSecond + 1).toString(Qt::ISODateWithMs).toLatin1();
            m_begin = whole.left(kMsAt);
            m_zone = whole.mid(kMsAt + 3);
        }
        return m_begin + QByteArray::number(atMs % kMsPerSecond).rightJustified(3, '0') + m_zone;
    }

private:
    static constexpr qint64 kMsPerSecond = 1000;
    static constexpr int kMsAt = 20; ///< behind the point

    qint64 m_second = -1;
    QByteArray m_begin;
    QByteArray m_zone;
};

} // namespace cnet::view
