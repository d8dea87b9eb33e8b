#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

class TestCyclicReads : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void registers_data()
    {
        const Columns<QByteArray, int, Values, QString> row("name", "address", "values", "request");
        row("D_W 9998 x2", "D_W", 9998, {0x1234, 0xFEDC}, "1FrSB08%DW0999802");
        row("C_W 255 x1", "C_W", 255, {1}, "1FrSB08%CW0025501");
        row("T_W 0 x3", "T_W", 0, {0xFFFF, 0, 0x8000}, "1FrSB08%TW0000003");
        row("K_W 31 x1", "K_W", 31, {0x00FF}, "1FrSB08%KW0003101");
        row("P_W 63 x1", "P_W", 63, {0xFF00}, "1FrSB08%PW0006301");
        row("F_W 10 x2", "F_W", 10, {7, 8}, "1FrSB08%FW0001002");
        row("L_W 254 x2", "L_W", 254, {9, 10}, "1FrSB08%LW0025402");
        row("M_W 100 x10 in hexadecimal", "M_W", 100, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10},
            "1FrSB08%MW001000A");
        row("P_bit 2.3 x3", "P_bit", 35, {1, 0, 1}, "1FrSB08%PW0000201");
        row("K_bit 3.14 x4 over two words", "K_bit", 62, {1, 1, 0, 1}, "1FrSB08%KW0000302");
        row("M_bit 1.0 x16 is one word", "M_bit", 16,
            {1, 0, 0, 1, 0, 1, 1, 1, 0, 0, 0, 0, 1, 1, 1, 1}, "1FrSB08%MW0000101");
        row("L_bit 255.15", "L_bit", 4095, {1}, "1FrSB08%LW0025501");
        row("F_bit 0.0", "F_bit", 0, {1}, "1FrSB08%FW0000001");
        row("D_bit 9999.15", "D_bit", 159999, {1}, "1FrSB08%DW0999901");
        row("TX 7", "TX", 7, {1}, "1FrSS0107%TX0007");
        row("CX 255", "CX", 255, {1}, "1FrSS0107%CX0255");
    }

    void registers()
    {
        QFETCH(QByteArray, name);
        QFETCH(int, address);
        QFETCH(Values, values);
        const int count = static_cast<int>(values.size());
        loop.addStation(31);
        QCOMPARE(loop.monitor({key(name, address, count, 31)}), 1);
        for (const int value : loop.inPanel(name, address, count, 31)) {
            QCOMPARE(value, 0);
        }

        loop.setPlc(name, address, values, 31);
        QVERIFY(loop.turn());
        QTEST(loop.requests().join(QLatin1Char('|')), "request");
        QCOMPARE(loop.inPanel(name, address, count, 31), values);
        QCOMPARE(loop.differencesAtRest(), QStringList());
        QCOMPARE(loop.plcChanges(31), QStringList());
        QCOMPARE(loop.counts().answers, loop.counts().frames);
    }

    void changesOncePerView_data()
    {
        const Columns<Keys, QByteArray, int, int, int, QStringList> row("keys", "name", "address",
                                                                        "before", "after", "calls");
        row("word", {key("D_W", 100)}, "D_W", 100, 5, 6, {"7 1 D_W 100"});
        row("word monitored twice", {key("D_W", 100), key("D_W", 99, 5)}, "D_W", 100, 5, 6,
            {"7 1 D_W 100"});
        row("bits before the word", {key("D_W", 100), key("D_bit", 1603), key("D_bit", 1601)},
            "D_W", 100, 0x000F, 0x0005, {"7 1 D_bit 1601", "7 1 D_bit 1603", "7 1 D_W 100"});
        row("only bits that changed", {key("M_bit", 32, 16)}, "M_W", 2, 0x8001, 0x8002,
            {"7 1 M_bit 32", "7 1 M_bit 33"});
        row("bit that is not monitored", {key("M_bit", 32), key("M_W", 2)}, "M_W", 2, 0, 2,
            {"7 1 M_W 2"});
        row("another bit of the word", {key("M_bit", 32)}, "M_W", 2, 0, 2, {});
        row("contact", {key("TX", 7), key("T_W", 7)}, "TX", 7, 0, 1, {"7 1 TX 7"});
        row("timer value beside its contact", {key("TX", 7), key("T_W", 7)}, "T_W", 7, 1, 2,
            {"7 1 T_W 7"});
        row("word bridged by the block", {key("D_W", 100), key("D_W", 110)}, "D_W", 105, 1, 2, {});
    }

    void changesOncePerView()
    {
        QFETCH(Keys, keys);
        QFETCH(QByteArray, name);
        QFETCH(int, address);
        QFETCH(int, before);
        QFETCH(int, after);
        loop.setPlc(name, address, {before});
        QVERIFY(loop.show(keys));

        loop.forget();
        loop.setPlc(name, address, {after});
        QVERIFY(loop.settle());
        QVERIFY(loop.settle());
        QTEST(HostLoop::calls(), "calls");
        QCOMPARE(loop.differences(), QStringList());
    }

    void unchangedValuesAreSilent()
    {
        loop.setPlc("D_W", 11, {4});
        loop.monitor({key("D_W", 10, 3), key("TX", 1), key("D_bit", 160, 16)});
        loop.turns(10);
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 11"})); // what is 0 was 0 before it was read
    }

    void mergedBlocks_data()
    {
        const Columns<Keys, int, QStringList> row("keys", "blockWords", "requests");
        row("touching", {key("D_W", 0), key("D_W", 1)}, 60, {"01rSB08%DW0000002"});
        row("touching, blocks of 1", {key("D_W", 0), key("D_W", 1)}, 1,
            {"01rSB08%DW0000001", "01rSB08%DW0000101"});
        row("gap within the limit", {key("D_W", 0, 2), key("D_W", 10, 2)}, 20,
            {"01rSB08%DW000000C"});
        row("span over the limit", {key("D_W", 0, 2), key("D_W", 10, 2)}, 11,
            {"01rSB08%DW0000002", "01rSB08%DW0001002"});
        row("one within another", {key("D_W", 0, 10), key("D_W", 3, 2)}, 60, {"01rSB08%DW000000A"});
        row("full block", {key("D_W", 0, 60), key("D_W", 60)}, 60,
            {"01rSB08%DW000003C", "01rSB08%DW0006001"});
        row("any order", {key("D_W", 7), key("C_W", 1), key("D_W", 5)}, 60,
            {"01rSB08%DW0000503", "01rSB08%CW0000101"});
        row("bits join words", {key("M_bit", 35, 3), key("M_W", 3)}, 60, {"01rSB08%MW0000202"});
        row("contacts stay alone", {key("TX", 5), key("TX", 6), key("TX", 5)}, 60,
            {"01rSS0107%TX0005", "01rSS0107%TX0006"});
        row("stations stay apart", {key("D_W", 0, 1, 2), key("D_W", 1)}, 60,
            {"01rSB08%DW0000101", "02rSB08%DW0000001"});
    }

    void mergedBlocks()
    {
        QFETCH(Keys, keys);
        QFETCH(int, blockWords);
        QFETCH(QStringList, requests);
        loop.start((QByteArray("7#0#0#3#") + QByteArray::number(blockWords)).constData());
        for (const int station : {1, 2}) {
            loop.addStation(station);
            loop.setPlc("D_W", 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, station);
            loop.setPlc("D_W", 58, {14, 15, 16}, station);
            loop.setPlc("M_W", 2, {0x0028, 0x1234}, station);
            loop.setPlc("TX", 5, {1, 1}, station);
            loop.setPlc("C_W", 1, {99}, station);
        }
        QCOMPARE(loop.monitor(keys), requests.size());
        loop.turns(static_cast<int>(requests.size()));
        QCOMPARE(loop.requests(), requests);
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(loop.inPanel("D_W", 100), (Values{0}));
    }

    // The driver makes one block of one long key; that no PLC reads more than 60 words at a time is
    // the host's business.
    void blockBeyondThePlc()
    {
        loop.setPlc("D_W", 0, {1});
        QCOMPARE(loop.monitor({key("D_W", 0, 61), key("D_W", 200)}), 2);
        QCOMPARE(loop.turns(4), (Values{8, 8, 2, 1}));
        QCOMPARE(loop.log().first().answer, QByteArray("\x15"
                                                       "01rSB1232"
                                                       "\x03"
                                                       "48"));
        QCOMPARE(loop.differences(), texts({"1 D_W 0: panel 0, PLC 1"}));
    }

    void rotation_data()
    {
        const Columns<int, QString> row("blocks", "order");
        row("a block of one is read again and again", 1, "AAAAAAA");
        row("two take turns", 2, "ABABABA");
        row("three take turns", 3, "ABCABCA");
    }

    void rotation()
    {
        QFETCH(int, blocks);
        Keys keys;
        for (int i = 0; i < blocks; ++i) {
            keys += key("D_W", 1000 * i);
        }
        QCOMPARE(loop.monitor(keys), blocks);
        loop.turns(7);
        QString order;
        for (const QString &request : loop.requests()) {
            order += QLatin1Char(static_cast<char>('A' + request.mid(10, 2).toInt()));
        }
        QTEST(order, "order");
    }

    void stationsStayApart()
    {
        Keys keys;
        for (const int station : {0, 1, 2, 31}) {
            loop.addStation(station);
            loop.setPlc("D_W", 5, {100 + station}, station);
            keys += key("D_W", 5, 1, station);
        }
        QCOMPARE(loop.monitor(keys), 4);
        QVERIFY(loop.settle());
        QCOMPARE(HostLoop::calls(), texts({"7 0 D_W 5", "7 1 D_W 5", "7 2 D_W 5", "7 31 D_W 5"}));
        QCOMPARE(loop.inPanel("D_W", 5, 1, 0) + loop.inPanel("D_W", 5) +
                     loop.inPanel("D_W", 5, 1, 2) + loop.inPanel("D_W", 5, 1, 31),
                 (Values{100, 101, 102, 131}));
        QCOMPARE(loop.inPanel("D_W", 5, 1, 3), (Values{0}));
    }

    void silentStation()
    {
        loop.addStation(3);
        loop.setPlc("D_W", 0, {11});
        loop.setPlc("D_W", 0, {33}, 3);
        loop.monitor({key("D_W", 0), key("D_W", 0, 1, 2), key("D_W", 0, 1, 3)});
        QCOMPARE(loop.turns(10), (Values{1, 8, 8, 2, 1, 1, 8, 8, 2, 1}));
        QCOMPARE(loop.counts().frames, 10);
        QCOMPARE(loop.counts().answers, 4);
        QCOMPARE(loop.counts().resends, 4);
        QCOMPARE(loop.counts().givenUp, 2);
        QCOMPARE(loop.counts().timeouts, 6);
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 0", "7 3 D_W 0"}));

        loop.addStation(2);
        loop.setPlc("D_W", 0, {22}, 2);
        QCOMPARE(loop.turns(3), (Values{1, 1, 1}));
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(loop.inPanel("D_W", 0, 1, 2), (Values{22}));

        // Gone again: the panel keeps what it knew.
        loop.unit(2).faults.add({plc::FaultKind::Silence});
        QCOMPARE(loop.turns(5), (Values{1, 8, 8, 2, 1}));
        QCOMPARE(loop.inPanel("D_W", 0, 1, 2), (Values{22}));
    }

    // What a host does about a station that takes its share of the time and gives nothing: it goes
    // on without it, and asks now and then whether it is back.
    void silentStationIsLeftOut()
    {
        const Keys others{key("D_W", 0), key("D_W", 0, 1, 3)};
        loop.addStation(3);
        QCOMPARE(loop.monitor(others), 2);
        QCOMPARE(loop.turns(4), (Values{1, 1, 1, 1}));
        loop.readOnce("D_W", 0, 1, 2);
        QCOMPARE(loop.turns(4), (Values{8, 8, 2, 1}));
        QCOMPARE(HostLoop::calls(), texts({"-1 -1 -1 -1"}));

        loop.addStation(2);
        loop.forget();
        loop.readOnce("D_W", 0, 1, 2);
        QCOMPARE(loop.turns(1), Values{1});
        QCOMPARE(HostLoop::calls(), texts({"-1 -1 -1 0"}));
        QCOMPARE(loop.monitor(others + Keys{key("D_W", 0, 1, 2)}), 3);
        QCOMPARE(loop.turns(3), (Values{1, 1, 1}));
    }

    void rampIsFollowed()
    {
        loop.addStation(1).motions.push_back({{'D', plc::PointKind::Word, 100}, 5, 0, 99, 10});
        loop.monitor({key("D_W", 100, 5)});
        for (int i = 0; i < 250; ++i) {
            loop.forget();
            QVERIFY(loop.turn());
            QCOMPARE(loop.differences(), QStringList());
            // The first reading finds 0 where the panel had 0.
            QCOMPARE(HostLoop::calls().size(), i == 0 ? 4 : 5);
            loop.line().wait(10);
        }
    }

    void nothingMonitored()
    {
        QCOMPARE(loop.turns(3), (Values{-1, -1, -1}));
        QCOMPARE(loop.monitor({}), 0);
        QCOMPARE(loop.turns(3), (Values{-1, -1, -1}));
        QCOMPARE(loop.counts().frames, 0);
        QCOMPARE(loop.counts().idle, 6);
    }

    void otherAddresses()
    {
        QVERIFY(loop.show({key("D_W", 100), key("M_bit", 5)}));
        loop.monitor({key("D_W", 200)});
        loop.forget();
        loop.setPlc("D_W", 100, {1});
        loop.setPlc("D_W", 200, {2});
        QVERIFY(loop.settle());
        loop.turns(2);
        QCOMPARE(loop.requests(),
                 texts({"01rSB08%DW0020001", "01rSB08%DW0020001", "01rSB08%DW0020001"}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 200"}));
        QCOMPARE(loop.inPanel("D_W", 100), (Values{0}));

        // What nobody watches any more is not reported when a wider block reads it in passing.
        loop.monitor({key("D_W", 99), key("D_W", 101)});
        loop.forget();
        QVERIFY(loop.settle());
        QCOMPARE(HostLoop::calls(), QStringList());
        QCOMPARE(loop.inPanel("D_W", 100), (Values{1}));
    }
};

QTEST_APPLESS_MAIN(TestCyclicReads)
#include "test_cyclic_reads.moc"
