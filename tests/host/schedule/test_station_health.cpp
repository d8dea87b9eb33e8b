#include <host/schedule/station_health.h>

#include <QtTest>

using namespace cnet;

class TestStationHealth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatChanges();
    void leavesASilentStationAloneForLonger();
    void takesTurns();
    void savesUp();
    void forgetsWhenTheLineIsOpenedAnew();
    void remembersThatAJobWasTurnedDown();
};

void TestStationHealth::tellsWhatChanges()
{
    StationHealth health;
    QCOMPARE(health.state(1), StationHealth::State::Unproven);
    QVERIFY(health.missed(1, 0));
    QVERIFY(!health.missed(1, 2000));
    QCOMPARE(health.state(1), StationHealth::State::Silent);
    QCOMPARE(health.missedGreetings(1), 2);
    QVERIFY(health.heard(1));
    QVERIFY(!health.heard(1));
    QVERIFY(health.isAlive(1));
    QCOMPARE(health.missedGreetings(1), 0);
    QVERIFY(!health.isAlive(2));
}

void TestStationHealth::leavesASilentStationAloneForLonger()
{
    StationHealth health;
    QList<qint64> pauses;
    qint64 nowMs = 5000;
    for (int i = 0; i < 7; ++i) {
        health.missed(1, nowMs);
        const qint64 dueMs = health.nextDueMs({1});
        QVERIFY(!health.due({1}, dueMs - 1));
        QCOMPARE(health.due({1}, dueMs).value_or(-1), 1);
        pauses.append(dueMs - nowMs);
        nowMs = dueMs;
    }
    QCOMPARE(pauses, (QList<qint64>{1000, 2000, 4000, 8000, 16000, 30000, 30000}));
    health.heard(1);
    health.missed(1, 0);
    QCOMPARE(health.nextDueMs({1}), 1000);
}

void TestStationHealth::takesTurns()
{
    StationHealth health;
    QCOMPARE(health.due({3, 1, 2}, 0).value_or(-1), 3); // nobody was asked yet
    health.heard(3);
    health.missed(1, 100);
    QCOMPARE(health.due({3, 1, 2}, 100).value_or(-1), 2);
    health.missed(2, 50);
    QVERIFY(!health.due({3, 1, 2}, 1000));
    QCOMPARE(health.due({3, 1, 2}, 1200).value_or(-1), 2); // has waited longest
    QCOMPARE(health.nextDueMs({3, 1, 2}), 1050);
    QCOMPARE(health.nextDueMs({3}), -1);
    QVERIFY(!health.due({3}, 100000));
    QVERIFY(!health.due({}, 100000));
}

// A twentieth of the time.
void TestStationHealth::savesUp()
{
    StationHealth health(1000);
    QVERIFY(!health.mayCost(50, 1000));
    QVERIFY(!health.mayCost(50, 1999));
    QVERIFY(health.mayCost(50, 2000));
    health.charge(50);
    QVERIFY(!health.mayCost(1, 2000));
    QVERIFY(health.mayCost(1, 2020));
    health.charge(101);
    QVERIFY(!health.mayCost(1, 4000));
    QVERIFY(health.mayCost(1, 4060));
    QVERIFY(health.mayCost(10000, 3600000)); // of an hour no more than this
    QVERIFY(!health.mayCost(10001, 3600000));
}

void TestStationHealth::forgetsWhenTheLineIsOpenedAnew()
{
    StationHealth health;
    health.heard(1);
    health.missed(2, 0);
    QVERIFY(health.mayCost(100, 100000));
    health.reopen(100000);
    QCOMPARE(health.state(1), StationHealth::State::Unproven);
    QCOMPARE(health.state(2), StationHealth::State::Unproven);
    QCOMPARE(health.due({2}, 100000).value_or(-1), 2);
    QVERIFY(!health.mayCost(1, 100000));
}

void TestStationHealth::remembersThatAJobWasTurnedDown()
{
    StationHealth health;
    health.missed(1, 100);
    QVERIFY(!health.turnedDownLately(1, 100));
    health.turnDown(1, 500);
    QVERIFY(health.turnedDownLately(1, 1499));
    QVERIFY(!health.turnedDownLately(2, 1499));
    QVERIFY(!health.turnedDownLately(1, 1500));
    health.turnDown(1, 2000);
    health.missed(1, 2100);
    QVERIFY(health.turnedDownLately(1, 2100));
    health.heard(1);
    QVERIFY(!health.turnedDownLately(1, 2100));
}

QTEST_APPLESS_MAIN(TestStationHealth)

#include "test_station_health.moc"
