#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::SilentStation)

// Stations that do not answer: what they cost the others, what becomes of jobs for them, and when
// they are back.
class TestSilentStations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deadStationsCostLittle_data();
    void deadStationsCostLittle();
    void silentNeighboursCostLittleAtTheStart();
    void stationThatOnlyGreetsCostsLittle();
    void stationThatAnswersLateIsBack();
    void stationComesBackByItself();
    void aloneSilentStationComesBackSoon();
    void writesDoNotWaitForDeadStations();
    void deadStationsGetNoWrites_data();
    void deadStationsGetNoWrites();
    void stationThatIsBackIsWrittenToAtOnce();
    void cancelledJobLeavesNoGreetings_data();
    void cancelledJobLeavesNoGreetings();
};

namespace {

int roundsWith(const char *others, int intervalMs)
{
    SessionOptions options;
    options.intervalMs = intervalMs;
    VirtualPlant plant(options);
    plant.monitor("1/D_W:0*10");
    if (*others != '\0') {
        plant.monitor(others);
    }
    int rounds = 0;
    QObject::connect(plant.session.get(), &Session::exchangeEnded,
                     [&rounds](const ExchangeReport &report) {
                         rounds += report.purpose == Purpose::Cyclic && report.good ? 1 : 0;
                     });
    plant.open(60000);
    return rounds;
}

} // namespace

void TestSilentStations::deadStationsCostLittle_data()
{
    QTest::addColumn<int>("intervalMs");
    QTest::newRow("as fast as it goes") << 0;
    QTest::newRow("every 100 ms") << 100;
}

void TestSilentStations::deadStationsCostLittle()
{
    QFETCH(int, intervalMs);
    const int alone = roundsWith("", intervalMs);
    const int among = roundsWith(
        "0/D_W:0 2/D_W:0 3/D_W:0 4/D_W:0 5/D_W:0 6/D_W:0 7/D_W:0 8/D_W:0 9/D_W:0 10/D_W:0 11/D_W:0 "
        "12/D_W:0 13/D_W:0 14/D_W:0 15/D_W:0 16/D_W:0 17/D_W:0 18/D_W:0 19/D_W:0 20/D_W:0 21/D_W:0 "
        "22/D_W:0 23/D_W:0 24/D_W:0 25/D_W:0 26/D_W:0 27/D_W:0 28/D_W:0 29/D_W:0 30/D_W:0",
        intervalMs);
    qInfo("%d rounds alone, %d among 30 dead stations", alone, among);
    QVERIFY(alone >= 590);
    QVERIFY(among * 100 >= alone * 95);
}

void TestSilentStations::silentNeighboursCostLittleAtTheStart()
{
    VirtualPlant plant(SessionOptions(), {1, 3});
    plant.monitor("1/D_W:0 2/D_W:0 3/D_W:0");
    int updates = 0;
    connect(plant.session.get(), &Session::exchangeEnded, this,
            [&updates](const ExchangeReport &report) {
                const bool update = report.purpose == Purpose::Cyclic && report.good;
                updates += update && report.station() == 1 ? 1 : 0;
            });
    plant.open(10000);
    QVERIFY2(updates >= 95, qPrintable(QString::number(updates)));
}

// It is back with each greeting, and lost again with each read.
void TestSilentStations::stationThatOnlyGreetsCostsLittle()
{
    SessionOptions options;
    options.intervalMs = 0;
    const auto updates = [&options](const char *others) {
        VirtualPlant plant(options, {1, 2});
        plant.line->swallows = [](const QByteArray &request) {
            return request.startsWith("\x05"
                                      "02rSB08%DW00700");
        };
        plant.monitor("1/D_W:0");
        plant.monitor(others);
        int good = 0;
        QObject::connect(plant.session.get(), &Session::exchangeEnded,
                         [&good](const ExchangeReport &report) {
                             good += report.purpose == Purpose::Cyclic && report.good ? 1 : 0;
                         });
        plant.open(120000);
        return good;
    };
    const int alone = updates("1/D_W:0");
    const int beside = updates("2/D_W:700");
    qInfo("%d alone, %d beside", alone, beside);
    QVERIFY2(beside * 100 >= alone * 93, qPrintable(QString::number(100.0 * beside / alone)));
}

// Its greetings are short, so as not to keep the others waiting.
void TestSilentStations::stationThatAnswersLateIsBack()
{
    VirtualPlant plant(SessionOptions(), {1, 2});
    Monitor *const monitor = plant.monitor("1/D_W:0 2/D_W:0");
    plant.line->mannersOf[2] = plant.line->manners;
    plant.line->mannersOf[2].lowMs = plant.line->mannersOf[2].highMs = 300;
    plant.open(1000);
    QVERIFY(monitor->isGood());
}

void TestSilentStations::stationComesBackByItself()
{
    VirtualPlant plant(SessionOptions(), {1, 2});
    Monitor *const monitor = plant.monitor("1/D_W:0 2/D_W:0");
    plant.open();
    QVERIFY(monitor->isGood());
    plant.silence(2);
    plant.run(5 * 60000);
    QCOMPARE(monitor->items().at(0).quality, Quality::Good);
    QCOMPARE(monitor->items().at(1).quality, Quality::NoAnswer);
    QCOMPARE(plant.notices, QStringList{QLatin1String("station 2 does not answer (3 attempts)")});
    plant.silence(2, false);
    QVERIFY(plant.clock.runUntil([&] { return monitor->isGood(); }, 32000));
    QCOMPARE(static_cast<int>(plant.notices.size()), 2);
    QVERIFY2(plant.notices.last().startsWith(QLatin1String("station 2 is back after 3")),
             qPrintable(plant.notices.last()));
}

void TestSilentStations::aloneSilentStationComesBackSoon()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("1/D_W:0");
    plant.open();
    plant.silence(1);
    plant.run(5000);
    plant.silence(1, false);
    QVERIFY(plant.clock.runUntil([&] { return monitor->isGood(); }, 5000));
}

void TestSilentStations::writesDoNotWaitForDeadStations()
{
    VirtualPlant plant;
    plant.monitor("1/D_W:0 2/D_W:0 3/D_W:0 4/D_W:0 5/D_W:0");
    plant.open(5000);
    qint64 longestMs = 0;
    qint64 allMs = 0;
    for (int i = 0; i < 200; ++i) {
        const qint64 beganMs = plant.clock.nowMs();
        WriteJob *const write = plant.write("1/D_W:9=1");
        QVERIFY(plant.finishes(write));
        longestMs = std::max(longestMs, plant.clock.nowMs() - beganMs);
        allMs += plant.clock.nowMs() - beganMs;
        plant.run(300);
    }
    qInfo("%lld ms at most, %lld ms together", longestMs, allMs);
    QVERIFY(longestMs <= 600); // the one greeting that may be out
    QVERIFY(allMs / 200 <= 40);
}

void TestSilentStations::deadStationsGetNoWrites_data()
{
    QTest::addColumn<SilentStation>("silentStation");
    QTest::addColumn<int>("greetings"); // for the job
    QTest::newRow("asked once more") << SilentStation::Greet << 3;
    QTest::newRow("left alone") << SilentStation::Fail << 0;
}

void TestSilentStations::deadStationsGetNoWrites()
{
    QFETCH(SilentStation, silentStation);
    QFETCH(int, greetings);
    SessionOptions options;
    options.silentStation = silentStation;
    VirtualPlant plant(options, {1, 2});
    plant.open();
    plant.silence(2);
    ReadJob *const read = plant.read("2/D_W:0");
    QVERIFY(plant.finishes(read));
    QCOMPARE(read->results().first().failure.kind, Failure::NoAnswer);
    plant.run(5000);
    plant.takeFrames();
    WriteJob *const write = plant.write("2/D_W:5=1 2/D_W:6=1");
    WriteJob *const other = plant.write("1/D_W:5=1");
    QVERIFY(plant.finishes(other));
    QCOMPARE(other->state(), Job::State::Done);
    QVERIFY(write->isFinished());
    QCOMPARE(static_cast<int>(plant
                                  .takeFrames("\x05"
                                              "02")
                                  .size()),
             greetings);
    for (const WriteResult &result : write->results()) {
        QCOMPARE(result.outcome, WriteOutcome::NotSent);
        QVERIFY2(result.text().endsWith(QLatin1String("not written (no answer); nothing was sent")),
                 qPrintable(result.text()));
    }
    // The next one need not wait for the same.
    const qint64 beganMs = plant.clock.nowMs();
    QVERIFY(plant.finishes(plant.write("2/D_W:5=1")));
    QVERIFY(plant.clock.nowMs() - beganMs < 20);
}

void TestSilentStations::stationThatIsBackIsWrittenToAtOnce()
{
    VirtualPlant plant(SessionOptions(), {1, 2});
    plant.monitor("1/D_W:0 2/D_W:0");
    plant.silence(2);
    plant.open(60000);
    plant.silence(2, false);
    const qint64 beganMs = plant.clock.nowMs();
    WriteJob *const write = plant.write("2/D_W:5=1");
    QVERIFY(plant.finishes(write));
    QCOMPARE(write->state(), Job::State::Done);
    QVERIFY(plant.clock.nowMs() - beganMs < 600);
}

void TestSilentStations::cancelledJobLeavesNoGreetings_data()
{
    QTest::addColumn<bool>("deleted");
    QTest::newRow("cancelled") << false;
    QTest::newRow("deleted") << true;
}

// A station that was being greeted for it is not greeted for ever.
void TestSilentStations::cancelledJobLeavesNoGreetings()
{
    QFETCH(bool, deleted);
    VirtualPlant plant; // without station 2
    Monitor *const monitor = plant.monitor("1/D_W:0 2/D_W:0");
    ReadJob *const job = plant.read("2/D_W:5");
    plant.open(50);
    if (deleted) {
        delete job;
    } else {
        job->cancel();
    }
    plant.run(10000);
    QCOMPARE(monitor->items().at(0).quality, Quality::Good);
    QCOMPARE(monitor->items().at(1).quality, Quality::NoAnswer);
}

QTEST_GUILESS_MAIN(TestSilentStations)

#include "test_silent_stations.moc"
