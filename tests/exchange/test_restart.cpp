#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

using plc::FaultKind;

// Communication that starts anew in the middle of things, and writes that never leave the panel.
class TestRestart : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void readInFlight()
    {
        loop.setPlc("D_W", 0, {5});
        loop.monitor({key("D_W", 0)});
        QVERIFY(loop.send());
        loop.start();
        // The answer has no request any more.
        QCOMPARE(loop.receive(), 0);
        QCOMPARE(loop.log().last().description, QString());
        QCOMPARE(loop.counts().unexpected, 1);
        QCOMPARE(HostLoop::calls(), QStringList());
        QCOMPARE(loop.inPanel("D_W", 0), Values{0});
        QVERIFY(!loop.turn());

        QVERIFY(loop.show({key("D_W", 0)}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 0"}));
        QCOMPARE(loop.differences(), QStringList());
    }

    // The PLC has the write although nobody is left to take its answer.
    void writeInFlight()
    {
        loop.write("D_W", 0, {5});
        loop.write("D_W", 1, {6});
        QVERIFY(loop.send());
        loop.start();
        QCOMPARE(loop.inPanel("D_W", 0, 2), (Values{0, 0}));
        QCOMPARE(loop.receive(), 0);
        QVERIFY(!loop.turn());
        QCOMPARE(loop.plcChanges(), texts({"D_W 0=5"}));
        QVERIFY(loop.show({key("D_W", 0, 2)}));
        QCOMPARE(loop.differences(), QStringList());
    }

    void betweenTheHalvesOfABitWrite()
    {
        loop.setPlc("D_W", 0, {0x1234});
        loop.write("D_bit", 0, {1});
        QCOMPARE(loop.turns(1), Values{1});
        loop.start();
        QVERIFY(!loop.turn());
        loop.write("D_bit", 3, {1});
        QCOMPARE(loop.turns(3), (Values{1, 1, -1}));
        QCOMPARE(loop.plcChanges(), texts({"D_W 0=4668"}));
    }

    void queuesAreEmptied()
    {
        loop.monitor({key("D_W", 0)});
        loop.write("D_W", 1, {5});
        loop.write("M_bit", 1, {1});
        loop.readOnce("D_W", 2, 1);
        loop.forget();
        loop.start();
        QCOMPARE(loop.turns(3), (Values{-1, -1, -1}));
        QCOMPARE(loop.inPanel("M_bit", 1), Values{0});
        QCOMPARE(HostLoop::calls(), QStringList()); // no end of the read is told

        loop.write("M_bit", 1, {1});
        QCOMPARE(loop.differencesAtRest(), QStringList());
        QCOMPARE(loop.inPlc("D_W", 1), Values{0});
    }

    void attemptsAreCountedAnew()
    {
        loop.addStation(1).faults.add({FaultKind::Silence});
        loop.monitor({key("D_W", 0)});
        QCOMPARE(loop.turns(2), (Values{8, 8}));
        loop.start();
        loop.monitor({key("D_W", 0)});
        QCOMPARE(loop.turns(4), (Values{8, 8, 2, 8}));
    }

    void fairnessIsCountedAnew()
    {
        for (int round = 0; round < 2; ++round) {
            loop.monitor({key("M_W", 0)});
            loop.writeEach("D_W", 0, numbers(9, round + 1, 0));
            loop.forget();
            loop.turns(9);
            QCOMPARE(loop.requests().filter(QLatin1String("wSB")).size(), 9);
            loop.start();
        }
    }

    void otherSettings()
    {
        loop.addStation(1).faults.add({FaultKind::Silence, 0, 0, 1});
        loop.start("9#0#0#1#2");
        QCOMPARE(loop.monitor({key("D_W", 0, 2), key("D_W", 2, 2)}), 2);
        loop.setPlc("D_W", 0, {1});
        QCOMPARE(loop.turns(3), (Values{2, 1, 1}));
        QCOMPARE(HostLoop::calls(), texts({"9 1 D_W 0"}));
        loop.write("D_W", 0, {1, 2, 3, 4, 5});
        loop.forget();
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests().filter(QLatin1String("wSB")),
                 texts({"01wSB08%DW000000200010002", "01wSB08%DW000020200030004",
                        "01wSB08%DW00004010005"}));
        QCOMPARE(loop.differences(), QStringList());
    }

    void tooFewSettings()
    {
        loop.start("9#0#0#1#2");
        loop.start("8#1#0#7");
        loop.setPlc("D_W", 0, {1, 2, 3});
        QCOMPARE(loop.monitor({key("D_W", 0), key("D_W", 2)}), 2);
        loop.write("D_W", 9, {4});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("D_W", 9), Values{4});
        QCOMPARE(HostLoop::calls(), texts({"9 1 D_W 0", "9 1 D_W 2"}));
    }

    // The recipe and the place in it outlast the start, and the request byte is the host's: a
    // transfer goes on with the block that was in flight.
    void transferGoesOn()
    {
        loop.setRecipe(
            {recipeItem("D_W", 0, 1, 0), recipeItem("D_W", 10, 1, 1), recipeItem("D_W", 20, 1, 2)});
        loop.setRecipeWords(0, {1, 2, 3});
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(1), Values{1});
        QVERIFY(loop.send());
        loop.start();
        QCOMPARE(loop.receive(), 0);
        QVERIFY(loop.isRequested(Recipe::Write));
        QCOMPARE(loop.turns(3), (Values{1, 1, -1}));
        QVERIFY(!loop.isRequested(Recipe::Write));
        QCOMPARE(loop.requests(), texts({"01wSB08%DW00000010001", "01wSB08%DW00010010002",
                                         "01wSB08%DW00010010002", "01wSB08%DW00020010003"}));
        QCOMPARE(loop.inPlc("D_W", 0) + loop.inPlc("D_W", 10) + loop.inPlc("D_W", 20),
                 (Values{1, 2, 3}));
    }

    void noRecipesWithoutABlock_data()
    {
        const Columns<bool, bool, bool> row("block", "buffer", "lock");
        row("no shared block", false, true, true);
        row("no recipe buffer", true, false, true);
        row("no lock", true, true, false);
        row("nothing", false, false, false);
    }

    void noRecipesWithoutABlock()
    {
        QFETCH(bool, block);
        QFETCH(bool, buffer);
        QFETCH(bool, lock);
        loop.setRecipe({recipeItem("D_W", 0, 1, 0)});
        loop.request(Recipe::Write);
        int status = -1;
        intf_initProperty(block ? driver.shmBase : nullptr, 0, buffer ? driver.rcpBuffer : nullptr,
                          &status, HostLoop::kUsualProperties, lock ? driver.shmMutex : nullptr);
        QCOMPARE(status, 0);
        loop.monitor({key("D_W", 0)});
        loop.write("D_W", 0, {5});
        QCOMPARE(loop.turns(2), (Values{1, 1}));
        QCOMPARE(loop.requests(), texts({"01wSB08%DW00000010005", "01rSB08%DW0000001"}));
        QVERIFY(loop.isRequested(Recipe::Write));
        loop.request(Recipe::Write, false);
        QCOMPARE(loop.differences(), QStringList());
    }

    void cacheOnly_data()
    {
        const Columns<QByteArray, int, int> row("name", "address", "written");
        row("word", "D_W", 100, 9);
        row("contact", "TX", 7, 1);
    }

    // The panel sees what it writes, the PLC never does; a reading that brings something new ends
    // it.
    void cacheOnly()
    {
        QFETCH(QByteArray, name);
        QFETCH(int, address);
        QFETCH(int, written);
        const QString call =
            QString::fromLatin1("7 1 %1 %2").arg(QString::fromLatin1(name)).arg(address);
        loop.start("7#1#0#3#60");
        QVERIFY(loop.show({key(name, address)}));
        loop.write(name, address, {written});
        loop.forget();
        loop.turns(20);
        QCOMPARE(loop.requests().filter(QLatin1String("w")), QStringList());
        QCOMPARE(loop.plcChanges(), QStringList());
        QCOMPARE(loop.inPanel(name, address), Values{written});
        QCOMPARE(HostLoop::calls(), QStringList());

        loop.setPlc(name, address, {1});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPanel(name, address), Values{1});
        QCOMPARE(HostLoop::calls(), QStringList(call));

        // With the mode switched off the same write goes out.
        loop.start();
        loop.write(name, address, {0});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc(name, address), Values{0});
        QCOMPARE(loop.differences(), QStringList());
    }

    void cacheOnlyBits()
    {
        loop.start("7#1#0#3#60");
        QVERIFY(loop.show({key("M_bit", 32, 16)}));
        loop.write("M_bit", 35, {1});
        loop.write("M_bit", 35, {0});
        loop.write("M_bit", 35, {1});
        loop.write("M_bit", 40, {1, 1});
        QCOMPARE(HostLoop::calls(), texts({"7 1 M_bit 35", "7 1 M_bit 35", "7 1 M_bit 35",
                                           "7 1 M_bit 40", "7 1 M_bit 41"}));
        loop.turns(5);
        QCOMPARE(loop.inPanel("M_W", 2), Values{0x0308});
        loop.setPlc("M_W", 2, {0x0001});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPanel("M_W", 2), Values{0x0001});
        QCOMPARE(loop.differences(), QStringList());
    }

    void againAndAgain()
    {
        for (int round = 0; round < 200; ++round) {
            loop.monitor({key("D_W", 0, 3), key("M_bit", 7, 20), key("TX", 1)});
            loop.write("D_W", round % 3, {round});
            loop.write("D_bit", 500 + round, {1});
            loop.write("TX", 1, {round % 2});
            loop.readOnce("C_W", 4, 2);
            loop.turns(round % 9);
            if (round % 2 == 0 && loop.send()) {
                loop.start();
                QCOMPARE(loop.receive(), 0);
            } else {
                QCOMPARE(loop.differencesAtRest(), QStringList());
                loop.start();
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestRestart)
#include "test_restart.moc"
