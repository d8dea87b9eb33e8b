#include "host/statistics/statistics.h"

namespace cnet {

void Statistics::reset(qint64 nowMs)
{
    m_sinceMs = nowMs;
    m_stations.resetCounters();
    m_blocks.clear();
    m_meter.start(nowMs);
}

std::optional<double> Statistics::loadPercent(const LineTraffic &traffic) const
{
    if (!m_line) {
        return std::nullopt;
    }
    const double microseconds = 1000000;
    return traffic.loadPercent(m_line->bitsOfCharacter() * microseconds / m_line->baud);
}

QString Statistics::note(const ExchangeReport &report)
{
    m_blocks.note(report);
    return m_stations.note(report);
}

} // namespace cnet
