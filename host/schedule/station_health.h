#pragma once

#include <QMap>
#include <QVector>

#include <optional>

namespace cnet {

/**
 * Which stations answer, and when one that does not is asked whether it is back.
 *
 * A silent station is left alone for a second, then twice as long each time up to half a minute.
 * All silent stations together never take more than a twentieth of the line's time: what their
 * silence costs is saved up first, unless nobody else has use for the line.
 */
class StationHealth
{
public:
    enum class State {
        Unproven, ///< not asked since the line was opened
        Alive,
        Silent,
    };

    explicit StationHealth(qint64 nowMs = 0);

    /** The line was opened: whoever was there may be gone, and others have come. */
    void reopen(qint64 nowMs);

    State state(int station) const { return m_stations.value(station).state; }
    bool isAlive(int station) const { return state(station) == State::Alive; }

    /** A station answered. @return true when it was not alive before */
    bool heard(int station);

    /** A station was given up. @return true when it was not silent before */
    bool missed(int station, qint64 nowMs);

    /** Time of the line that went into a station's silence. */
    void charge(double lostMs) { m_savedMs -= lostMs; }

    /** True when a greeting that may cost so much is within the bounds. */
    bool mayCost(double costMs, qint64 nowMs);

    /** The station among these that is due for a greeting; nothing where none is. */
    std::optional<int> due(const QVector<int> &stations, qint64 nowMs) const;

    /** When the next of these is due; -1: none is silent or unproven. */
    qint64 nextDueMs(const QVector<int> &stations) const;

    /** Greetings without an answer since the station was heard last. */
    int missedGreetings(int station) const { return m_stations.value(station).missed; }

    /** A job was turned down: the station was greeted for it and did not answer. */
    void turnDown(int station, qint64 nowMs) { m_stations[station].turnedDownAtMs = nowMs; }

    /** True for a second after that: the next job need not wait for the same. */
    bool turnedDownLately(int station, qint64 nowMs) const;

private:
    struct Station
    {
        State state = State::Unproven;
        int missed = 0;
        std::optional<qint64> turnedDownAtMs;
        qint64 dueMs = 0;
    };

    QMap<int, Station> m_stations;
    double m_savedMs = 0;
    qint64 m_savedAtMs = 0;
};

} // namespace cnet
