#include "view/stations/numbers/request_rate.h"

namespace cnet::view {

namespace {

constexpr double kMsPerSecond = 1000;

} // namespace

void RequestRate::note(qint64 nowMs, qint64 total)
{
    if (!m_looks.isEmpty() && (total < m_looks.last().second || nowMs < m_looks.last().first)) {
        m_looks.clear();
    }
    if (!m_looks.isEmpty() && m_looks.last().first == nowMs) {
        m_looks.last().second = total;
        return;
    }
    m_looks.append({nowMs, total});
    while (m_looks.size() > 2 && m_looks.at(1).first <= nowMs - kWindowMs) {
        m_looks.removeFirst();
    }
}

std::optional<double> RequestRate::perSecond() const
{
    if (m_looks.size() < 2) {
        return std::nullopt;
    }
    const auto ms = static_cast<double>(m_looks.last().first - m_looks.first().first);
    return static_cast<double>(m_looks.last().second - m_looks.first().second) * kMsPerSecond / ms;
}

} // namespace cnet::view
