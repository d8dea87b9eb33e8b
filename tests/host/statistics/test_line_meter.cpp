#include <host/statistics/line_meter.h>

#include <QtTest>

using namespace cnet;

class TestLineMeter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsBothWays();
    void forgetsWhatIsOld();
    void tellsTheLoad();
};

void TestLineMeter::countsBothWays()
{
    LineMeter meter;
    meter.start(5000);
    meter.sent(20, 5100);
    meter.received(30, 5200);
    for (const LineTraffic &traffic : {meter.all(5500), meter.recent(5500)}) {
        QCOMPARE(traffic.sentBytes, Q_INT64_C(20));
        QCOMPARE(traffic.receivedBytes, Q_INT64_C(30));
        QCOMPARE(traffic.bytesPerSecond(), 100.0);
    }
    QCOMPARE(meter.all(5000).bytesPerSecond(), 0.0);
    meter.start(9000);
    QCOMPARE(meter.all(9500).bytes(), Q_INT64_C(0));
    QCOMPARE(meter.recent(9500).bytes(), Q_INT64_C(0));
}

// A hundred bytes each second, then none: the unfinished second does not count.
void TestLineMeter::forgetsWhatIsOld()
{
    LineMeter meter;
    meter.start(0);
    for (qint64 ms = 0; ms < 30000; ms += 10) {
        meter.received(1, ms);
        const LineTraffic recent = meter.recent(ms);
        QCOMPARE(recent.bytesPerSecond(), ms < 1000 ? meter.all(ms).bytesPerSecond() : 100.0);
        QVERIFY(ms < 1000 ||
                static_cast<qint64>(recent.seconds) == std::min<qint64>(10, ms / 1000));
    }
    QCOMPARE(meter.recent(35000).bytesPerSecond(), 50.0);
    QCOMPARE(meter.recent(40000).bytesPerSecond(), 0.0);
    meter.sent(10, 1000000); // slots of long ago are not counted again
    QCOMPARE(meter.recent(1001000).bytes(), Q_INT64_C(10));
    QCOMPARE(meter.all(1001000).bytes(), Q_INT64_C(3010));
}

// 9600 baud with ten bits each are 960 characters a second.
void TestLineMeter::tellsTheLoad()
{
    LineMeter meter;
    meter.start(0);
    meter.sent(480, 0);
    QCOMPARE(meter.all(1000).loadPercent(10 * 1e6 / 9600), 50.0);
}

QTEST_APPLESS_MAIN(TestLineMeter)
#include "test_line_meter.moc"
