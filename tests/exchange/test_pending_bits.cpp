#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

// Writes of one bit that wait behind one another: two marks for each bit of a word remember them,
// and the word is pending until the last mark is gone.
class TestPendingBits : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        renew(loop);
        QVERIFY(loop.show({key("M_bit", 35)}));
        loop.forget();
    }

    void cleanup()
    {
        QCOMPARE(loop.differencesAtRest(), QStringList());
        QCOMPARE(marks(), 0);
        QCOMPARE(pending(), 0);
    }

    void twoWritesOfOneBit()
    {
        loop.write("M_bit", 35, {1});
        QCOMPARE(marks(), 0x40);
        loop.write("M_bit", 35, {0});
        QCOMPARE(marks(), 0xC0);
        QCOMPARE(HostLoop::calls(), texts({"7 1 M_bit 35", "7 1 M_bit 35"}));
        QCOMPARE(loop.inPanel("M_bit", 35), Values{0});

        // The first is in the PLC; the panel goes on showing the second and hears nothing.
        loop.forget();
        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0x80);
        QCOMPARE(pending(), 1);
        QCOMPARE(loop.inPlc("M_bit", 35), Values{1});
        QCOMPARE(loop.inPanel("M_bit", 35), Values{0});
        QCOMPARE(HostLoop::calls(), QStringList());

        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0);
        QCOMPARE(pending(), 0);
        QCOMPARE(loop.inPlc("M_bit", 35), Values{0});
        QCOMPARE(loop.inPanel("M_bit", 35), Values{0});
        QCOMPARE(HostLoop::calls(), texts({"7 1 M_bit 35"}));
        QCOMPARE(loop.requests(), texts({"01wSS0109%MX00002301", "01wSS0109%MX00002300"}));
    }

    void twoWritesOneFails_data()
    {
        // panelAtEnd: before the next reading
        const Columns<bool, bool, int, int> row("first", "second", "panelAtEnd", "plcAtEnd");
        row("both taken", true, true, 0, 0);
        row("the first fails", false, true, 0, 0);
        // The end of the first one took the second's value for confirmed.
        row("the second fails", true, false, 0, 1);
        row("both fail", false, false, 0, 0);
    }

    void twoWritesOneFails()
    {
        QFETCH(bool, first);
        QFETCH(bool, second);
        loop.write("M_bit", 35, {1});
        loop.write("M_bit", 35, {0});
        loop.forget();
        for (const bool good : {first, second}) {
            QCOMPARE(HostLoop::calls(), QStringList());
            QCOMPARE(pending(), 1);
            if (!good) {
                loop.refuse(3);
            }
            QCOMPARE(loop.turns(good ? 1 : 3), (good ? Values{1} : Values{8, 8, 2}));
        }
        QCOMPARE(HostLoop::calls(), texts({"7 1 M_bit 35"}));
        QTEST(loop.inPanel("M_bit", 35).first(), "panelAtEnd");
        QTEST(loop.inPlc("M_bit", 35).first(), "plcAtEnd");
    }

    void thirdWriteFolds()
    {
        for (const int value : {1, 0, 1}) {
            loop.write("M_bit", 35, {value});
        }
        QCOMPARE(marks(), 0xC0);
        QCOMPARE(loop.turns(2), (Values{1, 1}));
        QCOMPARE(loop.counts().frames, 2);
        QCOMPARE(marks(), 0);
        QCOMPARE(loop.inPlc("M_bit", 35), Values{1});
    }

    void thirdWriteAfterTheFirstEnded()
    {
        loop.write("M_bit", 35, {1});
        loop.write("M_bit", 35, {0});
        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0x80);
        loop.write("M_bit", 35, {1});
        QCOMPARE(marks(), 0xC0);
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("M_bit", 35), Values{0});
        QCOMPARE(loop.inPanel("M_bit", 35), Values{1});
        QCOMPARE(marks(), 0x80);
        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0);
        QCOMPARE(loop.inPlc("M_bit", 35), Values{1});
    }

    void neighboursWaitForEachOther()
    {
        loop.write("M_bit", 35, {1});
        loop.write("M_bit", 37, {1});
        loop.write("M_bit", 47, {1});
        QCOMPARE(marks(), 0x40000440);
        loop.forget();
        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0x40000400);
        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0x40000000);
        QCOMPARE(pending(), 1);
        QCOMPARE(HostLoop::calls(), QStringList());
        QVERIFY(loop.turn());
        QCOMPARE(HostLoop::calls(), texts({"7 1 M_bit 35"}));
        QCOMPARE(loop.inPanel("M_W", 2), Values{0x8028});
        QCOMPARE(loop.inPlc("M_W", 2), Values{0x8028});
    }

    void neighbourFails()
    {
        loop.write("M_bit", 37, {1});
        loop.write("M_bit", 35, {1});
        loop.refuse(3);
        QCOMPARE(loop.turns(3), (Values{8, 8, 2}));
        // The word is still pending for the other bit, so the failed one is shown as written...
        QCOMPARE(loop.inPanel("M_bit", 35, 3), (Values{1, 0, 1}));
        QVERIFY(loop.turn());
        // ...until that one has ended as well.
        QCOMPARE(loop.inPanel("M_bit", 35, 3), (Values{1, 0, 0}));
        QCOMPARE(loop.inPlc("M_W", 2), Values{0x0008});
    }

    // A write of the whole word ends the wait of the word at once, but leaves the marks to the bit.
    void bitAndItsWord()
    {
        loop.write("M_W", 2, {0x00F0});
        loop.write("M_bit", 35, {1});
        QCOMPARE(loop.inPanel("M_W", 2), Values{0x00F8});
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("M_W", 2), Values{0x00F0});
        QCOMPARE(pending(), 0);
        QCOMPARE(marks(), 0x40);
        QCOMPARE(loop.inPanel("M_W", 2), Values{0x00F8});
        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0);
        QCOMPARE(loop.inPlc("M_W", 2), Values{0x00F8});
    }

    // A bit that is written alone and within a row of bits has two writes, but they are not the
    // same request: one mark serves both, and the bit counts as settled after the first.
    void singleAndSeveral()
    {
        loop.write("M_bit", 35, {1});
        loop.write("M_bit", 34, {1, 0, 1});
        QCOMPARE(marks(), 0x150);
        QVERIFY(loop.turn());
        QCOMPARE(marks(), 0x110);
        QCOMPARE(loop.inPanel("M_bit", 34, 3), (Values{1, 0, 1}));
        QCOMPARE(loop.turns(2), (Values{1, 1}));
        QCOMPARE(marks(), 0);
        QCOMPARE(loop.inPlc("M_bit", 34, 3), (Values{1, 0, 1}));
    }

    void readingsWhileBitsWait()
    {
        loop.writeEach("M_bit", 48, numbers(9, 1, 0));
        loop.write("M_bit", 35, {1});
        loop.turns(9);
        loop.write("M_bit", 35, {0}); // the first is the next to go
        loop.forget();
        loop.turns(1);
        QCOMPARE(loop.inPlc("M_bit", 35), Values{1});
        loop.setPlc("M_bit", 47, {1});
        // The reading brings the first write, the panel goes on showing the second.
        QVERIFY(loop.turn());
        QCOMPARE(loop.requests().last(), QLatin1String("01rSB08%MW0000201"));
        QCOMPARE(HostLoop::calls(), texts({"7 1 M_bit 35"}));
        QCOMPARE(loop.inPanel("M_bit", 35), Values{0});
        QCOMPARE(marks(), 0x80);
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPanel("M_W", 2), Values{0x8000});
        QCOMPARE(loop.inPlc("M_W", 2), Values{0x8000});
    }

private:
    /** The marks of M word 2: 2i and 2i + 1 belong to bit i. */
    static int marks() { return record().pendingBits; }
    static int pending() { return record().writePending; }

    static const _DATA_ &record()
    {
        static const _DATA_ none = _DATA_();
        for (const _DATA_ &each : driver.dataArea) {
            if (each.regPrefix == QLatin1String("M") && each.unitAddr == 2) {
                return each;
            }
        }
        return none;
    }
};

QTEST_APPLESS_MAIN(TestPendingBits)
#include "test_pending_bits.moc"
