#include "gateway/service/pulse.h"

#include <algorithm>

namespace cnet::gateway {

Pulse::Pulse(RecorderThread &recorder, Clock &clock, int everyMs)
    : m_recorder(recorder)
    , m_everyMs(everyMs)
    , m_next(clock.makeAlarm())
{
    // Not asked again before it answered: a slow disk finds one question, not thousands.
    connect(m_next.get(), &Alarm::fired, &m_recorder, &RecorderThread::look);
    connect(&m_recorder, &RecorderThread::looked, this, &Pulse::handleAnswer, Qt::QueuedConnection);
}

void Pulse::stop()
{
    m_isStopped = true;
    m_next->cancel();
}

void Pulse::handleAnswer(const RecorderState &state)
{
    // An answer may have been on its way.
    if (!m_isStopped) {
        m_next->set(m_everyMs);
        Q_EMIT beat(state);
    }
}

int pulseMsFor(std::optional<qint64> watchdogMs)
{
    const qint64 halfMs = watchdogMs.value_or(2 * Pulse::kUsualMs) / 2;
    return static_cast<int>(std::clamp<qint64>(halfMs, 1, Pulse::kUsualMs));
}

} // namespace cnet::gateway
