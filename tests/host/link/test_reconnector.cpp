#include "host/support/fake_link.h"
#include "host/support/virtual_clock.h"

#include <host/link/reconnector.h>

#include <QSignalSpy>
#include <QtTest>

using namespace cnet;

namespace {

const GrowingPause kPause(10, 40);

} // namespace

Q_DECLARE_METATYPE(cnet::FirstOpen)

class TestReconnector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pauseGrows_data();
    void pauseGrows();
    void firstFailure_data();
    void firstFailure();
    void opensAgainAfterALoss();
    void pauseStaysLongWhileNothingComesIn_data();
    void pauseStaysLongWhileNothingComesIn();
    void stops();
};

void TestReconnector::pauseGrows_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("longest");
    QTest::addColumn<QList<int>>("pauses");
    QTest::newRow("doubles up to the longest")
        << 100 << 5000 << QList<int>{100, 200, 400, 800, 1600, 3200, 5000, 5000};
    QTest::newRow("stays") << 7 << 7 << QList<int>{7, 7, 7};
}

void TestReconnector::pauseGrows()
{
    QFETCH(int, first);
    QFETCH(int, longest);
    QFETCH(QList<int>, pauses);
    GrowingPause pause(first, longest);
    for (const int expected : pauses) {
        QCOMPARE(pause.next(), expected);
    }
    pause.reset();
    QCOMPARE(pause.next(), first);
}

void TestReconnector::firstFailure_data()
{
    QTest::addColumn<FirstOpen>("firstOpen");
    QTest::addColumn<int>("calls");
    QTest::newRow("ends it") << FirstOpen::Once << 1;
    QTest::newRow("is like any other") << FirstOpen::Again << 5; // after 10, 30, 70, and 110 ms
}

void TestReconnector::firstFailure()
{
    QFETCH(FirstOpen, firstOpen);
    QFETCH(int, calls);
    VirtualClock clock;
    FakeLink link;
    link.opensFine = false;
    Reconnector reconnector(link, clock, firstOpen, kPause);
    QSignalSpy failed(&reconnector, &Reconnector::firstOpenFailed);
    QSignalSpy lost(&reconnector, &Reconnector::lost);
    QSignalSpy restored(&reconnector, &Reconnector::restored);
    reconnector.start();
    clock.runFor(149);
    QCOMPARE(link.openCalls, calls);
    const QSignalSpy &told = calls == 1 ? failed : lost;
    QCOMPARE(static_cast<int>(failed.size() + lost.size()), 1);
    QCOMPARE(told.first().first().toString(), QLatin1String("no such device"));
    link.opensFine = true;
    clock.runFor(1);
    QCOMPARE(static_cast<int>(restored.size()), calls == 1 ? 0 : 1);
}

void TestReconnector::opensAgainAfterALoss()
{
    VirtualClock clock;
    FakeLink link;
    Reconnector reconnector(link, clock, FirstOpen::Once, kPause);
    QSignalSpy lost(&reconnector, &Reconnector::lost);
    QSignalSpy restored(&reconnector, &Reconnector::restored);
    reconnector.start();
    QVERIFY(link.isOpen());
    link.opensFine = false;
    link.breakDown("pulled out");
    clock.runFor(70);
    QCOMPARE(link.openCalls, 4);
    QCOMPARE(reconnector.attempts(), 3);
    QCOMPARE(static_cast<int>(lost.size()), 1); // said once
    QCOMPARE(lost.first().first().toString(), QLatin1String("pulled out"));
    link.opensFine = true;
    clock.runFor(40);
    QVERIFY(link.isOpen());
    QCOMPARE(static_cast<int>(restored.size()), 1);
    QCOMPARE(restored.first().first().toInt(), 4);
    QCOMPARE(reconnector.attempts(), 0);
}

void TestReconnector::pauseStaysLongWhileNothingComesIn_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("pauseMs");
    QTest::newRow("nothing came in") << QByteArray() << 20;
    QTest::newRow("bytes came in") << QByteArray("x") << 10;
}

// A port server may accept and hang up at once.
void TestReconnector::pauseStaysLongWhileNothingComesIn()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, pauseMs);
    VirtualClock clock;
    FakeLink link;
    Reconnector reconnector(link, clock, FirstOpen::Once, kPause);
    reconnector.start();
    link.breakDown();
    clock.runFor(10);
    QVERIFY(link.isOpen());
    if (!bytes.isEmpty()) {
        link.say(bytes);
    }
    link.breakDown();
    clock.runFor(pauseMs - 1);
    QVERIFY(!link.isOpen());
    clock.runFor(1);
    QVERIFY(link.isOpen());
}

void TestReconnector::stops()
{
    VirtualClock clock;
    FakeLink link;
    Reconnector reconnector(link, clock, FirstOpen::Once, kPause);
    reconnector.start();
    link.breakDown();
    reconnector.stop();
    clock.runFor(1000);
    QCOMPARE(link.openCalls, 1);
}

QTEST_GUILESS_MAIN(TestReconnector)

#include "test_reconnector.moc"
