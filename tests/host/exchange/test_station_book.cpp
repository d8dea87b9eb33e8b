#include "host/exchange/station_counters.h"

#include <QtTest>

using namespace cnet;

namespace {

ExchangeReport report(Outcome outcome, int result, double tookMs = 1, qint64 sentMs = 0)
{
    ExchangeReport report;
    report.request.stationNo = 2;
    report.request.regName = QLatin1String("D_W");
    report.request.startAddr = 100;
    report.request.count = 3;
    report.outcome = outcome;
    report.result = result;
    report.tookMs = tookMs;
    report.sentMs = sentMs;
    report.answer = outcome == Outcome::TimedOut ? QByteArray() : QByteArray("\x06");
    report.refusal = outcome == Outcome::Refused ? 0x1132 : 0;
    return report;
}

const auto answered = [] { return report(Outcome::Answered, kAnswerGood); };
const auto silent = [] { return report(Outcome::TimedOut, kAnswerResend); };
const auto silentGivenUp = [] { return report(Outcome::TimedOut, kAnswerGivenUp); };
const auto refused = [] { return report(Outcome::Refused, kAnswerGivenUp); };
const auto bad = [] { return report(Outcome::Bad, kAnswerGivenUp); };

ExchangeReport truncated()
{
    ExchangeReport cut = silentGivenUp();
    cut.answer = "\x06";
    return cut;
}

} // namespace

class TestStationCounters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void counts_data();
    void counts();
    void measuresTime();
    void keepsStationsApart();
    void saysOnce_data();
    void saysOnce();
    void tellsHowLongItWasAway();
};

void TestStationCounters::counts_data()
{
    QTest::addColumn<int>("outcome");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("counters"); // frames answers retries bad time-outs refusals
    QTest::addColumn<QString>("state");
    const auto row = [](const char *name, Outcome outcome, int result, const char *counters,
                        const char *state) {
        QTest::newRow(name) << static_cast<int>(outcome) << result << QString::fromLatin1(counters)
                            << QString::fromLatin1(state);
    };
    row("answered", Outcome::Answered, kAnswerGood, "1 1 0 0 0 0", "answers");
    row("silent, sent again", Outcome::TimedOut, kAnswerResend, "1 0 1 0 1 0", "waiting");
    row("silent, given up", Outcome::TimedOut, kAnswerGivenUp, "1 0 0 0 1 0", "silent");
    row("bad, sent again", Outcome::Bad, kAnswerResend, "1 0 1 1 0 0", "waiting");
    row("bad, given up", Outcome::Bad, kAnswerGivenUp, "1 0 0 1 0 0", "disturbed");
    row("refused, sent again", Outcome::Refused, kAnswerResend, "1 0 1 0 0 1", "waiting");
    row("refused, given up", Outcome::Refused, kAnswerGivenUp, "1 0 0 0 0 1", "refuses");
}

void TestStationCounters::counts()
{
    QFETCH(int, outcome);
    QFETCH(int, result);
    StationBook book;
    book.note(report(static_cast<Outcome>(outcome), result), 0);
    const StationCounters counters = book.all().value(2);
    const QString text = QString::fromLatin1("%1 %2 %3 %4 %5 %6")
                             .arg(counters.frames)
                             .arg(counters.answers)
                             .arg(counters.retries)
                             .arg(counters.bad)
                             .arg(counters.timeouts)
                             .arg(counters.refusals);
    QTEST(text, "counters");
    QTEST(stateName(counters.state), "state");
}

void TestStationCounters::measuresTime()
{
    StationBook book;
    book.note(report(Outcome::Answered, kAnswerGood, 10), 0);
    book.note(report(Outcome::TimedOut, kAnswerResend, 500), 0); // no answer, no response time
    book.note(report(Outcome::Bad, kAnswerResend, 400), 0);
    book.note(report(Outcome::Answered, kAnswerGood, 30), 0);
    book.note(report(Outcome::Refused, kAnswerGivenUp, 20), 0);
    const StationCounters counters = book.all().value(2);
    QCOMPARE(counters.meanMs, 20.0);
    QCOMPARE(counters.worstMs, 30.0);
}

void TestStationCounters::keepsStationsApart()
{
    StationBook book;
    ExchangeReport other = answered();
    other.request.stationNo = 7;
    book.note(answered(), 0);
    book.note(other, 0);
    book.note(other, 0);
    QCOMPARE(book.all().size(), 2);
    QCOMPARE(book.all().value(2).frames, 1);
    QCOMPARE(book.all().value(7).frames, 2);
}

void TestStationCounters::saysOnce_data()
{
    QTest::addColumn<QStringList>("messages");
    const QString away = QLatin1String("station 2 does not answer (3 attempts)");
    const QString refuses = QLatin1String("station 2 refuses D_W:100*3: 1132, no such device, or "
                                          "address outside the device");
    const QString disturbed = QLatin1String("station 2 sends answers that cannot be used");
    const auto back = [](const char *tail) {
        return QLatin1String("station 2 is back after 0.0 s and ") + QLatin1String(tail);
    };
    // One letter a request: a answered, s silent, S silent and given up, R refused, B bad, T
    // truncated and given up
    QTest::newRow("aaa") << QStringList();
    QTest::newRow("assa") << QStringList();
    QTest::newRow("ssS") << QStringList{away};
    QTest::newRow("ssSssS") << QStringList{away};
    QTest::newRow("ssSssSa") << QStringList{away, back("6 attempts")};
    QTest::newRow("ssSassSa") << QStringList{away, back("3 attempts"), away, back("3 attempts")};
    QTest::newRow("assa ssS") << QStringList{away};
    QTest::newRow("RRR") << QStringList{refuses};
    QTest::newRow("RaR") << QStringList{refuses, refuses};
    QTest::newRow("ssSR") << QStringList{away, back("3 attempts"), refuses};
    QTest::newRow("BBB") << QStringList{disturbed};
    QTest::newRow("BaB") << QStringList{disturbed, disturbed};
    QTest::newRow("TT") << QStringList{disturbed};
}

void TestStationCounters::saysOnce()
{
    StationBook book;
    QStringList messages;
    for (const char *step = QTest::currentDataTag(); *step != '\0'; ++step) {
        switch (*step) {
        case 'a':
            messages += book.note(answered(), 0);
            break;
        case 's':
            messages += book.note(silent(), 0);
            break;
        case 'S':
            messages += book.note(silentGivenUp(), 0);
            break;
        case 'R':
            messages += book.note(refused(), 0);
            break;
        case 'B':
            messages += book.note(bad(), 0);
            break;
        case 'T':
            messages += book.note(truncated(), 0);
            break;
        default:
            break;
        }
    }
    QTEST(messages, "messages");
}

void TestStationCounters::tellsHowLongItWasAway()
{
    StationBook book;
    book.note(report(Outcome::TimedOut, kAnswerResend, 500, 1000), 1500);
    book.note(report(Outcome::TimedOut, kAnswerGivenUp, 500, 1500), 2000);
    const QStringList messages = book.note(report(Outcome::Answered, kAnswerGood, 5, 4000), 4500);
    QCOMPARE(messages, QStringList{QLatin1String("station 2 is back after 3.5 s and 2 attempts")});
}

QTEST_APPLESS_MAIN(TestStationCounters)
#include "test_station_counters.moc"
