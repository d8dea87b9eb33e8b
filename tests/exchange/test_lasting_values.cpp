#include "exchange/exchange_test.h"

#include <QtTest>

using namespace exchange;

// When the panel goes on showing its own value though no write waits for it any more. The driver's
// rules make these so: nothing but a new reading then ends the wait, and none while a write waits.
class TestLastingValues : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    // 513 wait, and the newest takes the last one's turn: its place was never sent and is not
    // settled.
    void displacedWrite()
    {
        loop.setPlc("D_W", 600, {5});
        QVERIFY(loop.show({key("D_W", 600)}));
        loop.writeEach("D_W", 0, numbers(512, 1, 0));
        loop.write("D_W", 600, {7});
        loop.write("D_W", 601, {8});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("D_W", 600, 2), (Values{5, 8}));
        QCOMPARE(loop.inPanel("D_W", 600, 2), (Values{7, 8}));
        loop.setPlc("D_W", 600, {6});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPanel("D_W", 600), Values{6});
    }

    void secondMarkOfTwoFoldedWrites()
    {
        leaveSecondMark();
        readWhileWritesWait();
        QCOMPARE(loop.inPlc("M_bit", 35, 2), (Values{1, 1}));
        QCOMPARE(loop.inPanel("M_bit", 35, 2), (Values{1, 0}));
        loop.setPlc("M_bit", 37, {1});
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }

    void secondMarkOutlivesLaterWrites()
    {
        leaveSecondMark();
        loop.write("M_bit", 35, {0});
        QCOMPARE(loop.differencesAtRest(), QStringList());
        readWhileWritesWait();
        QCOMPARE(loop.inPanel("M_bit", 36), Values{0});
        // A write of the whole word ends the wait, whatever the marks say.
        loop.write("M_W", 2, {0x0018});
        QVERIFY(loop.settle());
        loop.setPlc("M_bit", 36, {0});
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }

private:
    // Two writes of one bit set both of its marks. The first one ends, a third takes the second's
    // turn and sets the first mark again: one write is left, and two marks.
    void leaveSecondMark()
    {
        QVERIFY(loop.show({key("M_bit", 32, 16)}));
        loop.write("M_bit", 35, {1});
        loop.write("D_W", 0, {1});
        loop.write("M_bit", 35, {0});
        QVERIFY(loop.turn());
        loop.write("M_bit", 35, {1});
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }

    // Ten writes go before the next reading, two are left then.
    void readWhileWritesWait()
    {
        loop.writeEach("D_W", 0, numbers(12, 2, 0));
        loop.setPlc("M_bit", 36, {1});
        QVERIFY(loop.settle());
    }
};

QTEST_APPLESS_MAIN(TestLastingValues)
#include "test_lasting_values.moc"
