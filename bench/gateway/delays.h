#pragma once

#include <array>

namespace bench {

/** How often something took how many milliseconds, up to a minute. */
class Delays
{
public:
    /** Notes one of each from `fromMs` to `toMs`. */
    void add(int fromMs, int toMs);

    /** @param share of all, above 0 and up to 1 @return milliseconds that so many did not exceed */
    int percentile(double share) const;

private:
    static constexpr int kMost = 60000;

    std::array<long long, kMost + 1> m_steps{}; ///< where the counts rise and fall
};

} // namespace bench
