#pragma once

#include "host/exchange/conversation.h"
#include "host/schedule/silent_station.h"
#include "host/schedule/station_health.h"

#include <QVector>

namespace cnet {

/**
 * Greets stations: before they are used for the first time, and again when they were silent. All
 * silent stations together cost the line a twentieth of its time at most; see StationHealth.
 */
class Greeter
{
public:
    enum class Admission {
        Granted,
        Asked,   ///< a station is being greeted
        Refused, ///< one does not answer
    };

    /** What became of a greeting. */
    enum class Verdict {
        Heard,
        Missed,
        Again, ///< a job waits for the station, which is greeted once more
    };

    /**
     * All references must outlive this object.
     * @param attempts how often a station is greeted for a job, 1 or more
     */
    Greeter(Conversation &conversation, const ResponseTimes &times, StationHealth &health,
            const Clock &clock, int attempts, SilentStation silentStation);

    /** Whether a job may talk to these stations now. */
    Admission admit(const QVector<int> &stations);

    /** Greets the one of these stations that is due, if it may. @return true when it did */
    bool greetDue(const QVector<int> &stations);

    /** The station for which admit() refused last. */
    int refused() const { return m_refused; }

    bool isUnderway() const { return m_greeted >= 0; }

    /** The station of the greeting that is out. */
    int station() const { return m_greeted; }

    Verdict take(const Reply &reply);

    /** The line is lost. */
    void forget();

private:
    void greet(int station, int patienceMs);
    bool turnsDown(int station);

    Conversation &m_conversation;
    const ResponseTimes &m_times;
    StationHealth &m_health;
    const Clock &m_clock;
    int m_attempts;
    SilentStation m_silentStation;
    int m_greeted = -1;  ///< station whose greeting is out
    int m_forJob = -1;   ///< station that a job waits for
    int m_greetings = 0; ///< that went out for it
    int m_refused = -1;
};

} // namespace cnet
