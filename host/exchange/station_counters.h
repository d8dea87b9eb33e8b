#pragma once

#include "host/exchange/exchange_report.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace cnet {

enum class StationState {
    Unknown,   ///< not asked, or not given up yet
    Answers,   ///< the last request that ended was answered
    Refuses,   ///< the last request that ended was refused
    Disturbed, ///< the last request was given up after answers that could not be used
    Away,      ///< the last request was given up without any answer
};

/** "answers", "refuses"... for a status line. */
QString stateName(StationState state);

/** What happened with one station. All times in milliseconds. */
struct StationCounters
{
    qint64 frames = 0;   ///< requests sent
    qint64 answers = 0;  ///< good answers
    qint64 retries = 0;  ///< requests that were sent again
    qint64 bad = 0;      ///< answers that could not be used
    qint64 timeouts = 0; ///< requests without a complete answer
    qint64 refusals = 0; ///< requests that the station refused
    double meanMs = 0;   ///< time to a complete answer, refusals included
    double worstMs = 0;

    StationState state = StationState::Unknown;
    QString lastRefusal; ///< in words; of the state Refuses
};

/** Keeps the counters of all stations and says when one goes and comes. */
class StationBook
{
public:
    /** @return what the user should be told; mostly nothing */
    QStringList note(const ExchangeReport &report, qint64 nowMs);

    const QMap<int, StationCounters> &all() const { return m_counters; }

private:
    struct Watch
    {
        qint64 timed = 0;          ///< answers that went into the mean
        qint64 silentSinceMs = -1; ///< when the first request was sent that nothing followed
        qint64 silentAttempts = 0;
        QSet<QString> refused; ///< requests that the user was told about
    };

    static void count(StationCounters &counters, Watch &watch, const ExchangeReport &report);
    static void noteSilence(StationCounters &counters, Watch &watch, const ExchangeReport &report,
                            QStringList &messages);
    static void noteReturn(StationCounters &counters, Watch &watch, const ExchangeReport &report,
                           qint64 nowMs, QStringList &messages);
    static void noteAnswer(StationCounters &counters, Watch &watch, const ExchangeReport &report,
                           QStringList &messages);

    QMap<int, StationCounters> m_counters;
    QMap<int, Watch> m_watches;
};

} // namespace cnet
