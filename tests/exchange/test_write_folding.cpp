#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

namespace {

struct Write
{
    int station;
    const char *name;
    int address;
    Values values;
};

} // namespace

Q_DECLARE_METATYPE(Write)

// A write that waits is replaced by a later one to the same place, unless it is the next to go.
class TestWriteFolding : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void foldsInPlace_data()
    {
        const Columns<QList<Write>, QStringList, QStringList> row("writes", "requests", "changes");
        const Write head = {1, "D_W", 0, {1}};
        row("a repeated write keeps its place",
            {head, {1, "D_W", 10, {2}}, {1, "D_W", 20, {3}}, {1, "D_W", 10, {4}}},
            {"01wSB08%DW00000010001", "01wSB08%DW00010010004", "01wSB08%DW00020010003"},
            {"D_W 0=1", "D_W 10=4", "D_W 20=3"});
        row("again and again",
            {head, {1, "D_W", 10, {2}}, {1, "D_W", 10, {3}}, {1, "D_W", 10, {4}}},
            {"01wSB08%DW00000010001", "01wSB08%DW00010010004"}, {"D_W 0=1", "D_W 10=4"});
        row("the first one is not folded, the second is",
            {head, {1, "D_W", 0, {2}}, {1, "D_W", 0, {3}}},
            {"01wSB08%DW00000010001", "01wSB08%DW00000010003"}, {"D_W 0=3"});
        row("another count is another request",
            {head, {1, "D_W", 10, {2}}, {1, "D_W", 10, {3, 4}}, {1, "D_W", 10, {5}}},
            texts({"01wSB08%DW00000010001", "01wSB08%DW00010010005", "01wSB08%DW000100200030004"}),
            {"D_W 0=1", "D_W 10=3", "D_W 11=4"});
        row("another station is another request", {head, {1, "D_W", 10, {2}}, {2, "D_W", 10, {3}}},
            {"01wSB08%DW00000010001", "01wSB08%DW00010010002", "02wSB08%DW00010010003"},
            {"D_W 0=1", "D_W 10=2"});
        row("another register is another request",
            {head, {1, "M_W", 1, {0x0F0F}}, {1, "M_bit", 20, {1}}, {1, "M_W", 1, {0xF000}}},
            {"01wSB08%DW00000010001", "01wSB08%MW0000101F000", "01wSS0109%MX00001401"},
            {"M_W 1=61456", "D_W 0=1"});
        row("bits fold by bit",
            {head, {1, "M_bit", 20, {1}}, {1, "M_bit", 21, {1}}, {1, "M_bit", 20, {0}}},
            {"01wSB08%DW00000010001", "01wSS0109%MX00001400", "01wSS0109%MX00001501"},
            {"M_W 1=32", "D_W 0=1"});
        row("contacts fold one by one", {head, {1, "TX", 5, {1, 1}}, {1, "TX", 6, {0}}},
            {"01wSB08%DW00000010001", "01wSS0109%TX00000501", "01wSS0109%TX00000600"},
            {"TX 5=1", "D_W 0=1"});
    }

    void foldsInPlace()
    {
        QFETCH(QList<Write>, writes);
        loop.addStation(2);
        for (const Write &write : writes) {
            loop.write(write.name, write.address, write.values, write.station);
            QCOMPARE(loop.inPanel(write.name, write.address, static_cast<int>(write.values.size()),
                                  write.station),
                     write.values);
        }
        QVERIFY(loop.settle());
        QTEST(loop.requests(), "requests");
        QTEST(loop.plcChanges(), "changes");
        QCOMPARE(loop.counts().answers, loop.counts().frames);
    }

    // The head may be on its way already: its repetition is a write of its own.
    void headIsLeftAlone()
    {
        loop.write("D_W", 0, {1});
        loop.write("D_W", 0, {2});
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("D_W", 0), Values{1});
        QCOMPARE(loop.inPanel("D_W", 0), Values{2});
        // What was second is the head now.
        loop.write("D_W", 0, {3});
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("D_W", 0), Values{2});
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("D_W", 0), Values{3});
        QVERIFY(!loop.turn());
        QCOMPARE(loop.differences(), QStringList());
    }

    void foldsWhileTheHeadIsOnTheLine()
    {
        loop.write("D_W", 0, {1});
        QVERIFY(loop.send());
        loop.write("D_W", 0, {2});
        loop.write("D_W", 0, {3});
        QCOMPARE(loop.receive(), 1);
        QCOMPARE(loop.inPlc("D_W", 0), Values{1});
        QVERIFY(loop.settle());
        QCOMPARE(loop.counts().frames, 2);
        QCOMPARE(loop.inPlc("D_W", 0), Values{3});
        QCOMPARE(loop.differences(), QStringList());
    }

    void foldsInAFullQueue()
    {
        loop.writeEach("D_W", 0, numbers(513, 1, 0));
        loop.write("D_W", 300, {2}); // takes the place of its like, not that of the last one
        loop.write("D_W", 0, {2});   // like the head: displaces the last one
        QVERIFY(loop.settle());
        QCOMPARE(loop.counts().frames, 513);
        const QStringList changes = loop.plcChanges();
        QCOMPARE(changes.size(), 512);
        QCOMPARE(changes.first(), QLatin1String("D_W 0=2"));
        QCOMPARE(changes.at(300), QLatin1String("D_W 300=2"));
        QCOMPARE(changes.last(), QLatin1String("D_W 511=1"));
        QCOMPARE(loop.requests().last(), QLatin1String("01wSB08%DW00000010002"));
    }

    // A slider that is drawn writes far more often than the line can: the PLC gets what it can
    // take, in order, and the last value in the end.
    void slider()
    {
        QVERIFY(loop.show({key("D_W", 0)}));
        loop.forget();
        for (int value = 1; value <= 100; ++value) {
            loop.write("D_W", 0, {value});
            QCOMPARE(loop.inPanel("D_W", 0), Values{value});
            if (value % 10 == 0) {
                const int known = loop.inPlc("D_W", 0).first();
                QVERIFY(loop.turn());
                QVERIFY(loop.inPlc("D_W", 0).first() >= known);
            }
        }
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("D_W", 0), Values{100});
        QCOMPARE(loop.differences(), QStringList());
        // The first write, the newest at each of the ten turns, and the reads: one after ten writes
        // and one at the end.
        QCOMPARE(loop.counts().frames, 1 + 10 + 2);
    }

    void failedHead()
    {
        loop.refuse(3);
        loop.write("D_W", 0, {1});
        loop.write("D_W", 0, {2});
        QCOMPARE(loop.turns(4), (Values{8, 8, 2, 1}));
        QCOMPARE(loop.plcChanges(), texts({"D_W 0=2"}));
        QCOMPARE(loop.differences(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestWriteFolding)
#include "test_write_folding.moc"
