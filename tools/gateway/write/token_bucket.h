#pragma once

#include "gateway/config/gateway_config.h"

#include <algorithm>

namespace cnet::gateway {

/** Counts how often something may still happen: each time takes a token, and time brings them. */
class TokenBucket
{
public:
    /** @param nowMs on a clock that never falls, here and below */
    TokenBucket(const WriteRate &rate, qint64 nowMs)
        : m_rate(rate)
        , m_tokens(rate.burst)
        , m_filledMs(nowMs)
    {}

    bool hasToken(qint64 nowMs)
    {
        const double more = static_cast<double>(nowMs - m_filledMs) * m_rate.perMinute / kMinuteMs;
        m_tokens = std::min<double>(m_rate.burst, m_tokens + more);
        m_filledMs = nowMs;
        return m_tokens >= 1 - kSlack;
    }

    /** After hasToken(). */
    void take() { m_tokens = std::max(0.0, m_tokens - 1); }

private:
    static constexpr double kMinuteMs = 60000;
    static constexpr double kSlack = 1e-9; ///< of sums of small parts

    WriteRate m_rate;
    double m_tokens;
    qint64 m_filledMs;
};

} // namespace cnet::gateway
