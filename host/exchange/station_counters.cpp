#include "host/exchange/station_counters.h"

#include "host/wire/frame_words.h"

#include <algorithm>

namespace cnet {

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

QStringList StationBook::note(const ExchangeReport &report, qint64 nowMs)
{
    StationCounters &counters = m_counters[report.request.stationNo];
    Watch &watch = m_watches[report.request.stationNo];
    QStringList messages;
    count(counters, watch, report);
    if (report.isSilence()) {
        noteSilence(counters, watch, report, messages);
    } else {
        noteReturn(counters, watch, report, nowMs, messages);
        noteAnswer(counters, watch, report, messages);
    }
    return messages;
}

void StationBook::count(StationCounters &counters, Watch &watch, const ExchangeReport &report)
{
    ++counters.frames;
    counters.retries += report.result == kAnswerResend ? 1 : 0;
    switch (report.outcome) {
    case Outcome::Answered:
        ++counters.answers;
        break;
    case Outcome::Refused:
        ++counters.refusals;
        break;
    case Outcome::Bad:
        ++counters.bad;
        return;
    case Outcome::TimedOut:
        ++counters.timeouts;
        return;
    }
    ++watch.timed;
    counters.meanMs += (report.tookMs - counters.meanMs) / static_cast<double>(watch.timed);
    counters.worstMs = std::max(counters.worstMs, report.tookMs);
}

void StationBook::noteSilence(StationCounters &counters, Watch &watch, const ExchangeReport &report,
                              QStringList &messages)
{
    if (watch.silentAttempts == 0) {
        watch.silentSinceMs = report.sentMs;
    }
    ++watch.silentAttempts;
    if (report.result == kAnswerGivenUp && counters.state != StationState::Away) {
        counters.state = StationState::Away;
        messages.append(QString::fromLatin1("station %1 does not answer (%2 attempts)")
                            .arg(report.request.stationNo)
                            .arg(watch.silentAttempts));
    }
}

void StationBook::noteReturn(StationCounters &counters, Watch &watch, const ExchangeReport &report,
                             qint64 nowMs, QStringList &messages)
{
    if (counters.state == StationState::Away) {
        const double awayS = static_cast<double>(nowMs - watch.silentSinceMs) / 1000;
        counters.state = StationState::Unknown;
        messages.append(QString::fromLatin1("station %1 is back after %2 s and %3 attempts")
                            .arg(report.request.stationNo)
                            .arg(awayS, 0, 'f', 1)
                            .arg(watch.silentAttempts));
    }
    watch.silentAttempts = 0;
}

void StationBook::noteAnswer(StationCounters &counters, Watch &watch, const ExchangeReport &report,
                             QStringList &messages)
{
    const int station = report.request.stationNo;
    if (report.outcome == Outcome::Answered) {
        counters.state = StationState::Answers;
        if (!watch.refused.isEmpty()) {
            watch.refused.remove(report.requestName());
        }
    } else if (report.result == kAnswerGivenUp && report.outcome == Outcome::Refused) {
        counters.state = StationState::Refuses;
        counters.lastRefusal = refusalInWords(report.refusal);
        if (!watch.refused.contains(report.requestName())) {
            watch.refused.insert(report.requestName());
            messages.append(QString::fromLatin1("station %1 refuses %2: %3")
                                .arg(station)
                                .arg(report.requestName(), counters.lastRefusal));
        }
    } else if (report.result == kAnswerGivenUp) {
        if (counters.state != StationState::Disturbed) {
            messages.append(
                QString::fromLatin1("station %1 sends answers that cannot be used").arg(station));
        }
        counters.state = StationState::Disturbed;
    }
}

} // namespace cnet
