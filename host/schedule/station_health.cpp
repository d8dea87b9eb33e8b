#include "host/schedule/station_health.h"

#include <algorithm>

namespace cnet {

namespace {

const int kFirstPauseMs = 1000;
const int kLongestPauseMs = 30000;
const int kTurnedDownMs = 1000;
const double kShare = 0.05;
// Enough for the longest silence that is waited for.
const double kMostSavedMs = 10000;

} // namespace

StationHealth::StationHealth(qint64 nowMs)
    : m_savedAtMs(nowMs)
{}

void StationHealth::reopen(qint64 nowMs)
{
    m_stations.clear();
    m_savedMs = 0;
    m_savedAtMs = nowMs;
}

bool StationHealth::heard(int station)
{
    Station &known = m_stations[station];
    const bool was = known.state == State::Alive;
    known = Station();
    known.state = State::Alive;
    return !was;
}

bool StationHealth::missed(int station, qint64 nowMs)
{
    Station &known = m_stations[station];
    const bool was = known.state == State::Silent;
    known.state = State::Silent;
    const int doublings = std::min(known.missed, 5);
    ++known.missed;
    known.dueMs = nowMs + std::min(kFirstPauseMs << doublings, kLongestPauseMs);
    return !was;
}

bool StationHealth::turnedDownLately(int station, qint64 nowMs) const
{
    const std::optional<qint64> atMs = m_stations.value(station).turnedDownAtMs;
    return atMs && nowMs < *atMs + kTurnedDownMs;
}

bool StationHealth::mayCost(double costMs, qint64 nowMs)
{
    m_savedMs += static_cast<double>(nowMs - m_savedAtMs) * kShare;
    m_savedMs = std::min(m_savedMs, kMostSavedMs);
    m_savedAtMs = nowMs;
    return m_savedMs >= costMs;
}

std::optional<int> StationHealth::due(const QVector<int> &stations, qint64 nowMs) const
{
    std::optional<int> first;
    qint64 firstMs = nowMs;
    for (const int station : stations) {
        const Station known = m_stations.value(station);
        if (known.state != State::Alive && known.dueMs <= firstMs &&
            (!first || known.dueMs < firstMs)) {
            first = station;
            firstMs = known.dueMs;
        }
    }
    return first;
}

qint64 StationHealth::nextDueMs(const QVector<int> &stations) const
{
    qint64 next = -1;
    for (const int station : stations) {
        const Station known = m_stations.value(station);
        if (known.state != State::Alive && (next < 0 || known.dueMs < next)) {
            next = known.dueMs;
        }
    }
    return next;
}

} // namespace cnet
