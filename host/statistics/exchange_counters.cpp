#include "host/statistics/exchange_counters.h"

namespace cnet {

namespace {

void addCode(QMap<int, qint64> &codes, int code, qint64 count)
{
    if (codes.contains(code) || codes.size() < ExchangeCounters::kMostCodes) {
        codes[code] += count;
    }
}

} // namespace

void ExchangeCounters::note(const ExchangeReport &report)
{
    const Reply &reply = report.reply;
    if (!reply.sent) {
        return;
    }
    ++frames;
    fences += report.purpose == Purpose::Fence ? 1 : 0;
    retries += report.final ? 0 : 1;
    sentBytes += reply.frame.size();
    receivedBytes += reply.answer.size() + reply.strayBytes;
    switch (reply.outcome) {
    case Outcome::Answered:
        ++answers;
        times.note(reply.tookMs);
        break;
    case Outcome::Refused:
        ++refusals;
        addCode(refusalsByCode, report.refusal, 1);
        times.note(reply.tookMs);
        break;
    case Outcome::Bad:
        ++bad;
        badChecks += reply.defect == Defect::BlockCheck ? 1 : 0;
        break;
    case Outcome::TimedOut:
        ++timeouts;
        break;
    }
}

void ExchangeCounters::add(const ExchangeCounters &other)
{
    frames += other.frames;
    fences += other.fences;
    answers += other.answers;
    retries += other.retries;
    bad += other.bad;
    badChecks += other.badChecks;
    timeouts += other.timeouts;
    refusals += other.refusals;
    late += other.late;
    sentBytes += other.sentBytes;
    receivedBytes += other.receivedBytes;
    for (auto it = other.refusalsByCode.cbegin(); it != other.refusalsByCode.cend(); ++it) {
        addCode(refusalsByCode, it.key(), it.value());
    }
    times.add(other.times);
}

} // namespace cnet
