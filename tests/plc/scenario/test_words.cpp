#include "plc/scenario/words.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const Case<quint32, quint32> kBcd[] = {
    {"zero", 0, 0},
    {"digits", 12345678, 0x12345678},
    {"nines", 99999999, 0x99999999},
    {"too many", 123456789, 0x23456789},
};

static const Case<quint16, int> kFromBcd[] = {
    {"zero", 0, 0},
    {"digits", 0x9081, 9081},
    {"no digit", 0x10A0, -1},
    {"no digit at the end", 0x000F, -1},
};

class TestWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lowerHalfFirst()
    {
        Memory memory;
        putQuad(memory, 10, 0x1122334455667788ULL);
        QCOMPARE(*memory.word('D', 10), quint16(0x7788));
        QCOMPARE(*memory.word('D', 13), quint16(0x1122));
        QCOMPARE(takeQuad(memory, 10), quint64(0x1122334455667788ULL));
        QCOMPARE(takeDouble(memory, 12), 0x11223344U);
        putFloat(memory, 20, -1.5F);
        QCOMPARE(takeDouble(memory, 20), 0xBFC00000U);
    }

    void text()
    {
        Memory memory;
        memory.setWord('D', 2, 0xFFFF);
        putText(memory, 0, 3, "ABC");
        QCOMPARE(*memory.word('D', 0), quint16(0x4241));
        QCOMPARE(*memory.word('D', 1), quint16(0x0043));
        QCOMPARE(*memory.word('D', 2), quint16(0));
    }

    void toDigits_data() { addRows(kBcd); }
    void toDigits() { QCOMPARE(toBcd(currentRow(kBcd).given), currentRow(kBcd).expected); }

    void fromDigits_data() { addRows(kFromBcd); }
    void fromDigits()
    {
        QCOMPARE(fromBcd(currentRow(kFromBcd).given), currentRow(kFromBcd).expected);
    }
};

QTEST_APPLESS_MAIN(TestWords)
#include "test_words.moc"
