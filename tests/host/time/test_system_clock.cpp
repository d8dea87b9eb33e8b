#include "host/exchange/deadline.h"

#include <QSignalSpy>
#include <QtTest>

using namespace cnet;

class TestDeadline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void passesOnce();
    void isForgottenWhenCalledOff();
    void isForgottenWhenSetAnew_data();
    void isForgottenWhenSetAnew();
    void canBeSetAgainFromWithin();
};

void TestDeadline::passesOnce()
{
    Deadline deadline;
    QSignalSpy passed(&deadline, &Deadline::passed);
    QElapsedTimer clock;
    clock.start();
    deadline.set(20);
    QVERIFY(passed.wait(5000));
    QVERIFY(clock.elapsed() >= 19);
    QVERIFY(!passed.wait(60));
    QCOMPARE(static_cast<int>(passed.size()), 1);
}

void TestDeadline::isForgottenWhenCalledOff()
{
    Deadline deadline;
    QSignalSpy passed(&deadline, &Deadline::passed);
    deadline.set(5);
    deadline.callOff();
    QVERIFY(!passed.wait(40));
    deadline.set(0);
    QVERIFY(passed.wait(5000));
}

void TestDeadline::isForgottenWhenSetAnew_data()
{
    QTest::addColumn<int>("firstMs");
    QTest::addColumn<bool>("calledOff");
    QTest::addColumn<int>("thenMs");
    QTest::newRow("later") << 10 << false << 60;
    QTest::newRow("earlier") << 20000 << false << 30;
    QTest::newRow("called off, then later") << 10 << true << 60;
    QTest::newRow("called off, then earlier") << 20000 << true << 30;
}

void TestDeadline::isForgottenWhenSetAnew()
{
    QFETCH(int, firstMs);
    QFETCH(bool, calledOff);
    QFETCH(int, thenMs);
    Deadline deadline;
    QSignalSpy passed(&deadline, &Deadline::passed);
    QElapsedTimer clock;
    clock.start();
    deadline.set(firstMs);
    if (calledOff) {
        deadline.callOff();
    }
    deadline.set(thenMs);
    QVERIFY(passed.wait(5000));
    QVERIFY(clock.elapsed() >= thenMs - 1);
    QVERIFY(!passed.wait(40));
    QCOMPARE(static_cast<int>(passed.size()), 1);
}

void TestDeadline::canBeSetAgainFromWithin()
{
    Deadline deadline;
    int times = 0;
    connect(&deadline, &Deadline::passed, &deadline, [&] {
        if (++times < 3) {
            deadline.set(5);
        }
    });
    deadline.set(0);
    QTRY_COMPARE(times, 3);
    QTest::qWait(30);
    QCOMPARE(times, 3);
}

QTEST_GUILESS_MAIN(TestDeadline)
#include "test_deadline.moc"
