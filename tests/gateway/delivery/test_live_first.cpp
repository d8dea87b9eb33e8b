#include "gateway/support/fed_sink.h"

using namespace cnet;
using namespace cnet::gateway;

/** What comes live is not held up behind a backlog, and nothing is lost for it. */
class TestLiveFirst : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void liveOvertakesABacklog();
    void neitherStarves_data();
    void neitherStarves();
    void keepsPlacesForWhatComesLive();
    void countsNothingAsDroppedThatIsThere();
    void saysHowLongTheRoomLasts();
};

void TestLiveFirst::liveOvertakesABacklog()
{
    FedSink plant(Sink::Order::LiveFirst, 4);
    plant.sink->beginning = OrderlySink::Beginning::Later;
    plant.sink->fail();
    plant.store(100);
    plant.clock.runFor(1000);
    plant.sink->becomeReady();
    plant.clock.runFor(10);
    plant.store(1);
    plant.clock.runFor(10);
    QCOMPARE(plant.sink->waiting, QVector<qint64>({1, 2, 3, 101}));
    // It is safe; it leaves the ledger when the backlog is.
    plant.sink->callSafe(4);
    plant.store(0);
    QCOMPARE(plant.ledger->confirmed(sinkName()), 3);
    QCOMPARE(plant.ledger->state().batches, 98);
    plant.clock.runFor(1);
    while (!plant.sink->waiting.isEmpty()) {
        plant.sink->callSafe(1);
        plant.clock.runFor(1);
    }
    plant.store(0);
    QCOMPARE(plant.ledger->state().batches, 0);
    QCOMPARE(plant.sink->fault, QString());
}

void TestLiveFirst::neitherStarves_data()
{
    QTest::addColumn<int>("window");
    for (const int window : {1, 2, 4, 16}) {
        QTest::addRow("%d", window) << window;
    }
}

// There is always something live, more than the sink can take.
void TestLiveFirst::neitherStarves()
{
    QFETCH(int, window);
    FedSink plant(Sink::Order::LiveFirst, window);
    plant.sink->fail();
    plant.sink->beginning = OrderlySink::Beginning::Later;
    plant.store(50);
    plant.sink->becomeReady();
    plant.store(2 * window);
    for (int i = 0; i < 300 && plant.sink->ages.count(QLatin1Char('B')) < 50; ++i) {
        plant.clock.runFor(1);
        plant.sink->callSafe(1);
        plant.store(2);
    }
    QCOMPARE(int(plant.sink->ages.count(QLatin1Char('B'))), 50);
    const auto lastOld = plant.sink->ages.lastIndexOf(QLatin1Char('B'));
    const auto live = plant.sink->ages.left(lastOld).count(QLatin1Char('L'));
    QVERIFY2(live >= 3 * 49 - window && live <= 3 * 50, qPrintable(plant.sink->ages));
    QVERIFY2(!plant.sink->ages.left(lastOld).contains(QLatin1String("LLLL")),
             qPrintable(plant.sink->ages));
}

void TestLiveFirst::keepsPlacesForWhatComesLive()
{
    FedSink plant(Sink::Order::LiveFirst, 16);
    plant.sink->fail();
    plant.store(50);
    plant.clock.runFor(2000);
    QCOMPARE(plant.sink->ages, QString(12, QLatin1Char('B')));
    plant.store(4);
    plant.clock.runFor(1);
    QCOMPARE(plant.sink->ages.mid(12), QLatin1String("LLLL"));
}

// The ledger's bound takes the oldest, also what is there already and waits for the backlog.
void TestLiveFirst::countsNothingAsDroppedThatIsThere()
{
    LedgerBounds bounds;
    bounds.bytes = 60 * (batchWith({100}).body.size() + 32);
    FedSink plant(Sink::Order::LiveFirst, 4, bounds);
    plant.sink->fail();
    plant.store(20);
    plant.clock.runFor(1000);
    QCOMPARE(plant.sink->waiting, QVector<qint64>({1, 2, 3}));
    plant.store(1);
    plant.clock.runFor(1);
    plant.sink->callSafe(4); // 21 is among them
    plant.clock.runFor(1);
    plant.sink->fault.clear();
    // All of the backlog goes, and the live ones that overtook it, and 22 and 23, too.
    plant.store(62);
    QCOMPARE(plant.ledger->state().sinks.value(sinkName()).droppedValues, 17 + 2);
    plant.clock.runFor(1);
    for (int i = 0; i < 100 && !plant.sink->waiting.isEmpty(); ++i) {
        plant.sink->callSafe(1);
        plant.clock.runFor(1);
    }
    plant.store(0);
    QCOMPARE(plant.ledger->state().batches, 0);
    QCOMPARE(plant.ledger->confirmed(sinkName()), 83);
}

void TestLiveFirst::saysHowLongTheRoomLasts()
{
    LedgerBounds bounds;
    bounds.bytes = 36000 * (batchWith({100}).body.size() + 32);
    FedSink plant(Sink::Order::LiveFirst, 4, bounds);
    plant.sink->beginning = OrderlySink::Beginning::Fails;
    for (int second = 0; second < 120; ++second) {
        plant.store(1);
        plant.clock.runFor(1000);
        while (!plant.sink->waiting.isEmpty()) {
            plant.sink->callSafe(1);
            plant.clock.runFor(1);
        }
    }
    plant.store(0);
    QCOMPARE(plant.said, QStringList());
    plant.sink->fail();
    plant.clock.runFor(600000);
    QCOMPARE(plant.said.first(), QLatin1String("sink sink: broker away; trying again; the ledger "
                                               "has room for 10 hours"));
    QCOMPARE(int(plant.said.size()), 2); // another reason, another line
}

QTEST_APPLESS_MAIN(TestLiveFirst)
#include "test_live_first.moc"
