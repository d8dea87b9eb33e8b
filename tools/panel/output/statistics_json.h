#pragma once

#include "host/statistics/statistics.h"

#include <QByteArray>
#include <QDateTime>

namespace cnet::panel {

/** A moment of a session: when it is, and on what line. */
struct StatisticsMoment
{
    QString link;     ///< name of the link
    qint64 nowMs = 0; ///< on the session's clock
    QDateTime time;   ///< the same for people
};

/** All numbers of a session as one JSON object; doc/panel.md describes its fields. */
QByteArray statisticsJson(const Statistics &statistics, const StatisticsMoment &moment);

} // namespace cnet::panel
