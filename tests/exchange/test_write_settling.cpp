#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

using plc::FaultKind;

// What the panel sees of its write, and hears, from the moment it writes until the write has ended.
class TestWriteSettling : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void outcomes_data()
    {
        // atOnce: heard when it writes 1 over 0
        // settled: heard when the PLC has taken it
        // failed: heard when it is given up
        const Columns<Keys, QByteArray, int, QStringList, QStringList, QStringList> row(
            "keys", "name", "address", "atOnce", "settled", "failed");
        row("word", {key("D_W", 100)}, "D_W", 100, {"7 1 D_W 100"}, {}, {"7 1 D_W 100"});
        row("word watched by bits", {key("M_bit", 48), key("M_bit", 49)}, "M_W", 3,
            {"7 1 M_bit 48"}, {}, {"7 1 M_bit 48"});
        row("word watched both ways", {key("M_bit", 48), key("M_W", 3)}, "M_W", 3,
            {"7 1 M_bit 48", "7 1 M_W 3"}, {}, {"7 1 M_bit 48", "7 1 M_W 3"});
        row("word that nobody watches", {}, "C_W", 3, {}, {}, {});
        // A bit that has ended is told with all watched bits of its word, whatever became of it.
        row("bit", {key("M_bit", 35)}, "M_bit", 35, {"7 1 M_bit 35"}, {"7 1 M_bit 35"},
            {"7 1 M_bit 35"});
        row("bit among watched bits", {key("K_bit", 34, 3)}, "K_bit", 35, {"7 1 K_bit 35"},
            {"7 1 K_bit 34", "7 1 K_bit 35", "7 1 K_bit 36"},
            {"7 1 K_bit 34", "7 1 K_bit 35", "7 1 K_bit 36"});
        row("bit of a watched word", {key("L_W", 2)}, "L_bit", 35, {"7 1 L_W 2"}, {"7 1 L_W 2"},
            {"7 1 L_W 2"});
        row("data register bit", {key("D_bit", 1605)}, "D_bit", 1605, {"7 1 D_bit 1605"},
            {"7 1 D_bit 1605"}, {"7 1 D_bit 1605"});
        row("bit that nobody watches", {}, "P_bit", 3, {}, {}, {});
        row("contact", {key("TX", 7)}, "TX", 7, {"7 1 TX 7"}, {}, {"7 1 TX 7"});
        // The failure of a contact is told whether it is watched or not.
        row("contact that nobody watches", {}, "CX", 7, {}, {}, {"7 1 CX 7"});
    }

    void outcomes()
    {
        QFETCH(Keys, keys);
        QFETCH(QByteArray, name);
        QFETCH(int, address);
        QFETCH(QStringList, atOnce);
        QFETCH(QStringList, settled);
        QFETCH(QStringList, failed);
        for (const bool good : {true, false}) {
            renew(loop);
            QVERIFY(loop.show(keys));
            loop.forget();
            if (!good) {
                loop.refuse(3);
            }
            loop.write(name, address, {1});
            QCOMPARE(HostLoop::calls(), atOnce);
            QCOMPARE(loop.inPanel(name, address), Values{1});
            QCOMPARE(loop.plcChanges(), QStringList());

            for (int turn = 0; turn < 3 && !driver.pendingWrites.isEmpty(); ++turn) {
                QCOMPARE(HostLoop::calls(), atOnce);
                QCOMPARE(loop.inPanel(name, address), Values{1});
                QVERIFY(loop.turn());
            }
            QVERIFY(driver.pendingWrites.isEmpty());
            QCOMPARE(HostLoop::calls(), atOnce + (good ? settled : failed));
            QCOMPARE(loop.inPanel(name, address), Values{good ? 1 : 0});
            QCOMPARE(loop.plcChanges().size(), good ? 1 : 0);
            QCOMPARE(loop.differences(), QStringList());

            // Nothing is left to be told.
            loop.forget();
            QVERIFY(loop.settle());
            QCOMPARE(HostLoop::calls(), QStringList());
            QCOMPARE(loop.differences(), QStringList());
        }
    }

    void momentsOfAWrite()
    {
        loop.setPlc("D_W", 100, {5});
        QVERIFY(loop.show({key("D_W", 100)}));
        loop.refuse(2);
        loop.write("D_W", 100, {9});
        for (const int result : {8, 8, 1}) {
            QVERIFY(loop.send());
            QCOMPARE(loop.inPanel("D_W", 100), Values{9});
            QCOMPARE(loop.inPlc("D_W", 100), Values{result == 1 ? 9 : 5}); // it has the request
            QCOMPARE(loop.receive(), result);
            QCOMPARE(loop.inPanel("D_W", 100), Values{9});
        }
        loop.setPlc("D_W", 100, {6});
        QCOMPARE(loop.inPanel("D_W", 100), Values{9});
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPanel("D_W", 100), Values{6});
    }

    // What the panel draws from within the callback: after a failure it is the value that the PLC
    // holds; while it writes, it is still the value before.
    void valueWithinTheCallback()
    {
        loop.setPlc("D_W", 100, {5});
        loop.monitor({key("D_W", 100)});
        Values seen;
        HostLoop::setCallbackHandler([&](const QString &) { seen += loop.inPanel("D_W", 100); });
        QVERIFY(loop.settle());
        QCOMPARE(seen, Values{5});
        loop.refuse(3);
        loop.write("D_W", 100, {9});
        QCOMPARE(seen, (Values{5, 5}));
        QCOMPARE(loop.turns(3), (Values{8, 8, 2}));
        QCOMPARE(seen, (Values{5, 5, 5}));
        loop.setPlc("D_W", 100, {6});
        QVERIFY(loop.settle());
        QCOMPARE(seen, (Values{5, 5, 5, 6}));
    }

    // Readings that come in while writes are queued are told, but the panel goes on showing what it
    // wrote.
    void pendingValueOutlastsReadings()
    {
        QVERIFY(loop.show({key("D_W", 100)}));
        loop.writeEach("D_W", 0, numbers(10, 1, 0));
        loop.write("D_W", 100, {9});
        loop.forget();
        loop.turns(10);
        loop.setPlc("D_W", 100, {4});
        QVERIFY(loop.turn());
        QCOMPARE(loop.requests().last(), QLatin1String("01rSB08%DW0010001"));
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100"}));
        QCOMPARE(loop.inPanel("D_W", 100), Values{9});
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("D_W", 100), Values{9});
        QCOMPARE(loop.differences(), QStringList());
    }

    // The PLC took the write, but the panel cannot know: it shows the old value until it reads.
    void lostAcknowledgement()
    {
        loop.setPlc("D_W", 100, {5});
        QVERIFY(loop.show({key("D_W", 100)}));
        loop.unit().faults.add({FaultKind::WrongCheck, 0, 0, 3});
        loop.write("D_W", 100, {9});
        loop.forget();
        QCOMPARE(loop.turns(3), (Values{8, 8, 2}));
        QCOMPARE(loop.differences(), texts({"1 D_W 100: panel 5, PLC 9"}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100"}));
        QVERIFY(loop.turn());
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100", "7 1 D_W 100"}));
    }

    // The end of the first of two writes to a place takes the value of the second for confirmed:
    // the screen does not flicker back.
    void firstOfTwoWrites()
    {
        loop.setPlc("D_W", 100, {5});
        QVERIFY(loop.show({key("D_W", 100)}));
        loop.write("D_W", 100, {8});
        loop.write("D_W", 100, {9});
        loop.forget();
        QCOMPARE(loop.turns(1), Values{1});
        QCOMPARE(loop.inPlc("D_W", 100), Values{8});
        QCOMPARE(loop.inPanel("D_W", 100), Values{9});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("D_W", 100), Values{9});
        QCOMPARE(HostLoop::calls(), QStringList());
        QCOMPARE(loop.differences(), QStringList());
    }

    // For the same reason a second write that fails leaves its value on the screen until the
    // reading.
    void firstTakenSecondFailed()
    {
        loop.setPlc("D_W", 100, {5});
        QVERIFY(loop.show({key("D_W", 100)}));
        loop.write("D_W", 100, {8});
        loop.write("D_W", 100, {9});
        loop.forget();
        QVERIFY(loop.turn());
        loop.refuse(3);
        QCOMPARE(loop.turns(3), (Values{8, 8, 2}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100"}));
        QCOMPARE(loop.differences(), texts({"1 D_W 100: panel 9, PLC 8"}));
        QVERIFY(loop.turn());
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100", "7 1 D_W 100"}));
        QCOMPARE(loop.inPanel("D_W", 100), Values{8});
        QCOMPARE(loop.differences(), QStringList());
    }

    // A first write that fails shows the old value although the second still waits; the success of
    // the second is seen in the value but told by no callback.
    void firstFailedSecondTaken()
    {
        loop.setPlc("D_W", 100, {5});
        QVERIFY(loop.show({key("D_W", 100)}));
        loop.refuse(3);
        loop.write("D_W", 100, {8});
        loop.write("D_W", 100, {9});
        loop.forget();
        QCOMPARE(loop.turns(3), (Values{8, 8, 2}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100"}));
        QCOMPARE(loop.inPanel("D_W", 100), Values{5});
        QCOMPARE(loop.turns(3), (Values{1, 1, 1}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100"}));
        QCOMPARE(loop.inPanel("D_W", 100), Values{9});
        QCOMPARE(loop.differences(), QStringList());
    }

    void piecesSettleOnTheirOwn()
    {
        loop.start("7#0#0#3#4");
        loop.setPlc("D_W", 100, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
        QVERIFY(loop.show({key("D_W", 100, 4), key("D_W", 104, 4), key("D_W", 108, 2)}));
        loop.write("D_W", 100, {21, 22, 23, 24, 25, 26, 27, 28, 29, 30});
        QVERIFY(loop.turn());
        loop.refuse(3);
        QCOMPARE(loop.turns(3), (Values{8, 8, 2}));
        QCOMPARE(loop.inPanel("D_W", 100, 10), (Values{21, 22, 23, 24, 5, 6, 7, 8, 29, 30}));
        QVERIFY(loop.turn());
        QCOMPARE(loop.plcChanges(), texts({"D_W 100=21", "D_W 101=22", "D_W 102=23", "D_W 103=24",
                                           "D_W 108=29", "D_W 109=30"}));
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }

    // What was never read counts as 0 and comes back as 0 when a write fails.
    void nothingKnownBefore()
    {
        loop.setPlc("D_W", 100, {5});
        loop.refuse(3);
        loop.write("D_W", 100, {9});
        QVERIFY(loop.settle());
        QCOMPARE(loop.differences(), texts({"1 D_W 100: panel 0, PLC 5"}));
        QVERIFY(loop.show({key("D_W", 100)}));
        QCOMPARE(loop.differences(), QStringList());
    }

    void readOnlyRelays()
    {
        loop.setPlc("F_W", 3, {0x00F0});
        QVERIFY(loop.show({key("F_W", 3)}));
        loop.write("F_W", 3, {1});
        loop.write("F_bit", 48, {1});
        loop.forget();
        QCOMPARE(loop.turns(6), (Values{8, 8, 2, 8, 8, 2}));
        QCOMPARE(loop.log().first().answer.mid(6, 4), QByteArray("1132"));
        QCOMPARE(loop.plcChanges(), QStringList());
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(HostLoop::calls(), texts({"7 1 F_W 3", "7 1 F_W 3"})); // one for each
    }

    void addressesThatThePlcLacks()
    {
        loop.addStation(1, plc::Model::K120s);
        loop.write("D_W", 4999, {1});
        loop.write("D_W", 5000, {1});
        loop.write("D_W", 4998, {2, 3});
        loop.write("D_W", 4999, {4, 5}); // half of it exists: refused as a whole
        loop.write("M_bit", 16 * 192, {1});
        QVERIFY(loop.settle());
        QCOMPARE(loop.plcChanges(), texts({"D_W 4998=2", "D_W 4999=3"}));
        QCOMPARE(loop.counts().givenUp, 3);
        QCOMPARE(loop.inPanel("D_W", 5000), Values{0});
        QCOMPARE(loop.inPanel("M_bit", 16 * 192), Values{0});
    }
};

QTEST_APPLESS_MAIN(TestWriteSettling)
#include "test_write_settling.moc"
