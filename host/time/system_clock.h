#pragma once

#include "host/time/clock.h"

#include <QDateTime>
#include <QElapsedTimer>

namespace cnet {

/** The system's clock and the event loop's timers. One for the process. */
class SystemClock : public Clock
{
public:
    SystemClock();

    qint64 nowNs() const override { return m_clock.nsecsElapsed(); }
    qint64 wallMs() const override { return QDateTime::currentMSecsSinceEpoch(); }
    std::unique_ptr<Alarm> makeAlarm() override;

    static SystemClock &instance();

private:
    QElapsedTimer m_clock;
};

} // namespace cnet
