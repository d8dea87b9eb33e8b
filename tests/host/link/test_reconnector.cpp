#include "host/support/fake_link.h"

#include "host/link/reconnector.h"

#include <QSignalSpy>
#include <QtTest>

using namespace cnet;

class TestReconnector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pauseGrows_data();
    void pauseGrows();
    void firstFailureEndsIt();
    void opensAgainAfterALoss();
    void saysOnceThatItIsLost();
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

void TestReconnector::firstFailureEndsIt()
{
    FakeLink link;
    link.opensFine = false;
    Reconnector reconnector(link, GrowingPause(1, 1));
    QSignalSpy firstFailed(&reconnector, &Reconnector::firstOpenFailed);
    QSignalSpy lost(&reconnector, &Reconnector::lost);
    reconnector.start();
    QCOMPARE(firstFailed.size(), 1);
    QCOMPARE(firstFailed.first().first().toString(), QLatin1String("no such device"));
    QVERIFY(!lost.wait(20));
    QCOMPARE(link.openCalls, 1);
}

void TestReconnector::opensAgainAfterALoss()
{
    FakeLink link;
    Reconnector reconnector(link, GrowingPause(1, 4));
    QSignalSpy restored(&reconnector, &Reconnector::restored);
    reconnector.start();
    QVERIFY(link.isOpen());
    QVERIFY(restored.isEmpty());
    link.opensFine = false;
    link.breakDown();
    QTRY_VERIFY(link.openCalls >= 4);
    link.opensFine = true;
    QTRY_COMPARE(restored.size(), 1);
    QVERIFY(link.isOpen());
    QCOMPARE(restored.first().first().toInt(), link.openCalls - 1);
}

void TestReconnector::saysOnceThatItIsLost()
{
    FakeLink link;
    Reconnector reconnector(link, GrowingPause(1, 1));
    QSignalSpy lost(&reconnector, &Reconnector::lost);
    reconnector.start();
    link.opensFine = false;
    link.breakDown("pulled out");
    QTRY_VERIFY(link.openCalls >= 4);
    QCOMPARE(lost.size(), 1);
    QCOMPARE(lost.first().first().toString(), QLatin1String("pulled out"));
}

void TestReconnector::stops()
{
    FakeLink link;
    Reconnector reconnector(link, GrowingPause(1, 1));
    QSignalSpy restored(&reconnector, &Reconnector::restored);
    reconnector.start();
    link.breakDown();
    reconnector.stop();
    QVERIFY(!restored.wait(20));
    QCOMPARE(link.openCalls, 1);
}

QTEST_GUILESS_MAIN(TestReconnector)
#include "test_reconnector.moc"
