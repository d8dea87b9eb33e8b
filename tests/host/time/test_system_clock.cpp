#include <host/time/system_clock.h>

#include <QSignalSpy>
#include <QtTest>

using namespace cnet;

class TestSystemClock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firesOnce();
    void isForgottenWhenCancelled();
    void isForgottenWhenSetAnew_data();
    void isForgottenWhenSetAnew();
    void canBeSetAgainFromWithin();
    void neverFalls();
};

void TestSystemClock::firesOnce()
{
    const std::unique_ptr<Alarm> alarm = SystemClock::instance().makeAlarm();
    QSignalSpy fired(alarm.get(), &Alarm::fired);
    QElapsedTimer clock;
    clock.start();
    alarm->set(20);
    QVERIFY(fired.wait(5000));
    QVERIFY(clock.elapsed() >= 19);
    QVERIFY(!fired.wait(60));
    QCOMPARE(static_cast<int>(fired.size()), 1);
}

void TestSystemClock::isForgottenWhenCancelled()
{
    const std::unique_ptr<Alarm> alarm = SystemClock::instance().makeAlarm();
    QSignalSpy fired(alarm.get(), &Alarm::fired);
    alarm->set(5);
    alarm->cancel();
    QVERIFY(!fired.wait(40));
    alarm->set(0);
    QVERIFY(fired.wait(5000));
}

void TestSystemClock::isForgottenWhenSetAnew_data()
{
    QTest::addColumn<int>("firstMs");
    QTest::addColumn<bool>("cancelled");
    QTest::addColumn<int>("thenMs");
    QTest::newRow("later") << 10 << false << 60;
    QTest::newRow("earlier") << 20000 << false << 30;
    QTest::newRow("cancelled, then later") << 10 << true << 60;
    QTest::newRow("cancelled, then earlier") << 20000 << true << 30;
}

void TestSystemClock::isForgottenWhenSetAnew()
{
    QFETCH(int, firstMs);
    QFETCH(bool, cancelled);
    QFETCH(int, thenMs);
    const std::unique_ptr<Alarm> alarm = SystemClock::instance().makeAlarm();
    QSignalSpy fired(alarm.get(), &Alarm::fired);
    QElapsedTimer clock;
    clock.start();
    alarm->set(firstMs);
    if (cancelled) {
        alarm->cancel();
    }
    alarm->set(thenMs);
    QVERIFY(fired.wait(5000));
    QVERIFY(clock.elapsed() >= thenMs - 1);
    QVERIFY(!fired.wait(40));
    QCOMPARE(static_cast<int>(fired.size()), 1);
}

void TestSystemClock::canBeSetAgainFromWithin()
{
    const std::unique_ptr<Alarm> alarm = SystemClock::instance().makeAlarm();
    int times = 0;
    connect(alarm.get(), &Alarm::fired, alarm.get(), [&] {
        if (++times < 3) {
            alarm->set(5);
        }
    });
    alarm->set(0);
    QTRY_COMPARE(times, 3);
    QTest::qWait(30);
    QCOMPARE(times, 3);
}

void TestSystemClock::neverFalls()
{
    SystemClock &clock = SystemClock::instance();
    const qint64 beforeNs = clock.nowNs();
    const qint64 beforeMs = clock.nowMs();
    QTest::qWait(5);
    QVERIFY(clock.nowNs() - beforeNs >= 4000000);
    QVERIFY(clock.nowMs() - beforeMs >= 4);
    QVERIFY(qAbs(clock.wallMs() - QDateTime::currentMSecsSinceEpoch()) < 5000);
}

QTEST_GUILESS_MAIN(TestSystemClock)
#include "test_system_clock.moc"
