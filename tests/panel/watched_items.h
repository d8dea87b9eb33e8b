#pragma once

#include "host/monitor/monitor.h"
#include "host/support/test_registers.h"

namespace cnet {

/** Time in milliseconds on the session's clock, and the same for people: 2024-05-06 07:08:09.010 at
 * 1000. */
inline Monitor::Surroundings momentAt(qint64 nowMs, bool lineOpen = true)
{
    Monitor::Surroundings now;
    now.nowMs = nowMs;
    now.wallMs =
        QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9, 10)).toMSecsSinceEpoch() + nowMs - 1000;
    now.lineOpen = lineOpen;
    now.dueMs = 2000;
    return now;
}

inline Failure noAnswer()
{
    Failure failure;
    failure.kind = Failure::NoAnswer;
    failure.sent = true;
    return failure;
}

} // namespace cnet
