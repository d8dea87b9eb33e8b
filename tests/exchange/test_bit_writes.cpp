#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

using plc::FaultKind;

class TestBitWrites : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void singleBits_data()
    {
        // word: value around the bit
        const Columns<QByteArray, int, int, int, QStringList, QStringList> row(
            "name", "address", "word", "value", "requests", "changes");
        row("P 0.0 on", "P_bit", 0, 0xFFFE, 1, {"01wSS0109%PX00000001"}, {"P_W 0=65535"});
        row("K 31.15 off", "K_bit", 511, 0xFFFF, 0, {"01wSS0109%KX00031F00"}, {"K_W 31=32767"});
        row("M 1.10 on", "M_bit", 26, 0, 1, {"01wSS0109%MX00001A01"}, {"M_W 1=1024"});
        row("L 255.9 off", "L_bit", 4089, 0x0200, 0, {"01wSS0109%LX00255900"}, {"L_W 255=0"});
        row("M 3.5 on where it is on", "M_bit", 53, 0x0020, 1, {"01wSS0109%MX00003501"}, {});
        row("D 100.5 on: read, then write", "D_bit", 1605, 0xA5C3, 1,
            {"01rSB08%DW0010001", "01wSB08%DW0010001A5E3"}, {"D_W 100=42467"});
        row("D 100.15 off", "D_bit", 1615, 0xA5C3, 0,
            {"01rSB08%DW0010001", "01wSB08%DW001000125C3"}, {"D_W 100=9667"});
        row("D 9999.0 on", "D_bit", 159984, 0xF0FE, 1,
            {"01rSB08%DW0999901", "01wSB08%DW0999901F0FF"}, {"D_W 9999=61695"});
        row("D 0.8 off", "D_bit", 8, 0x0100, 0, {"01rSB08%DW0000001", "01wSB08%DW00000010000"},
            {"D_W 0=0"});
    }

    void singleBits()
    {
        QFETCH(QByteArray, name);
        QFETCH(int, address);
        QFETCH(int, word);
        QFETCH(int, value);
        loop.setPlc((name.left(2) + "W").constData(), address / 16, {word});
        loop.write(name, address, {value});
        QVERIFY(loop.settle());
        QTEST(loop.requests(), "requests");
        QTEST(loop.plcChanges(), "changes");
        QCOMPARE(loop.inPanel(name, address), Values{value});

        QVERIFY(loop.show({key(name, address / 16 * 16, 16)}));
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(loop.counts().answers, loop.counts().frames);
    }

    void oneAfterTheOther_data()
    {
        const Columns<QByteArray, bool> row("name", "queued");
        row("M, all queued", "M_bit", true);
        row("M, each settled before the next", "M_bit", false);
        row("D, all queued", "D_bit", true);
        row("D, each settled before the next", "D_bit", false);
    }

    void oneAfterTheOther()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, queued);
        const Values bits{0, 1, 1, 0, 1, 0, 0, 0, 1, 1, 1, 1, 0, 0, 1, 0, 1, 1, 0, 1, 1, 0, 1, 0};
        loop.setPlc(name, 32, {1, 1, 1, 1, 1, 1, 1, 1});
        QVERIFY(loop.show({key(name, 32, 32)}));
        for (int i = 0; i < bits.size(); ++i) {
            loop.write(name, 32 + i, {bits.at(i)});
            QCOMPARE(loop.inPanel(name, 32, i + 1), bits.mid(0, i + 1));
            QVERIFY(queued || loop.settle());
        }
        for (int turn = 0; turn < 100 && !driver.pendingWrites.isEmpty(); ++turn) {
            // What still waits is not lost from view by what has ended.
            QCOMPARE(loop.inPanel(name, 32, 24), bits);
            loop.turn();
        }
        QCOMPARE(loop.inPlc(name, 32, 24), bits);
        QCOMPARE(loop.differencesAtRest(), QStringList());
        QCOMPARE(loop.counts().answers, loop.counts().frames);
    }

    void severalAtOnce_data()
    {
        // written: of word 2, which holds 0xA5C3
        const Columns<int, Values, QString> row("address", "values", "written");
        row("2 bits at 0", 32, {0, 0}, "A5C0");
        row("4 bits over two digits", 34, {1, 1, 1, 1}, "A5FF");
        row("8 bits in the middle", 36, {0, 1, 0, 1, 1, 0, 1, 0}, "A5A3");
        row("8 bits at the top", 40, {1, 0, 0, 0, 0, 0, 0, 1}, "81C3");
        row("the topmost 2", 46, {1, 0}, "65C3");
        row("all 16", 32, {1, 0, 1, 1, 0, 0, 0, 0, 1, 1, 1, 1, 0, 1, 0, 0}, "2F0D");
    }

    void severalAtOnce()
    {
        QFETCH(int, address);
        QFETCH(Values, values);
        QFETCH(QString, written);
        for (const char *name : {"M_bit", "D_bit"}) {
            renew(loop);
            const char word[] = {name[0], '_', 'W', '\0'};
            loop.setPlc(word, 1, {0xFFFF, 0xA5C3, 0xFFFF});
            QVERIFY(loop.show({key(name, 16, 48)}));
            loop.forget();
            loop.write(name, address, values);
            QCOMPARE(loop.inPanel(name, address, static_cast<int>(values.size())), values);
            QCOMPARE(loop.turns(2), (Values{1, 1}));
            const QString place = QString(QLatin1Char(name[0])) + QLatin1String("W0000201");
            QCOMPARE(loop.requests(), QStringList({QLatin1String("01rSB08%") + place,
                                                   QLatin1String("01wSB08%") + place + written}));
            QCOMPARE(loop.plcChanges(), QStringList(QString::fromLatin1("%1_W 2=%2")
                                                        .arg(QLatin1Char(name[0]))
                                                        .arg(written.toInt(nullptr, 16))));
            QCOMPARE(loop.differences(), QStringList());
            QCOMPARE(loop.differencesAtRest(), QStringList());
        }
    }

    // The words to be read and written follow from the number of bits alone. Two bits, the first of
    // them the topmost of its word, get one word: the second is left out, and the panel believes in
    // it until it reads.
    void bitsBeyondTheCoveredWords()
    {
        QVERIFY(loop.show({key("M_bit", 32, 32)}));
        loop.write("M_bit", 47, {1, 1});
        QCOMPARE(loop.turns(2), (Values{1, 1}));
        QCOMPARE(loop.plcChanges(), texts({"M_W 2=32768"}));
        QCOMPARE(loop.differences(),
                 texts({"1 M_bit 48: panel 1, PLC 0", "1 M_bit 48: panel 1, PLC 0"}));
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }

    void twoWordsAreSpoilt_data()
    {
        const Columns<int, QString> row("bits", "read");
        row("9 bits are counted as two words", 9, "01rSB08%MW0000202");
        row("15 bits of one word", 15, "01rSB08%MW0000202");
        row("17 bits", 17, "01rSB08%MW0000202");
        row("32 bits", 32, "01rSB08%MW0000202");
    }

    // The digits of more than one word are turned round in steps that overlap. What comes out are
    // no hexadecimal digits, and the PLC refuses them: nothing is written.
    void twoWordsAreSpoilt()
    {
        QFETCH(int, bits);
        loop.setPlc("M_W", 2, {0x1234, 0x5678});
        QVERIFY(loop.show({key("M_bit", 32, 32)}));
        const Values values = numbers(bits, 1, 0);
        loop.write("M_bit", 32, values);
        loop.forget();
        QCOMPARE(loop.turns(4), (Values{1, 8, 8, 2}));
        QTEST(loop.requests().first(), "read");
        QCOMPARE(loop.log().last().answer.mid(6, 4), QByteArray("1432"));
        QCOMPARE(loop.plcChanges(), QStringList());
        QCOMPARE(loop.differences(), QStringList());
    }

    // Bits count eight to a word of the block limit. A longer write is cut, and its second piece
    // takes its values from twice as far into the panel's bytes: here from behind them.
    void longWriteTakesTheWrongValues()
    {
        loop.start("7#0#0#3#2");
        const Values ones = numbers(20, 1, 0);
        loop.write("M_bit", 0, ones);
        QCOMPARE(loop.turns(4), (Values{1, 1, 1, 1}));
        QCOMPARE(loop.requests(), texts({"01rSB08%MW0000001", "01wSB08%MW0000001FFFF",
                                         "01rSB08%MW0000101", "01wSB08%MW00001010000"}));
        QCOMPARE(loop.plcChanges(), texts({"M_W 0=65535"}));
        QCOMPARE(loop.differences().size(), 4);
        QVERIFY(loop.show({key("M_W", 0, 2)}));
        QCOMPARE(loop.differences(), QStringList());
    }

    void valuesBeyondOne_data()
    {
        // shown: in the panel, from the write until the next reading
        // held: in the PLC
        const Columns<QByteArray, int, int, int> row("regName", "value", "shown", "held");
        row("bit, 2", "M_bit", 2, 0, 1);
        row("bit, 255", "M_bit", 255, 0, 1);
        row("bit of a data register, 2", "D_bit", 2, 0, 1);
        row("contact, 2", "TX", 2, 2, 1);
    }

    // Every value but 0 sets the bit in the PLC; in the cache 1 alone does, and a contact keeps its
    // byte.
    void valuesBeyondOne()
    {
        QFETCH(QByteArray, regName);
        QFETCH(int, value);
        QFETCH(int, shown);
        QFETCH(int, held);
        loop.write(regName, 35, {value});
        QCOMPARE(loop.inPanel(regName, 35), Values{shown});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc(regName, 35), Values{held});
        QCOMPARE(loop.inPanel(regName, 35), Values{shown});
        QVERIFY(loop.show({key(regName, 35)}));
        QCOMPARE(loop.inPanel(regName, 35), Values{held});
    }

    // The other bits of the word are those that the PLC holds when the first half is answered, not
    // those that the panel knows. What the PLC changes between the halves is overwritten.
    void modifiesWhatThePlcHolds()
    {
        QVERIFY(loop.show({key("D_W", 100)}));
        loop.setPlc("D_W", 100, {0x0F00});
        loop.write("D_bit", 1600, {1});
        QVERIFY(loop.turn());
        loop.setPlc("D_W", 100, {0x0FF0});
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("D_W", 100), Values{0x0F01});
        QCOMPARE(loop.inPanel("D_W", 100), Values{0x0001});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPanel("D_W", 100), Values{0x0F01});
        QCOMPARE(loop.differences(), QStringList());
    }

    void halvesFail_data()
    {
        // good: answers before the fault
        // results: the write, then the cyclic read
        const Columns<int, int, Values> row("good", "times", "results");
        row("the read is resent", 0, 2, {8, 8, 1, 1, 1});
        row("the read fails: no write is sent", 0, 3, {8, 8, 2, 1});
        row("the write is resent", 1, 2, {1, 8, 8, 1, 1});
        row("the write fails", 1, 3, {1, 8, 8, 2, 1});
    }

    void halvesFail()
    {
        QFETCH(int, good);
        QFETCH(int, times);
        QFETCH(Values, results);
        loop.setPlc("D_W", 100, {0x1230});
        QVERIFY(loop.show({key("D_bit", 1600, 16)}));
        loop.write("D_bit", 1600, {1});
        Values seen = loop.turns(good);
        loop.unit().faults.add({FaultKind::Silence, 0, 0, times});
        seen += loop.turns(static_cast<int>(results.size()) - good);
        QCOMPARE(seen, results);
        const bool failed = results.contains(2);
        QCOMPARE(loop.plcChanges(), failed ? QStringList() : texts({"D_W 100=4657"}));
        QCOMPARE(loop.differences(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestBitWrites)
#include "test_bit_writes.moc"
