#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;

// What is asked when. Everything goes through a session, as every program does it.
class TestScheduler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusedAddressCostsOnlyItself();
    void refusedAddressAmongManyCostsOnlyItself();
    void refusedAddressIsTriedAgainWhenTheStationIsBack();
    void blockThatIsRefusedAsAWholeIsLeftOut();
    void singleWordsShareRequests();
    void refusedWordsCostOnlyThemselves();
    void writesGoBeforeReads();
    void recipesGoBeforeReads();
    void roundsKeepTheirDistance();
    void readsOfContactsLeaveNoBlockOut();
    void jobsWithoutPauseLeaveTime_data();
    void jobsWithoutPauseLeaveTime();
};

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
