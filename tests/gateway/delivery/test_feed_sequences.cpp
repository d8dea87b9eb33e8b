#include "gateway/support/fed_sink.h"
#include "support/random.h"

using namespace cnet;
using namespace cnet::gateway;

/** Whatever becomes of sink and gateway, and in whatever order: nothing is lost, nor disordered. */
class TestFeedSequences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anySequence_data();
    void anySequence();

private:
    static void act(FedSink &plant, Random &random);
};

void TestFeedSequences::act(FedSink &plant, Random &random)
{
    OrderlySink &sink = *plant.sink;
    using Beginning = OrderlySink::Beginning;
    switch (random.below(10)) {
    case 0:
        sink.beginning = random.pick({Beginning::Ready, Beginning::Fails, Beginning::Later});
        break;
    case 1:
        sink.fail();
        break;
    case 2:
        if (!sink.isReady && sink.beginning == Beginning::Later) {
            sink.becomeReady();
        }
        break;
    case 3:
        if (random.chance(20)) {
            if (random.chance(50)) {
                plant.feed->leave(100);
                plant.clock.runFor(random.pick({0, 1, 500}));
            }
            plant.kill();
        }
        break;
    case 4:
    case 5:
    case 6:
        if (sink.isReady && !sink.waiting.isEmpty()) {
            sink.callSafe(random.between(1, int(sink.waiting.size())));
        }
        break;
    case 7:
        plant.clock.runFor(random.pick({0, 1, 5000}));
        break;
    default:
        plant.store(random.between(0, 5));
    }
}

void TestFeedSequences::anySequence_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 20; ++seed) {
        QTest::addRow("%d", seed) << seed;
    }
}

void TestFeedSequences::anySequence()
{
    QFETCH(int, seed);
    Random random(static_cast<std::uint64_t>(seed));
    const Sink::Order order = random.pick({Sink::Order::LiveFirst, Sink::Order::OfLedger});
    FedSink plant(order, random.pick({1, 2, 3, 4, 9}));
    for (int step = 0; step < 150; ++step) {
        act(plant, random);
        const QString fault = plant.fault();
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
    plant.sink->beginning = OrderlySink::Beginning::Ready;
    if (!plant.sink->isReady) {
        plant.sink->becomeReady();
    }
    for (int i = 0; i < 5000 && plant.sink->safeOnes.size() < plant.stored; ++i) {
        plant.clock.runFor(1);
        if (!plant.sink->waiting.isEmpty()) {
            plant.sink->callSafe(1);
        }
    }
    plant.store(0);
    QCOMPARE(qint64(plant.sink->safeOnes.size()), plant.stored);
    QCOMPARE(plant.ledger->confirmed(sinkName()), plant.stored);
    QCOMPARE(plant.ledger->state().batches, 0);
    QCOMPARE(plant.sink->fault, QString());
}

QTEST_APPLESS_MAIN(TestFeedSequences)
#include "test_feed_sequences.moc"
