#include "host/exchange/deadline.h"

namespace cnet {

Deadline::Deadline(QObject *parent)
    : QObject(parent)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Deadline::look);
}

void Deadline::set(int ms)
{
    const qint64 nowMs = m_clock.elapsed();
    m_set = true;
    m_dueMs = nowMs + ms;
    if (!m_timer.isActive() || m_dueMs < m_strikesMs) {
        m_strikesMs = m_dueMs;
        m_timer.start(ms);
    }
}

void Deadline::look()
{
    if (!m_set) {
        return;
    }
    const qint64 leftMs = m_dueMs - m_clock.elapsed();
    if (leftMs > 0) {
        m_strikesMs = m_dueMs;
        m_timer.start(static_cast<int>(leftMs));
        return;
    }
    m_set = false;
    Q_EMIT passed();
}

} // namespace cnet
