#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "serviceForProtocol/cache/unit_layout.h"
#include "support/area_helpers.h"

static const struct
{
    const char *what;
    int unitBits, wordBits;
    bool bitName;
    int unitsPerValue; // 0: covers nothing
    int bytesPerUnit, countPerValue, bitsPerUnit;
} kLayoutOfWidths[] = {
    {"32 over words: two units", 32, 16, false, 2, 2, 2, 0},
    {"32 over bytes: four units", 32, 8, false, 4, 1, 2, 0},
    {"32 over 32: kept whole", 32, 32, false, 1, 4, 2, 0},
    {"32 over anything else: kept whole", 32, 1, false, 1, 4, 2, 0},
    {"16 over bytes: two units", 16, 8, false, 2, 1, 1, 0},
    {"16 over words: one unit", 16, 16, false, 1, 2, 1, 0},
    {"16 over anything else: one unit", 16, 32, false, 1, 2, 1, 0},
    {"8: one byte", 8, 8, false, 1, 1, 1, 0},
    {"8 over words: one byte", 8, 16, false, 1, 1, 1, 0},
    {"1 without bit name: one byte", 1, 1, false, 1, 1, 1, 0},
    {"1 over words without bit name: one byte", 1, 16, false, 1, 1, 1, 0},
    {"bits of words", 1, 16, true, 1, 2, 1, 16},
    {"bits of bytes", 1, 8, true, 1, 1, 1, 8},
    {"8 with bit name: bits of words", 8, 16, true, 1, 2, 1, 16},
    {"bits of 32: nothing", 1, 32, true, 0, 1, 1, 0},
    {"bits of single bits: nothing", 1, 1, true, 0, 1, 1, 0},
    {"any other width: nothing", 64, 16, false, 0, 1, 1, 0},
    {"no width: nothing", 0, 0, false, 0, 1, 1, 0},
};

static const struct
{
    const char *what;
    int unitBits, wordBits;
    bool bitName;
    int count, values;
} kValuesOfCount[] = {
    {"half a double word", 32, 16, false, 1, 0},
    {"one double word", 32, 16, false, 2, 1},
    {"an odd last word is dropped", 32, 16, false, 3, 1},
    {"double word of bytes, too few", 32, 8, false, 1, 0},
    {"double words of bytes", 32, 8, false, 4, 2},
    {"whole double words", 32, 32, false, 5, 2},
    {"words of bytes", 16, 8, false, 3, 3},
    {"words", 16, 16, false, 3, 3},
    {"contacts", 1, 1, false, 3, 3},
    {"bits", 1, 16, true, 17, 17},
    {"none", 16, 16, false, 0, 0},
    {"negative", 16, 16, false, -1, 0},
    {"most negative", 32, 16, false, INT_MIN, 0},
    {"more words than any device has", 16, 16, false, INT_MAX, 100000},
    {"more bits than any device has", 1, 16, true, INT_MAX, 1600000},
    {"uncovered width", 64, 16, false, 5, 0},
};

class TestUnitLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutOfWidths_data() { addRows(kLayoutOfWidths); }
    void layoutOfWidths()
    {
        const auto &row = currentRow(kLayoutOfWidths);
        const UnitLayout layout = unitLayout(makeWidths(row.unitBits, row.wordBits, row.bitName));
        QCOMPARE(layout.unitsPerValue, row.unitsPerValue);
        QCOMPARE(layout.bytesPerUnit, row.bytesPerUnit);
        QCOMPARE(layout.countPerValue, row.countPerValue);
        QCOMPARE(layout.bitsPerUnit, row.bitsPerUnit);
        QCOMPARE(layout.isBitView(), row.bitsPerUnit != 0);
    }

    void valuesOfCount_data() { addRows(kValuesOfCount); }
    void valuesOfCount()
    {
        const auto &row = currentRow(kValuesOfCount);
        QCOMPARE(unitLayout(makeWidths(row.unitBits, row.wordBits, row.bitName)).values(row.count),
                 row.values);
    }

    void layoutOfEachRegister_data()
    {
        QTest::addColumn<QString>("regName");
        QTest::addColumn<int>("bytesPerUnit");
        QTest::addColumn<bool>("bitView");

        for (const QString &name : REG_LIST) {
            const bool bitView = name.endsWith(QLatin1String("_bit"));
            const bool contact = name == QLatin1String("TX") || name == QLatin1String("CX");
            QTest::newRow(name.toLatin1().constData()) << name << (contact ? 1 : 2) << bitView;
        }
        QTest::newRow("unknown bit name: bits of words, as the spare row says")
            << latin("Q_bit") << 2 << true;
        QTest::newRow("unknown name: one byte a unit, as the spare row says")
            << latin("Q_W") << 1 << false;
    }

    void layoutOfEachRegister()
    {
        QFETCH(QString, regName);
        QFETCH(int, bytesPerUnit);
        QFETCH(bool, bitView);

        const UnitLayout layout = unitLayout(registerWidths(regName));
        QCOMPARE(layout.unitsPerValue, 1);
        QCOMPARE(layout.countPerValue, 1);
        QCOMPARE(layout.bytesPerUnit, bytesPerUnit);
        QCOMPARE(layout.isBitView(), bitView);
    }
};

QTEST_APPLESS_MAIN(TestUnitLayout)
#include "test_unit_layout.moc"
