#include <host/statistics/station_book.h>

#include <QtTest>

using namespace cnet;

namespace {

ExchangeReport report(Outcome outcome, bool final = true, double tookMs = 1, qint64 sentMs = 0)
{
    ExchangeReport report;
    report.reply.station = 2;
    report.reply.outcome = outcome;
    report.reply.tookMs = tookMs;
    report.reply.sentMs = sentMs;
    report.range = {2, QLatin1String("D_W"), 100, 3};
    report.final = final;
    report.good = outcome == Outcome::Answered;
    report.refusal = outcome == Outcome::Refused ? 0x1132 : 0;
    return report;
}

QString countersText(const StationCounters &counters)
{
    return QString::fromLatin1("%1 %2 %3 %4 %5 %6")
        .arg(counters.frames)
        .arg(counters.answers)
        .arg(counters.retries)
        .arg(counters.bad)
        .arg(counters.timeouts)
        .arg(counters.refusals);
}

} // namespace

Q_DECLARE_METATYPE(cnet::Outcome)

class TestStationBook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void counts_data();
    void counts();
    void countsNothingThatWasNotSent();
    void measuresTime();
    void keepsStationsApart();
    void saysOnce_data();
    void saysOnce();
    void doesNotGrowForEver();
    void tellsHowLongItWasAway();
    void forgetsStates();
};

void TestStationBook::counts_data()
{
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<bool>("final");
    QTest::addColumn<QString>("counters"); // frames answers retries bad time-outs refusals
    QTest::addColumn<QString>("state");
    const auto row = [](const char *name, Outcome outcome, bool final, const char *counters,
                        const char *state) {
        QTest::newRow(name) << outcome << final << QString::fromLatin1(counters)
                            << QString::fromLatin1(state);
    };
    row("answered", Outcome::Answered, true, "1 1 0 0 0 0", "answers");
    row("silent, sent again", Outcome::TimedOut, false, "1 0 1 0 1 0", "waiting");
    row("silent, given up", Outcome::TimedOut, true, "1 0 0 0 1 0", "waiting"); // until told
    row("bad, sent again", Outcome::Bad, false, "1 0 1 1 0 0", "waiting");
    row("refused", Outcome::Refused, true, "1 0 0 0 0 1", "refuses");
}

void TestStationBook::counts()
{
    QFETCH(Outcome, outcome);
    QFETCH(bool, final);
    StationBook book;
    book.note(report(outcome, final));
    QTEST(countersText(book.all().value(2)), "counters");
    QTEST(stateName(book.all().value(2).state), "state");
    book.noteLate(2);
    QCOMPARE(book.all().value(2).late, 1);
}

// The line never became clear for it.
void TestStationBook::countsNothingThatWasNotSent()
{
    StationBook book;
    ExchangeReport unsent = report(Outcome::TimedOut);
    unsent.reply.sent = false;
    book.note(unsent);
    QCOMPARE(countersText(book.all().value(2)), QLatin1String("0 0 0 0 0 0"));
    QCOMPARE(book.noteAway(2, 0), QLatin1String("station 2 does not answer (0 attempts)"));
}

void TestStationBook::measuresTime()
{
    StationBook book;
    book.note(report(Outcome::Answered, true, 10));
    book.note(report(Outcome::TimedOut, false, 500)); // no answer, no response time
    book.note(report(Outcome::Bad, false, 400));
    book.note(report(Outcome::Answered, true, 30));
    book.note(report(Outcome::Refused, true, 20));
    QCOMPARE(book.all().value(2).times.meanMs(), 20.0);
    QCOMPARE(book.all().value(2).times.maxMs(), 30.0);
}

void TestStationBook::keepsStationsApart()
{
    StationBook book;
    ExchangeReport other = report(Outcome::Answered);
    other.reply.station = 7;
    book.note(report(Outcome::Answered));
    book.note(other);
    book.note(other);
    QCOMPARE(static_cast<int>(book.all().size()), 2);
    QCOMPARE(book.all().value(2).frames, 1);
    QCOMPARE(book.all().value(7).frames, 2);
}

void TestStationBook::saysOnce_data()
{
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QString>("state");
    const QString away = QLatin1String("station 2 does not answer (%1 attempts)");
    const QString refuses = QLatin1String("station 2 refuses D_W:100*3: 1132, no such device, or "
                                          "address outside the device");
    const QString disturbed = QLatin1String("station 2 sends answers that cannot be used");
    const QString back = QLatin1String("station 2 is back after 0.0 s and %1 attempts");
    // One letter each: a answered, s silent, b bad, r refused, f a refused fence; G given up, H
    // heard
    QTest::newRow("aaa") << QStringList() << "answers";
    QTest::newRow("assaHa") << QStringList() << "answers"; // heard for the first time
    QTest::newRow("sssG") << QStringList{away.arg(3)} << "silent";
    QTest::newRow("sssGssaHa") << QStringList{away.arg(3), back.arg(5)} << "answers";
    QTest::newRow("sssGaHssG") << QStringList{away.arg(3), back.arg(3), away.arg(2)} << "silent";
    QTest::newRow("rrr") << QStringList{refuses} << "refuses";
    QTest::newRow("rar") << QStringList{refuses, refuses} << "refuses";
    QTest::newRow("ffa") << QStringList() << "answers";
    QTest::newRow("sssGHr") << QStringList{away.arg(3), back.arg(3), refuses} << "refuses";
    QTest::newRow("bbbG") << QStringList{disturbed} << "disturbed";
    QTest::newRow("sbsG") << QStringList{disturbed} << "disturbed";
    QTest::newRow("baHssG") << QStringList{away.arg(2)} << "silent";
}

void TestStationBook::saysOnce()
{
    StationBook book;
    QStringList messages;
    const QByteArray steps = QTest::currentDataTag();
    for (const char step : steps) {
        ExchangeReport next = report(step == 'a'   ? Outcome::Answered
                                     : step == 's' ? Outcome::TimedOut
                                     : step == 'b' ? Outcome::Bad
                                                   : Outcome::Refused);
        next.purpose = step == 'f' ? Purpose::Fence : Purpose::Cyclic;
        messages += step == 'G'   ? book.noteAway(2, 0)
                    : step == 'H' ? book.noteBack(2, 0)
                                  : book.note(next);
    }
    messages.removeAll(QString());
    QTEST(messages, "messages");
    QTEST(stateName(book.all().value(2).state), "state");
}

// A program may ask for other addresses all its life.
void TestStationBook::doesNotGrowForEver()
{
    StationBook book;
    ExchangeReport refused = report(Outcome::Refused);
    QVERIFY(!book.note(refused).isEmpty());
    QVERIFY(book.note(refused).isEmpty());
    for (int i = 0; i < 1000; ++i) {
        refused.range.start = 1000 + i;
        QVERIFY(!book.note(refused).isEmpty());
    }
    QVERIFY(!book.note(report(Outcome::Refused)).isEmpty()); // forgotten
    QVERIFY(book.note(refused).isEmpty());
}

void TestStationBook::tellsHowLongItWasAway()
{
    StationBook book;
    book.note(report(Outcome::TimedOut, false, 500, 1000));
    book.note(report(Outcome::TimedOut, true, 500, 1500));
    book.noteAway(2, 2000);
    QCOMPARE(book.noteBack(2, 4500), QLatin1String("station 2 is back after 3.5 s and 2 attempts"));
    QCOMPARE(book.noteBack(2, 5000), QString());
}

void TestStationBook::forgetsStates()
{
    StationBook book;
    book.note(report(Outcome::Answered));
    book.forgetStates();
    QCOMPARE(stateName(book.all().value(2).state), QLatin1String("waiting"));
    QCOMPARE(book.all().value(2).frames, 1);
}

QTEST_APPLESS_MAIN(TestStationBook)

#include "test_station_book.moc"
