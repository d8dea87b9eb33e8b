#include "host/time/system_clock.h"

#include <QTimer>

namespace cnet {

namespace {

/**
 * An alarm for what hardly ever happens: it is set and cancelled again with every request. That
 * costs no more than noting the time; the timer behind it runs on, and looks for itself what is due
 * when it fires.
 */
class SystemAlarm : public Alarm
{
public:
    explicit SystemAlarm(const Clock &clock)
        : m_clock(clock)
    {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
    }

    void set(int ms) override
    {
        m_set = true;
        m_dueNs = m_clock.nowNs() + ms * kNsPerMs;
        if (!m_timer.isActive() || m_dueNs < m_firesNs) {
            m_firesNs = m_dueNs;
            m_timer.start(ms);
        }
    }

    void cancel() override { m_set = false; }

private:
    void look()
    {
        if (!m_set) {
            return;
        }
        const qint64 leftNs = m_dueNs - m_clock.nowNs();
        if (leftNs > 0) {
            m_firesNs = m_dueNs;
            m_timer.start(static_cast<int>((leftNs + kNsPerMs - 1) / kNsPerMs));
            return;
        }
        m_set = false;
        Q_EMIT fired();
    }

    const Clock &m_clock;
    QTimer m_timer;
    bool m_set = false;
    qint64 m_dueNs = 0;   ///< when the alarm is due
    qint64 m_firesNs = 0; ///< when the timer fires, if it runs
};

} // namespace

SystemClock::SystemClock()
{
    m_clock.start();
}

std::unique_ptr<Alarm> SystemClock::makeAlarm()
{
    return std::make_unique<SystemAlarm>(*this);
}

SystemClock &SystemClock::instance()
{
    static SystemClock clock;
    return clock;
}

} // namespace cnet
