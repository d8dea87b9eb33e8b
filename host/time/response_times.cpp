#include "host/time/response_times.h"

#include <algorithm>

namespace cnet {

namespace {

const int kPlcTimeMs = 500;
const int kLongestTimeoutMs = 10000;
const int kShortestGlanceMs = 50;

// Room above the slowest answer so far.
int withRoom(double slowestMs)
{
    return static_cast<int>(std::min<double>(slowestMs * 3 / 2 + 1, kLongestTimeoutMs));
}

} // namespace

ResponseTimes::ResponseTimes(const TimeoutSettings &settings)
    : m_settings(settings)
{}

int ResponseTimes::lineMs(int characters) const
{
    return std::max(0, characters) * m_settings.characterMicroseconds / 1000;
}

int ResponseTimes::timeoutMs(int station, int characters) const
{
    if (m_settings.fixedMs > 0) {
        return m_settings.fixedMs;
    }
    return std::max(kPlcTimeMs + 2 * lineMs(characters), withRoom(of(station)));
}

int ResponseTimes::patienceMs(int station, int characters) const
{
    return std::max(timeoutMs(station, characters), withRoom(of(station)));
}

int ResponseTimes::glanceMs(int station, int characters) const
{
    const double slowestMs = *std::max_element(m_slowestMs.cbegin(), m_slowestMs.cend());
    const int patience = patienceMs(station, characters);
    const int glance =
        std::max(kShortestGlanceMs, static_cast<int>(4 * slowestMs)) + 2 * lineMs(characters);
    return slowestMs > 0 ? std::min(glance, patience) : patience;
}

void ResponseTimes::note(int station, double tookMs)
{
    const double fading = 0.999;
    double &slowest = of(station);
    slowest = std::max(tookMs, slowest * fading);
}

int ResponseTimes::neededMs(int station) const
{
    const bool tooShort = m_settings.fixedMs > 0 && of(station) > m_settings.fixedMs;
    return tooShort ? withRoom(of(station)) : 0;
}

} // namespace cnet
