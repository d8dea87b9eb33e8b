#include "host/schedule/greeter.h"

#include "host/wire/fence_frame.h"

#include <algorithm>

namespace cnet {

namespace {

int greetingCharacters()
{
    static const FenceFrame fence = fenceFrame(0, 0);
    return static_cast<int>(fence.request.size()) + fence.answerLength;
}

} // namespace

Greeter::Greeter(Conversation &conversation, const ResponseTimes &times, StationHealth &health,
                 const Clock &clock, int attempts, SilentStation silentStation)
    : m_conversation(conversation)
    , m_times(times)
    , m_health(health)
    , m_clock(clock)
    , m_attempts(attempts)
    , m_silentStation(silentStation)
{}

void Greeter::greet(int station, int patienceMs)
{
    m_greeted = station;
    m_conversation.greet(station, patienceMs);
}

bool Greeter::turnsDown(int station)
{
    if (m_greetings >= m_attempts) {
        m_health.turnDown(station, m_clock.nowMs());
    }
    const bool silent = m_health.state(station) == StationHealth::State::Silent;
    return m_health.turnedDownLately(station, m_clock.nowMs()) ||
           (silent && m_silentStation == SilentStation::Fail);
}

Greeter::Admission Greeter::admit(const QVector<int> &stations)
{
    const auto missing = std::find_if(stations.cbegin(), stations.cend(),
                                      [this](int station) { return !m_health.isAlive(station); });
    if (missing == stations.cend()) {
        m_forJob = -1;
        return Admission::Granted;
    }
    if (m_forJob != *missing) {
        m_forJob = *missing;
        m_greetings = 0;
    }
    if (turnsDown(*missing)) {
        m_forJob = -1;
        m_refused = *missing;
        return Admission::Refused;
    }
    ++m_greetings;
    greet(*missing, m_times.patienceMs(*missing, greetingCharacters()));
    return Admission::Asked;
}

// The first two greetings of a station are short where others answer quickly: one may be lost, and
// a late answer is heard all the same. What comes after the first must be saved up, unless the line
// has nothing else to do.
bool Greeter::greetDue(const QVector<int> &stations)
{
    const qint64 nowMs = m_clock.nowMs();
    const auto station = m_health.due(stations, nowMs);
    if (!station) {
        return false;
    }
    const int characters = greetingCharacters();
    const int missed = m_health.missedGreetings(*station);
    const int glanceMs = m_times.glanceMs(*station, characters);
    const int patienceMs = std::min(m_times.patienceMs(*station, characters),
                                    glanceMs << std::clamp(missed - 1, 0, 10));
    const bool others = std::any_of(stations.cbegin(), stations.cend(),
                                    [this](int other) { return m_health.isAlive(other); });
    const bool affordable = m_health.mayCost(patienceMs, nowMs);
    if (others && missed > 0 && !affordable) {
        return false;
    }
    // Whatever job it was greeted for last is over, and waits for it no longer.
    m_forJob = -1;
    greet(*station, patienceMs);
    return true;
}

Greeter::Verdict Greeter::take(const Reply &reply)
{
    const int station = m_greeted;
    m_greeted = -1;
    if (reply.outcome == Outcome::Answered || reply.outcome == Outcome::Refused) {
        return Verdict::Heard;
    }
    m_health.charge(reply.tookMs);
    const bool again = m_forJob == station && m_greetings < m_attempts;
    return again ? Verdict::Again : Verdict::Missed;
}

void Greeter::forget()
{
    m_greeted = -1;
    m_forJob = -1;
}

} // namespace cnet
