#pragma once

#include "host/exchange/exchange_report.h"

#include <QMap>
#include <QSet>
#include <QString>

namespace cnet {

/** What is known of a station from its last request. */
enum class StationState {
    Unknown,   ///< not asked, or not given up yet
    Answers,   ///< the last request that ended was answered
    Refuses,   ///< the last request that ended was refused
    Disturbed, ///< given up after answers that could not be used
    Away,      ///< given up without any answer
};

/** "answers", "refuses"... for a status line. */
QString stateName(StationState state);

/** What happened with one station. All times in milliseconds. */
struct StationCounters
{
    qint64 frames = 0;   ///< requests sent
    qint64 answers = 0;  ///< good answers
    qint64 retries = 0;  ///< requests that were sent again
    qint64 bad = 0;      ///< answers that could not be used, those cut short included
    qint64 timeouts = 0; ///< requests to which nothing came
    qint64 refusals = 0; ///< requests that the station refused
    qint64 late = 0;     ///< answers that came after their time-out
    double meanMs = 0;   ///< from the first sending to the complete answer, refusals included
    double worstMs = 0;

    StationState state = StationState::Unknown;
    QString lastRefusal; ///< in words; of the state Refuses
};

/** Counts what happens with each station, and words the notices about it. */
class StationBook
{
public:
    /** @return a notice; mostly empty */
    QString note(const ExchangeReport &report);

    /** An answer came after its time-out. */
    void noteLate(int station) { ++m_counters[station].late; }

    /** The station was given up. @return a notice */
    QString noteAway(int station, qint64 nowMs);

    /** The station answers again. @return a notice; empty where it was not away */
    QString noteBack(int station, qint64 nowMs);

    /** The line was opened anew: nothing is known of anybody's state. */
    void forgetStates();

    const QMap<int, StationCounters> &all() const { return m_counters; }

private:
    struct Watch
    {
        qint64 timed = 0;          ///< answers that went into the mean
        qint64 silentSinceMs = -1; ///< when the first unanswered request was sent
        qint64 missed = 0;         ///< requests since then
        bool cameSomething = false;
        bool away = false;
        QSet<AddressRange> refused; ///< refused requests that a notice was about
    };

    static void count(StationCounters &counters, Watch &watch, const ExchangeReport &report);

    QMap<int, StationCounters> m_counters;
    QMap<int, Watch> m_watches;
};

} // namespace cnet
