#include "delays.h"

#include <algorithm>

namespace bench {

void Delays::add(int fromMs, int toMs)
{
    const int from = std::clamp(fromMs, 0, kMost - 1);
    const int to = std::clamp(toMs, from, kMost - 1);
    ++m_steps[static_cast<size_t>(from)];
    --m_steps[static_cast<size_t>(to) + 1];
}

int Delays::percentile(double share) const
{
    long long count = 0;
    long long all = 0;
    for (const long long step : m_steps) {
        count += step;
        all += count;
    }
    long long sum = 0;
    count = 0;
    for (int ms = 0; ms < kMost; ++ms) {
        count += m_steps[static_cast<size_t>(ms)];
        sum += count;
        if (static_cast<double>(sum) >= share * static_cast<double>(all)) {
            return ms;
        }
    }
    return kMost;
}

} // namespace bench
