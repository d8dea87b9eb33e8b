#include "host/statistics/station_book.h"

#include "host/address/value_text.h"
#include "host/wire/frame_words.h"

namespace cnet {

namespace {

// Far more than a session reads at a time. Who asks for others all its life is told of them again.
const int kMostRefused = 1000;

} // namespace

QString stateName(StationState state)
{
    switch (state) {
    case StationState::Answers:
        return QLatin1String("answers");
    case StationState::Refuses:
        return QLatin1String("refuses");
    case StationState::Disturbed:
        return QLatin1String("disturbed");
    case StationState::Away:
        return QLatin1String("silent");
    case StationState::Unknown:
        break;
    }
    return QLatin1String("waiting");
}

QString StationBook::note(const ExchangeReport &report)
{
    StationCounters &counters = m_counters[report.station()];
    Watch &watch = m_watches[report.station()];
    counters.note(report);
    const Outcome outcome = report.reply.outcome;
    if (outcome == Outcome::TimedOut || outcome == Outcome::Bad) {
        if (watch.missed == 0) {
            watch.silentSinceMs = report.reply.sentMs;
            watch.cameSomething = false;
        }
        watch.missed += report.reply.sent ? 1 : 0;
        watch.cameSomething = watch.cameSomething || outcome == Outcome::Bad;
        return QString();
    }
    if (!watch.away) {
        watch.missed = 0;
    }
    if (outcome == Outcome::Answered) {
        counters.state = StationState::Answers;
        watch.refused.remove(report.range);
        return QString();
    }
    if (report.purpose == Purpose::Fence) {
        return QString();
    }
    counters.state = StationState::Refuses;
    counters.lastRefusal = refusalInWords(report.refusal);
    if (watch.refused.contains(report.range)) {
        return QString();
    }
    if (watch.refused.size() >= kMostRefused) {
        watch.refused.clear();
    }
    watch.refused.insert(report.range);
    return QString::fromLatin1("station %1 refuses %2: %3")
        .arg(report.station())
        .arg(report.block(), counters.lastRefusal);
}

QString StationBook::noteAway(int station, qint64 nowMs)
{
    StationCounters &counters = m_counters[station];
    Watch &watch = m_watches[station];
    if (watch.silentSinceMs < 0) {
        watch.silentSinceMs = nowMs;
    }
    watch.away = true;
    counters.state = watch.cameSomething ? StationState::Disturbed : StationState::Away;
    if (watch.cameSomething) {
        return QString::fromLatin1("station %1 sends answers that cannot be used").arg(station);
    }
    return QString::fromLatin1("station %1 does not answer (%2)")
        .arg(station)
        .arg(counted(watch.missed, "attempt"));
}

QString StationBook::noteBack(int station, qint64 nowMs)
{
    Watch &watch = m_watches[station];
    const qint64 missed = watch.missed;
    const double awayS = static_cast<double>(nowMs - watch.silentSinceMs) / 1000;
    const bool was = watch.away;
    watch.away = false;
    watch.missed = 0;
    watch.silentSinceMs = -1;
    m_counters[station].state = StationState::Answers;
    return was ? QString::fromLatin1("station %1 is back after %2 s and %3")
                     .arg(station)
                     .arg(awayS, 0, 'f', 1)
                     .arg(counted(missed, "attempt"))
               : QString();
}

void StationBook::resetCounters()
{
    for (StationCounters &counters : m_counters) {
        static_cast<ExchangeCounters &>(counters) = ExchangeCounters();
    }
}

void StationBook::forgetStates()
{
    for (StationCounters &counters : m_counters) {
        counters.state = StationState::Unknown;
    }
}

} // namespace cnet
