#include <host/statistics/exchange_counters.h>

#include "host/support/reports.h"
#include "support/rows.h"

using namespace cnet;

namespace {

ExchangeReport ended(ExchangeReport report, bool final, Purpose purpose, Defect defect)
{
    report.final = final;
    report.purpose = purpose;
    report.reply.defect = defect;
    return report;
}

const Purpose kCyclic = Purpose::Cyclic;

// frames fences answers retries bad bad checks time-outs refusals bytes sent, received; times
const Case<ExchangeReport, const char *> kCases[] = {
    {"answered", reportOf(Outcome::Answered), "1 0 1 0 0 0 0 0 21 17 1"},
    {"silent, sent again", ended(reportOf(Outcome::TimedOut), false, kCyclic, Defect::None),
     "1 0 0 1 0 0 1 0 21 0 0"},
    {"silent, given up", reportOf(Outcome::TimedOut), "1 0 0 0 0 0 1 0 21 0 0"},
    {"bad check", ended(reportOf(Outcome::Bad), false, kCyclic, Defect::BlockCheck),
     "1 0 0 1 1 1 0 0 21 17 0"},
    {"cut short", reportOf(Outcome::Bad), "1 0 0 0 1 0 0 0 21 17 0"},
    {"refused", reportOf(Outcome::Refused), "1 0 0 0 0 0 0 1 21 17 1"},
    {"fence", ended(reportOf(Outcome::Answered), true, Purpose::Fence, Defect::None),
     "1 1 1 0 0 0 0 0 21 17 1"},
};

QString text(const ExchangeCounters &counters)
{
    QStringList texts;
    for (const qint64 number :
         {counters.frames, counters.fences, counters.answers, counters.retries, counters.bad,
          counters.badChecks, counters.timeouts, counters.refusals, counters.sentBytes,
          counters.receivedBytes, counters.times.count()}) {
        texts.append(QString::number(number));
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

class TestExchangeCounters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void counts_data() { addRows(kCases); }
    void counts();
    void countsNothingThatWasNotSent();
    void countsStrayBytes();
    void tellsCodesApart();
    void addsUp();
};

void TestExchangeCounters::counts()
{
    const auto &row = currentRow(kCases);
    ExchangeCounters counters;
    counters.note(row.given);
    QCOMPARE(text(counters), QLatin1String(row.expected));
}

// The line never became clear for it.
void TestExchangeCounters::countsNothingThatWasNotSent()
{
    ExchangeReport report = reportOf(Outcome::TimedOut);
    report.reply.sent = false;
    ExchangeCounters counters;
    counters.note(report);
    QCOMPARE(text(counters), text(ExchangeCounters()));
}

void TestExchangeCounters::countsStrayBytes()
{
    ExchangeReport report = reportOf(Outcome::Answered);
    report.reply.strayBytes = 5;
    ExchangeCounters counters;
    counters.note(report);
    QCOMPARE(counters.receivedBytes, Q_INT64_C(22));
}

// However many codes a station invents, they take no more memory than that.
void TestExchangeCounters::tellsCodesApart()
{
    ExchangeCounters counters;
    for (int round = 0; round < 2; ++round) {
        for (int code = 0; code < 1000; ++code) {
            ExchangeReport report = reportOf(Outcome::Refused);
            report.refusal = code;
            counters.note(report);
        }
    }
    QCOMPARE(counters.refusals, Q_INT64_C(2000));
    QCOMPARE(static_cast<int>(counters.refusalsByCode.size()), ExchangeCounters::kMostCodes);
    QCOMPARE(counters.refusalsByCode.value(5), Q_INT64_C(2));
}

void TestExchangeCounters::addsUp()
{
    ExchangeCounters left;
    ExchangeCounters right;
    ExchangeCounters both;
    left.late = both.late = 3;
    bool toLeft = true;
    for (const auto &row : kCases) {
        (toLeft ? left : right).note(row.given);
        both.note(row.given);
        toLeft = !toLeft;
    }
    left.add(right);
    QCOMPARE(text(left), text(both));
    QCOMPARE(left.late, Q_INT64_C(3));
    QCOMPARE(left.refusalsByCode, both.refusalsByCode);
}

QTEST_APPLESS_MAIN(TestExchangeCounters)
#include "test_exchange_counters.moc"
