#pragma once

#include "host/exchange/exchange_report.h"
#include "host/statistics/exchange_counters.h"

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

/** What happened with one station, and how it stands. */
struct StationCounters : ExchangeCounters
{
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

    /** Counts from 0 again. What is known of each station's state stays. */
    void resetCounters();

    const QMap<int, StationCounters> &all() const { return m_counters; }

private:
    struct Watch
    {
        qint64 silentSinceMs = -1; ///< when the first request was sent that nothing followed
        qint64 missed = 0;         ///< requests since then
        bool cameSomething = false;
        bool away = false;
        QSet<AddressRange> refused; ///< refused requests that a notice was about
    };

    QMap<int, StationCounters> m_counters;
    QMap<int, Watch> m_watches;
};

} // namespace cnet
