#include "host/statistics/line_meter.h"

#include <algorithm>

namespace cnet {

namespace {

const qint64 kMsPerSecond = 1000;

} // namespace

void LineMeter::start(qint64 nowMs)
{
    *this = LineMeter();
    m_startMs = nowMs;
}

LineMeter::Second &LineMeter::now(qint64 nowMs)
{
    const qint64 number = std::max<qint64>(0, nowMs - m_startMs) / kMsPerSecond;
    Second &second = m_seconds.at(static_cast<size_t>(number) % m_seconds.size());
    if (second.number != number) {
        second = Second();
        second.number = number;
    }
    return second;
}

void LineMeter::sent(qint64 bytes, qint64 nowMs)
{
    m_sentBytes += bytes;
    now(nowMs).sentBytes += bytes;
}

void LineMeter::received(qint64 bytes, qint64 nowMs)
{
    m_receivedBytes += bytes;
    now(nowMs).receivedBytes += bytes;
}

LineTraffic LineMeter::all(qint64 nowMs) const
{
    LineTraffic traffic;
    traffic.sentBytes = m_sentBytes;
    traffic.receivedBytes = m_receivedBytes;
    traffic.seconds = static_cast<double>(nowMs - m_startMs) / kMsPerSecond;
    return traffic;
}

LineTraffic LineMeter::recent(qint64 nowMs) const
{
    const qint64 end = (nowMs - m_startMs) / kMsPerSecond;
    if (end < 1) {
        return all(nowMs);
    }
    const qint64 begin = std::max<qint64>(0, end - kRecentSeconds);
    LineTraffic traffic;
    for (const Second &second : m_seconds) {
        if (second.number >= begin && second.number < end) {
            traffic.sentBytes += second.sentBytes;
            traffic.receivedBytes += second.receivedBytes;
        }
    }
    traffic.seconds = static_cast<double>(end - begin);
    return traffic;
}

} // namespace cnet
