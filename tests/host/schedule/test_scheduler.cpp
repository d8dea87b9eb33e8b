#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::SilentStation)

// What is asked when. Everything goes through a session, as every program does it.
class TestScheduler : public QObject
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
    void refusedAddressCostsOnlyItself();
    void refusedAddressAmongManyCostsOnlyItself();
    void refusedAddressIsTriedAgainWhenTheStationIsBack();
    void blockThatIsRefusedAsAWholeIsLeftOut();
    void singleWordsShareRequests();
    void refusedWordsCostOnlyThemselves();
    void writesGoBeforeReads();
    void recipesGoBeforeReads();
    void writesDoNotWaitForDeadStations();
    void deadStationsGetNoWrites_data();
    void deadStationsGetNoWrites();
    void stationThatIsBackIsWrittenToAtOnce();
    void roundsKeepTheirDistance();
    void readsOfContactsLeaveNoBlockOut();
    void cancelledJobLeavesNoGreetings_data();
    void cancelledJobLeavesNoGreetings();
    void jobsWithoutPauseLeaveTime_data();
    void jobsWithoutPauseLeaveTime();
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

void TestScheduler::deadStationsCostLittle_data()
{
    QTest::addColumn<int>("intervalMs");
    QTest::newRow("as fast as it goes") << 0;
    QTest::newRow("every 100 ms") << 100;
}

void TestScheduler::deadStationsCostLittle()
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

void TestScheduler::silentNeighboursCostLittleAtTheStart()
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
void TestScheduler::stationThatOnlyGreetsCostsLittle()
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
void TestScheduler::stationThatAnswersLateIsBack()
{
    VirtualPlant plant(SessionOptions(), {1, 2});
    Monitor *const monitor = plant.monitor("1/D_W:0 2/D_W:0");
    plant.line->mannersOf[2] = plant.line->manners;
    plant.line->mannersOf[2].lowMs = plant.line->mannersOf[2].highMs = 300;
    plant.open(1000);
    QVERIFY(monitor->isGood());
}

void TestScheduler::stationComesBackByItself()
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

void TestScheduler::aloneSilentStationComesBackSoon()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("1/D_W:0");
    plant.open();
    plant.silence(1);
    plant.run(5000);
    plant.silence(1, false);
    QVERIFY(plant.clock.runUntil([&] { return monitor->isGood(); }, 5000));
}

void TestScheduler::refusedAddressCostsOnlyItself()
{
    VirtualPlant plant;
    plant.line->bus.add(1, plc::Model::K120s);
    plant.setWord(4999, 77);
    Monitor *const monitor = plant.monitor("D_W:4998*2 D_W:5000*2");
    plant.open(1000);
    QCOMPARE(monitor->items().at(0).quality, Quality::Good);
    QCOMPARE(monitor->items().at(0).values.at(1).value, quint16(77));
    QCOMPARE(monitor->items().at(1).quality, Quality::Refused);
    QVERIFY(monitor->items().at(1).reason().startsWith(QLatin1String("refused: 1132")));
    const QStringList asked = plant.takeFrames("rSB");
    QCOMPARE(asked.count(QLatin1String("01rSB08%DW0499804")), 1); // both, refused
    QCOMPARE(asked.count(QLatin1String("01rSB08%DW0500002")), 1); // refused by itself
    QVERIFY(asked.count(QLatin1String("01rSB08%DW0499802")) > 5);
    plant.run(10000);
    const QStringList later = plant.takeFrames();
    QVERIFY(later.size() >= 99 && later.size() <= 101); // one a round
    QCOMPARE(later.count(QLatin1String("01rSB08%DW0499802")), static_cast<int>(later.size()));
    QCOMPARE(plant.session->stations().value(1).refusals, 2);
    QCOMPARE(plant.session->stations().value(1).retries, 0);
}

// The block may be asked for again before each of its items was.
void TestScheduler::refusedAddressAmongManyCostsOnlyItself()
{
    VirtualPlant plant;
    plant.line->bus.add(1, plc::Model::K120s);
    QStringList items;
    for (int address = 4970; address <= 5005; ++address) {
        items.append(QString::fromLatin1("D_W:%1").arg(address));
    }
    Monitor *const monitor = plant.session->monitor(plant.items(items.join(QLatin1Char(' '))));
    plant.open(3000);
    for (const ItemState &state : monitor->items()) {
        QCOMPARE(state.quality, state.item.start < 5000 ? Quality::Good : Quality::Refused);
    }
}

void TestScheduler::refusedAddressIsTriedAgainWhenTheStationIsBack()
{
    VirtualPlant plant;
    plant.line->bus.add(1, plc::Model::K120s);
    Monitor *const monitor = plant.monitor("D_W:4998*2 D_W:5000*2");
    plant.open(1000);
    QCOMPARE(monitor->items().at(1).quality, Quality::Refused);
    plant.silence(1);
    plant.run(5000);
    plant.line->bus.add(1, plc::Model::Full); // a larger PLC took its place
    plant.silence(1, false);
    plant.run(60000);
    QVERIFY(monitor->isGood());
}

// Each address is good by itself: it is the block that the station does not like.
void TestScheduler::blockThatIsRefusedAsAWholeIsLeftOut()
{
    SessionOptions options;
    options.blockWords = 61; // one more than a PLC gives
    VirtualPlant plant(options);
    Monitor *const monitor = plant.monitor("D_W:0*40 D_W:40*21 D_W:200");
    plant.open(2000);
    QCOMPARE(monitor->items().at(0).quality, Quality::Refused);
    QCOMPARE(monitor->items().at(1).quality, Quality::Refused);
    QCOMPARE(monitor->items().at(2).quality, Quality::Good);
    QCOMPARE(static_cast<int>(plant.takeFrames("%DW000003D").size()), 2);
}

void TestScheduler::singleWordsShareRequests()
{
    VirtualPlant plant;
    QStringList items;
    for (int i = 0; i < 500; ++i) {
        plant.setWord(2 * i, i);
        items.append(QString::fromLatin1("D_W:%1").arg(2 * i));
    }
    plant.open();
    ReadJob *const job = plant.session->read(plant.items(items.join(QLatin1Char(' '))));
    QVERIFY(plant.finishes(job));
    QCOMPARE(job->failure(), QString());
    for (int i = 0; i < 500; ++i) {
        QCOMPARE(static_cast<int>(job->results().at(i).values.first()), i);
    }
    QVERIFY(plant.takeFrames("rSB").size() <= 1000 / 59 + 1);
}

void TestScheduler::refusedWordsCostOnlyThemselves()
{
    VirtualPlant plant;
    plant.line->bus.add(1, plc::Model::K120s); // D 0 to 4999
    QStringList items;
    for (int i = 0; i < 500; ++i) {
        plant.setWord(4015 + 2 * i, i);
        items.append(QString::fromLatin1("D_W:%1").arg(4015 + 2 * i));
    }
    plant.open();
    ReadJob *const job = plant.session->read(plant.items(items.join(QLatin1Char(' '))));
    QVERIFY(plant.finishes(job));
    int refused = 0;
    for (const ReadResult &result : job->results()) {
        QCOMPARE(result.isGood(), result.item.start < 5000);
        QCOMPARE(result.failure.kind == Failure::Refused, result.item.start >= 5000);
        refused += result.isGood() ? 0 : 1;
    }
    QCOMPARE(refused, 7);
    const auto frames = plant.takeFrames("rSB").size();
    QVERIFY2(frames <= 1000 / 59 + 1 + 30, qPrintable(QString::number(frames)));
}

void TestScheduler::writesGoBeforeReads()
{
    VirtualPlant plant;
    plant.monitor("D_W:0*240");
    plant.open();
    ReadJob *const read = plant.read("D_W:1000*600");
    WriteJob *const write = plant.write("D_W:5=1 D_W:6=2");
    QVERIFY(plant.finishes(write));
    QVERIFY(!read->isFinished());
    QVERIFY(plant.clock.nowMs() < 500 + 10 + 2 * 20 + 1); // one read was out, and a fence each
    QCOMPARE(plant.word(6), 2);
    QVERIFY(plant.finishes(read));
}

void TestScheduler::recipesGoBeforeReads()
{
    VirtualPlant plant;
    plant.open();
    ReadJob *const read = plant.read("D_W:1000*600");
    RecipeJob *const recipe = plant.session->transfer(
        {{plant.item(QLatin1String("D_W:0*100")), {}, 0}}, RecipeDirection::Read);
    QVERIFY(plant.finishes(recipe));
    QVERIFY(!read->isFinished());
}

void TestScheduler::writesDoNotWaitForDeadStations()
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

void TestScheduler::deadStationsGetNoWrites_data()
{
    QTest::addColumn<SilentStation>("silentStation");
    QTest::addColumn<int>("greetings"); // for the job
    QTest::newRow("asked once more") << SilentStation::Greet << 3;
    QTest::newRow("left alone") << SilentStation::Fail << 0;
}

void TestScheduler::deadStationsGetNoWrites()
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

void TestScheduler::stationThatIsBackIsWrittenToAtOnce()
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

void TestScheduler::roundsKeepTheirDistance()
{
    SessionOptions options;
    options.intervalMs = 250;
    VirtualPlant plant(options);
    plant.monitor("D_W:0*120"); // two blocks, with different values
    plant.setWord(0, 1);
    QList<qint64> begins;
    connect(plant.session.get(), &Session::exchangeEnded, this,
            [&begins](const ExchangeReport &report) {
                if (report.block() == QLatin1String("D_W:0*60")) {
                    begins.append(report.reply.sentMs);
                }
            });
    plant.open(10000);
    QVERIFY(begins.size() >= 39);
    for (int i = 1; i < begins.size(); ++i) {
        QCOMPARE(begins.at(i) - begins.at(i - 1), 250);
    }
    QCOMPARE(plant.session->rounds(), static_cast<int>(begins.size()));
}

void TestScheduler::cancelledJobLeavesNoGreetings_data()
{
    QTest::addColumn<bool>("deleted");
    QTest::newRow("cancelled") << false;
    QTest::newRow("deleted") << true;
}

// A station that was being greeted for it is not greeted for ever.
void TestScheduler::cancelledJobLeavesNoGreetings()
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

void TestScheduler::jobsWithoutPauseLeaveTime_data()
{
    QTest::addColumn<bool>("writes");
    QTest::newRow("reads") << false;
    QTest::newRow("writes") << true;
}

// For monitors, and for a station that comes back.
void TestScheduler::jobsWithoutPauseLeaveTime()
{
    QFETCH(bool, writes);
    VirtualPlant plant(SessionOptions(), {1, 2});
    Monitor *const monitor = plant.monitor("1/D_W:0*120 2/D_W:0");
    const QObject whileWeLook; // not to the end of the session
    int jobs = 0;
    std::function<void()> next = [&] {
        Job *const job = writes ? static_cast<Job *>(plant.write("1/D_W:500=1 1/D_W:600=2"))
                                : plant.read("1/D_W:500 1/D_W:600");
        connect(job, &Job::finished, &whileWeLook, [&, job] {
            ++jobs;
            job->deleteLater();
            next();
        });
    };
    next();
    plant.open(5000);
    QVERIFY(monitor->isGood());
    plant.silence(2);
    plant.run(20000);
    QCOMPARE(monitor->items().at(0).quality, Quality::Good);
    QCOMPARE(monitor->items().at(1).quality, Quality::NoAnswer);
    plant.silence(2, false);
    plant.run(40000);
    QVERIFY(monitor->isGood());
    QVERIFY2(jobs > 1000, qPrintable(QString::number(jobs)));
}

// A one-off read of a contact interrupts the round.
void TestScheduler::readsOfContactsLeaveNoBlockOut()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:0*1200"); // 20 blocks, of 10 ms and more each
    plant.open(2000);
    const int roundsBefore = plant.session->rounds();
    for (int i = 0; i < 100; ++i) {
        ReadJob *const read = plant.read("TX:3");
        plant.run(100);
        QCOMPARE(read->state(), Job::State::Done);
        delete read;
    }
    QVERIFY(monitor->isGood());
    QVERIFY(plant.session->rounds() > roundsBefore + 10);
}

QTEST_GUILESS_MAIN(TestScheduler)

#include "test_scheduler.moc"
