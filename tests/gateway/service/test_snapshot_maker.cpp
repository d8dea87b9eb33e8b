#include "gateway/service/snapshot_maker.h"
#include "host/support/virtual_clock.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** What only several looks at the gateway tell. */
class TestSnapshotMaker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsValuesASecond();
    void countsASinkThatBeganAnewFromNothing();
    void knowsHowLongASinkIsAway();
    void forgetsWhoIsGone();

private:
    static RecorderState stateWith(bool isReady, qint64 values)
    {
        RecorderState state;
        state.sinks = {{QLatin1String("broker"), isReady, QString(), values, 0, 0, 0}};
        return state;
    }
    SinkMeters after(qint64 ms, const RecorderState &state)
    {
        m_clock.runFor(ms);
        return m_maker.make({}, state, LedgerBounds()).sinks.value(0);
    }

    VirtualClock m_clock;
    SnapshotMaker m_maker{QLatin1String("1.2.3"), m_clock};
};

void TestSnapshotMaker::countsValuesASecond()
{
    QCOMPARE(after(0, stateWith(true, 1000)).valuesPerSecond, 0.0);
    QCOMPARE(after(500, stateWith(true, 1100)).valuesPerSecond, 200.0);
    for (int i = 1; i <= 20; ++i) {
        after(1000, stateWith(true, 1100 + 50 * i));
    }
    // Ten seconds ago is forgotten.
    QCOMPARE(after(1000, stateWith(true, 1100 + 50 * 21)).valuesPerSecond, 50.0);
}

void TestSnapshotMaker::countsASinkThatBeganAnewFromNothing()
{
    after(0, stateWith(true, 1000));
    QCOMPARE(after(1000, stateWith(true, 20)).valuesPerSecond, 0.0);
    QCOMPARE(after(1000, stateWith(true, 70)).valuesPerSecond, 50.0);
}

void TestSnapshotMaker::knowsHowLongASinkIsAway()
{
    QCOMPARE(after(1000, stateWith(true, 0)).awayMs, Q_INT64_C(0));
    QCOMPARE(after(1000, stateWith(false, 0)).awayMs, Q_INT64_C(1000));
    QCOMPARE(after(70000, stateWith(false, 0)).awayMs, Q_INT64_C(71000));
    QCOMPARE(after(1000, stateWith(true, 0)).awayMs, Q_INT64_C(0));
}

void TestSnapshotMaker::forgetsWhoIsGone()
{
    after(0, stateWith(false, 0));
    QCOMPARE(after(5000, stateWith(false, 0)).awayMs, Q_INT64_C(5000));
    m_maker.make({}, RecorderState(), LedgerBounds());
    QCOMPARE(after(1000, stateWith(false, 0)).awayMs, Q_INT64_C(0));
    const Snapshot snapshot = m_maker.make({}, RecorderState(), LedgerBounds());
    QCOMPARE(snapshot.version, QLatin1String("1.2.3"));
    QCOMPARE(snapshot.atMs, m_clock.nowMs());
    QVERIFY(snapshot.startedMs <= snapshot.wallMs);
}

QTEST_APPLESS_MAIN(TestSnapshotMaker)
#include "test_snapshot_maker.moc"
