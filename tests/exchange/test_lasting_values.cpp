#include "exchange/host_loop.h"

#include <QtTest>

using namespace exchange;

// When the panel goes on showing its own value though no write waits for it any more. The driver's
// rules make these so: nothing but a new reading then ends the wait, and none while a write waits.
class TestLastingValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void displacedWrite();
    void secondMarkOfTwoFoldedWrites();
    void secondMarkOutlivesLaterWrites();

private:
    static void leaveSecondMark(HostLoop &loop);
    static void readWhileWritesWait(HostLoop &loop);
};

// 513 wait, and the newest takes the last one's turn: its place was never sent and is not settled.
void TestLastingValues::displacedWrite()
{
    HostLoop loop;
    loop.addStation(1);
    loop.setPlc(1, "D_W", 600, {5});
    loop.monitor({key(1, "D_W", 600)});
    QVERIFY(loop.settle());
    for (int i = 0; i < 512; ++i) {
        loop.write(1, "D_W", i, {1});
    }
    loop.write(1, "D_W", 600, {7});
    loop.write(1, "D_W", 601, {8});
    QVERIFY(loop.settle());
    QCOMPARE(loop.inPlc(1, "D_W", 600, 2), (Values{5, 8}));
    QCOMPARE(loop.inPanel(1, "D_W", 600, 2), (Values{7, 8}));
    loop.setPlc(1, "D_W", 600, {6});
    QVERIFY(loop.settle());
    QCOMPARE(loop.inPanel(1, "D_W", 600), Values{6});
}

// Two writes of one bit set both of its marks. The first one ends, a third takes the second's turn
// and sets the first mark again: one write is left, and two marks.
void TestLastingValues::leaveSecondMark(HostLoop &loop)
{
    loop.addStation(1);
    loop.monitor({key(1, "M_bit", 32, 16)});
    QVERIFY(loop.settle());
    loop.write(1, "M_bit", 35, {1});
    loop.write(1, "D_W", 0, {1});
    loop.write(1, "M_bit", 35, {0});
    QVERIFY(loop.turn());
    loop.write(1, "M_bit", 35, {1});
    QVERIFY(loop.settle());
    QCOMPARE(loop.differences(), QStringList());
}

// Ten writes go before the next reading, two are left then.
void TestLastingValues::readWhileWritesWait(HostLoop &loop)
{
    for (int i = 0; i < 12; ++i) {
        loop.write(1, "D_W", i, {2});
    }
    loop.setPlc(1, "M_bit", 36, {1});
    QVERIFY(loop.settle());
}

void TestLastingValues::secondMarkOfTwoFoldedWrites()
{
    HostLoop loop;
    leaveSecondMark(loop);
    readWhileWritesWait(loop);
    QCOMPARE(loop.inPlc(1, "M_bit", 35, 2), (Values{1, 1}));
    QCOMPARE(loop.inPanel(1, "M_bit", 35, 2), (Values{1, 0}));
    loop.setPlc(1, "M_bit", 37, {1});
    QVERIFY(loop.settle());
    QCOMPARE(loop.differences(), QStringList());
}

void TestLastingValues::secondMarkOutlivesLaterWrites()
{
    HostLoop loop;
    leaveSecondMark(loop);
    loop.write(1, "M_bit", 35, {0});
    QVERIFY(loop.settle());
    QCOMPARE(loop.differences(), QStringList());
    readWhileWritesWait(loop);
    QCOMPARE(loop.inPanel(1, "M_bit", 36), Values{0});
    // A write of the whole word ends the wait, whatever the marks say.
    loop.write(1, "M_W", 2, {0x0018});
    QVERIFY(loop.settle());
    loop.setPlc(1, "M_bit", 36, {0});
    QVERIFY(loop.settle());
    QCOMPARE(loop.differences(), QStringList());
}

QTEST_APPLESS_MAIN(TestLastingValues)
#include "test_lasting_values.moc"
