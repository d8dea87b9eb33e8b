#include <host/time/response_times.h>

#include <QtTest>

using namespace cnet;

class TestResponseTimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timesOut_data();
    void timesOut();
    void followsAQuickStationSlowly();
    void keepsStationsApart();
    void knowsWhatAFixedTimeoutNeeds();
    void glances_data();
    void glances();
};

void TestResponseTimes::timesOut_data()
{
    QTest::addColumn<int>("fixedMs");
    QTest::addColumn<int>("microseconds");
    QTest::addColumn<int>("characters");
    QTest::addColumn<double>("slowestMs");
    QTest::addColumn<int>("timeoutMs");
    QTest::addColumn<int>("patienceMs");
    QTest::newRow("short frames") << 0 << 100 << 50 << 0.0 << 510 << 510;
    QTest::newRow("long frames on a slow line") << 0 << 1000 << 274 << 0.0 << 1048 << 1048;
    QTest::newRow("nonsense lengths") << 0 << 1000 << -1 << 0.0 << 500 << 500;
    QTest::newRow("quick station") << 0 << 100 << 50 << 300.0 << 510 << 510;
    QTest::newRow("slow station") << 0 << 100 << 50 << 1000.0 << 1501 << 1501;
    QTest::newRow("very slow station") << 0 << 100 << 50 << 20000.0 << 10000 << 10000;
    QTest::newRow("fixed") << 70 << 1000 << 274 << 0.0 << 70 << 70;
    QTest::newRow("fixed, slow station") << 70 << 1000 << 274 << 1000.0 << 70 << 1501;
}

void TestResponseTimes::timesOut()
{
    QFETCH(int, fixedMs);
    QFETCH(int, microseconds);
    QFETCH(int, characters);
    QFETCH(double, slowestMs);
    ResponseTimes times({fixedMs, microseconds});
    times.note(1, slowestMs);
    QTEST(times.timeoutMs(1, characters), "timeoutMs");
    QTEST(times.patienceMs(1, characters), "patienceMs");
}

void TestResponseTimes::followsAQuickStationSlowly()
{
    ResponseTimes times;
    times.note(1, 2000);
    times.note(1, 10);
    QVERIFY(times.slowestMs(1) > 1990);
    for (int i = 0; i < 10000; ++i) {
        times.note(1, 10);
    }
    QCOMPARE(times.slowestMs(1), 10.0);
}

void TestResponseTimes::keepsStationsApart()
{
    ResponseTimes times;
    times.note(1, 2000);
    QCOMPARE(times.slowestMs(2), 0.0);
    QVERIFY(times.timeoutMs(2, 0) < times.timeoutMs(1, 0));
}

void TestResponseTimes::knowsWhatAFixedTimeoutNeeds()
{
    ResponseTimes fixed({100, 260});
    QCOMPARE(fixed.neededMs(1), 0);
    fixed.note(1, 90);
    QCOMPARE(fixed.neededMs(1), 0);
    fixed.note(1, 200);
    QCOMPARE(fixed.neededMs(1), 301);
    ResponseTimes free;
    free.note(1, 5000);
    QCOMPARE(free.neededMs(1), 0);
}

void TestResponseTimes::glances_data()
{
    QTest::addColumn<double>("othersMs");
    QTest::addColumn<int>("characters");
    QTest::addColumn<int>("glanceMs");
    QTest::newRow("nobody has answered yet") << 0.0 << 0 << 500;
    QTest::newRow("others are quick") << 1.0 << 0 << 50;
    QTest::newRow("others are quick, on a slow line") << 1.0 << 100 << 250;
    QTest::newRow("others take their time") << 30.0 << 0 << 120;
    QTest::newRow("others are slow") << 3000.0 << 0 << 500;
}

void TestResponseTimes::glances()
{
    QFETCH(double, othersMs);
    QFETCH(int, characters);
    ResponseTimes times({0, 1000});
    times.note(9, othersMs);
    QTEST(times.glanceMs(1, characters), "glanceMs");
}

QTEST_APPLESS_MAIN(TestResponseTimes)

#include "test_response_times.moc"
