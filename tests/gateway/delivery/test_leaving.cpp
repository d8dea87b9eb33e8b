#include "gateway/support/fed_sink.h"

using namespace cnet;
using namespace cnet::gateway;

/** A sink that goes, because of a reload or at the end, gets its last batches and holds nobody up.
 */
class TestLeaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bringsWhatIsStored_data();
    void bringsWhatIsStored();
    void worksInTurns();
    void waitsForWhatIsOnItsWay();
    void waitsNoLongerThanItsLimit();
    void waitsForNoGoodbyeForLong();
    void bringsWhatIsLiveFirst();
    void goesAtOnceWithoutABroker();
    void goesWhenTheBrokerDoes();
};

namespace {

/** Batches that were handed over between two turns of something else, at most. */
int mostInATurn(FedSink &plant)
{
    int most = 0;
    int before = int(plant.sink->safeOnes.size());
    const auto other = plant.clock.makeAlarm();
    QObject::connect(other.get(), &Alarm::fired, other.get(), [&] {
        const int now = int(plant.sink->safeOnes.size());
        most = std::max(most, now - before);
        before = now;
        if (!plant.feed->hasLeft()) {
            other->set(0);
        }
    });
    other->set(0);
    plant.clock.runFor(1);
    return most;
}

} // namespace

void TestLeaving::bringsWhatIsStored_data()
{
    QTest::addColumn<bool>("isLiveFirst");
    QTest::newRow("a history") << false;
    QTest::newRow("live first") << true;
}

void TestLeaving::bringsWhatIsStored()
{
    QFETCH(bool, isLiveFirst);
    FedSink plant(isLiveFirst ? Sink::Order::LiveFirst : Sink::Order::OfLedger, 4);
    plant.clock.runFor(1);
    plant.sink->confirmsAtOnce = true;
    plant.store(10);
    plant.feed->leave(2000);
    plant.store(3); // for who stays
    plant.clock.runFor(1);
    QVERIFY(plant.feed->hasLeft());
    QCOMPARE(plant.ledger->confirmed(sinkName()), 10);
    QCOMPARE(int(plant.sink->safeOnes.size()), 10);
    QCOMPARE(plant.sink->fault, QString());
}

// Lines, other sinks and the watchdog have their turns in between.
void TestLeaving::worksInTurns()
{
    FedSink plant(Sink::Order::OfLedger, 4);
    plant.sink->fail();
    plant.sink->beginning = OrderlySink::Beginning::Later;
    plant.sink->confirmsAtOnce = true;
    plant.store(1000);
    plant.sink->becomeReady();
    plant.feed->leave(2000);
    QCOMPARE(int(plant.sink->safeOnes.size()), 0);
    const int most = mostInATurn(plant);
    QVERIFY2(most > 0 && most <= 2 * plant.window, qPrintable(QString::number(most)));
    QVERIFY(plant.feed->hasLeft());
    QCOMPARE(int(plant.sink->safeOnes.size()), 1000);
    QCOMPARE(plant.sink->fault, QString());
}

void TestLeaving::waitsForWhatIsOnItsWay()
{
    FedSink plant(Sink::Order::OfLedger, 4);
    plant.store(2);
    plant.clock.runFor(1);
    plant.feed->leave(2000);
    plant.clock.runFor(900);
    QVERIFY(!plant.sink->isEnded);
    plant.sink->callSafe(1);
    plant.clock.runFor(1);
    QVERIFY(!plant.sink->isEnded);
    plant.sink->callSafe(1);
    plant.clock.runFor(1);
    QVERIFY(plant.sink->isEnded && plant.feed->hasLeft());
    QCOMPARE(plant.ledger->confirmed(sinkName()), 2);
}

// It confirms, and it is slow: what is not brought within half of the limit stays in the ledger.
void TestLeaving::waitsNoLongerThanItsLimit()
{
    FedSink plant(Sink::Order::OfLedger, 4);
    plant.store(100);
    plant.clock.runFor(1);
    plant.feed->leave(2000);
    for (int i = 0; i < 10; ++i) {
        plant.clock.runFor(99);
        plant.sink->callSafe(1);
    }
    plant.clock.runFor(100);
    QCOMPARE(int(plant.sink->waiting.size()), 4);
    plant.sink->callSafe(1);
    plant.clock.runFor(100);
    QCOMPARE(int(plant.sink->waiting.size()), 3); // no further one
    plant.clock.runFor(700);
    QVERIFY(!plant.feed->hasLeft());
    plant.clock.runFor(200);
    QVERIFY(plant.feed->hasLeft());
    QCOMPARE(plant.ledger->confirmed(sinkName()), 11);
    const QString fault = plant.fault();
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

void TestLeaving::waitsForNoGoodbyeForLong()
{
    FedSink plant(Sink::Order::OfLedger, 4);
    plant.sink->saysGoodbye = false;
    plant.feed->leave(2000);
    plant.clock.runFor(1999);
    QVERIFY(plant.sink->isEnded && !plant.feed->hasLeft());
    plant.clock.runFor(1);
    QVERIFY(plant.feed->hasLeft());
}

// Whoever watches learns how things are now, and of the rest what there is time for.
void TestLeaving::bringsWhatIsLiveFirst()
{
    FedSink plant(Sink::Order::LiveFirst, 4);
    plant.sink->beginning = OrderlySink::Beginning::Later;
    plant.sink->fail();
    plant.store(100);
    plant.sink->becomeReady();
    plant.clock.runFor(1);
    QCOMPARE(plant.sink->waiting, QVector<qint64>({1, 2, 3}));
    plant.store(2);
    plant.feed->leave(2000);
    for (int i = 0; i < 10; ++i) {
        plant.clock.runFor(99);
        plant.sink->callSafe(2);
    }
    plant.clock.runFor(100);
    QVERIFY(plant.sink->safeOnes.contains(101) && plant.sink->safeOnes.contains(102));
    QVERIFY(!plant.feed->hasLeft());
    while (!plant.sink->waiting.isEmpty()) {
        plant.sink->callSafe(1);
    }
    plant.clock.runFor(1);
    QVERIFY(plant.feed->hasLeft());
    const auto safe = plant.sink->safeOnes.size();
    QVERIFY2(safe > 10 && safe < 40, qPrintable(QString::number(safe)));
    QCOMPARE(plant.ledger->confirmed(sinkName()), qint64(safe) - 2);
    QCOMPARE(plant.fault(), QString());
}

void TestLeaving::goesAtOnceWithoutABroker()
{
    FedSink plant(Sink::Order::LiveFirst, 4);
    plant.sink->fail();
    plant.store(5);
    plant.feed->leave(2000);
    QVERIFY(plant.feed->hasLeft());
    plant.sink->beginning = OrderlySink::Beginning::Ready;
    plant.clock.runFor(60000);
    QVERIFY(!plant.sink->isReady); // it is not begun again
}

void TestLeaving::goesWhenTheBrokerDoes()
{
    FedSink plant(Sink::Order::LiveFirst, 4);
    plant.store(5);
    plant.clock.runFor(1);
    plant.feed->leave(2000);
    plant.sink->fail();
    QVERIFY(plant.feed->hasLeft());
}

QTEST_APPLESS_MAIN(TestLeaving)
#include "test_leaving.moc"
