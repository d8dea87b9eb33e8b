#pragma once

#include <array>

namespace cnet {

/** What time-outs are calculated from. */
struct TimeoutSettings
{
    int fixedMs = 0; ///< how long an answer may take, 1 or more; 0: found out, see ResponseTimes
    int characterMicroseconds = 10000000 / 38400; ///< time of one character on the line
};

/**
 * Measures how long each station takes to answer, and derives its time-out.
 *
 * The time-out begins with half a second for the PLC's own time and twice what both frames take on
 * the line. A station whose answers come later than that gets more time, up to ten seconds; when it
 * becomes quick again, the time-out follows slowly. A fixed time-out stays as it is.
 */
class ResponseTimes
{
public:
    explicit ResponseTimes(const TimeoutSettings &settings = TimeoutSettings());

    /** Milliseconds that the answer may take. @param characters of request and answer together */
    int timeoutMs(int station, int characters) const;

    /**
     * The same for a fence: at least as long as the station was found to take, even where the
     * time-out is fixed.
     */
    int patienceMs(int station, int characters) const;

    /** Time for a first sign of life where other stations answer quickly; at most patienceMs(). */
    int glanceMs(int station, int characters) const;

    /** An answer came. @param tookMs from its first sending, 0 or more */
    void note(int station, double tookMs);

    /** The slowest recent answer; 0: none came. */
    double slowestMs(int station) const { return of(station); }

    /** A fixed time-out that would do for this station; 0: the present one does. */
    int neededMs(int station) const;

private:
    double &of(int station) { return m_slowestMs.at(static_cast<unsigned char>(station)); }
    double of(int station) const { return m_slowestMs.at(static_cast<unsigned char>(station)); }
    int lineMs(int characters) const;

    TimeoutSettings m_settings;
    std::array<double, 256> m_slowestMs{};
};

} // namespace cnet
