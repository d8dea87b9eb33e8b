#include "gateway/store/store_rate.h"

#include <cmath>

namespace cnet::gateway {

namespace {

constexpr double kFadingMs = 60.0 * 60 * 1000;
constexpr double kFirstMs = 60.0 * 1000;

} // namespace

void StoreRate::start(qint64 nowMs)
{
    *this = StoreRate();
    m_lastMs = nowMs;
}

void StoreRate::note(qint64 nowMs, qint64 bytes)
{
    const double passedMs = static_cast<double>(nowMs - m_lastMs);
    const double kept = std::exp(-passedMs / kFadingMs);
    m_ms = m_ms * kept + passedMs;
    m_bytes = m_bytes * kept + static_cast<double>(bytes);
    m_lastMs = nowMs;
}

std::optional<double> StoreRate::perMs() const
{
    if (m_ms < kFirstMs) {
        return std::nullopt;
    }
    return m_bytes / m_ms;
}

} // namespace cnet::gateway
