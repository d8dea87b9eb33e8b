#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "serviceForProtocol/cache/unit_layout.h"
#include "support/area_helpers.h"

class TestUnitLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutOfWidths_data();
    void layoutOfWidths();
    void valuesOfCount_data();
    void valuesOfCount();
    void layoutOfEachRegister_data();
    void layoutOfEachRegister();
};

void TestUnitLayout::layoutOfWidths_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<bool>("bitName");
    QTest::addColumn<int>("unitsPerValue"); // 0: covers nothing
    QTest::addColumn<int>("bytesPerUnit");
    QTest::addColumn<int>("countPerValue");
    QTest::addColumn<int>("bitsPerUnit");

    QTest::newRow("32 over words: two units") << 32 << 16 << false << 2 << 2 << 2 << 0;
    QTest::newRow("32 over bytes: four units") << 32 << 8 << false << 4 << 1 << 2 << 0;
    QTest::newRow("32 over 32: kept whole") << 32 << 32 << false << 1 << 4 << 2 << 0;
    QTest::newRow("32 over anything else: kept whole") << 32 << 1 << false << 1 << 4 << 2 << 0;
    QTest::newRow("16 over bytes: two units") << 16 << 8 << false << 2 << 1 << 1 << 0;
    QTest::newRow("16 over words: one unit") << 16 << 16 << false << 1 << 2 << 1 << 0;
    QTest::newRow("16 over anything else: one unit") << 16 << 32 << false << 1 << 2 << 1 << 0;
    QTest::newRow("8: one byte") << 8 << 8 << false << 1 << 1 << 1 << 0;
    QTest::newRow("8 over words: one byte") << 8 << 16 << false << 1 << 1 << 1 << 0;
    QTest::newRow("1 without bit name: one byte") << 1 << 1 << false << 1 << 1 << 1 << 0;
    QTest::newRow("1 over words without bit name: one byte")
        << 1 << 16 << false << 1 << 1 << 1 << 0;
    QTest::newRow("bits of words") << 1 << 16 << true << 1 << 2 << 1 << 16;
    QTest::newRow("bits of bytes") << 1 << 8 << true << 1 << 1 << 1 << 8;
    QTest::newRow("8 with bit name: bits of words") << 8 << 16 << true << 1 << 2 << 1 << 16;
    QTest::newRow("bits of 32: nothing") << 1 << 32 << true << 0 << 1 << 1 << 0;
    QTest::newRow("bits of single bits: nothing") << 1 << 1 << true << 0 << 1 << 1 << 0;
    QTest::newRow("any other width: nothing") << 64 << 16 << false << 0 << 1 << 1 << 0;
    QTest::newRow("no width: nothing") << 0 << 0 << false << 0 << 1 << 1 << 0;
}

void TestUnitLayout::layoutOfWidths()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(bool, bitName);
    QFETCH(int, unitsPerValue);
    QFETCH(int, bytesPerUnit);
    QFETCH(int, countPerValue);
    QFETCH(int, bitsPerUnit);

    const UnitLayout layout = unitLayout(makeWidths(unitBits, wordBits, bitName));
    QCOMPARE(layout.unitsPerValue, unitsPerValue);
    QCOMPARE(layout.bytesPerUnit, bytesPerUnit);
    QCOMPARE(layout.countPerValue, countPerValue);
    QCOMPARE(layout.bitsPerUnit, bitsPerUnit);
    QCOMPARE(layout.isBitView(), bitsPerUnit != 0);
}

void TestUnitLayout::valuesOfCount_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<bool>("bitName");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("values");

    QTest::newRow("half a double word") << 32 << 16 << false << 1 << 0;
    QTest::newRow("one double word") << 32 << 16 << false << 2 << 1;
    QTest::newRow("an odd last word is dropped") << 32 << 16 << false << 3 << 1;
    QTest::newRow("double word of bytes, too few") << 32 << 8 << false << 1 << 0;
    QTest::newRow("double words of bytes") << 32 << 8 << false << 4 << 2;
    QTest::newRow("whole double words") << 32 << 32 << false << 5 << 2;
    QTest::newRow("words of bytes") << 16 << 8 << false << 3 << 3;
    QTest::newRow("words") << 16 << 16 << false << 3 << 3;
    QTest::newRow("contacts") << 1 << 1 << false << 3 << 3;
    QTest::newRow("bits") << 1 << 16 << true << 17 << 17;
    QTest::newRow("none") << 16 << 16 << false << 0 << 0;
    QTest::newRow("negative") << 16 << 16 << false << -1 << 0;
    QTest::newRow("most negative") << 32 << 16 << false << INT_MIN << 0;
    QTest::newRow("more words than any device has") << 16 << 16 << false << INT_MAX << 100000;
    QTest::newRow("more bits than any device has") << 1 << 16 << true << INT_MAX << 1600000;
    QTest::newRow("uncovered width") << 64 << 16 << false << 5 << 0;
}

void TestUnitLayout::valuesOfCount()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(bool, bitName);
    QFETCH(int, count);
    QFETCH(int, values);

    QCOMPARE(unitLayout(makeWidths(unitBits, wordBits, bitName)).values(count), values);
}

void TestUnitLayout::layoutOfEachRegister_data()
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

void TestUnitLayout::layoutOfEachRegister()
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

QTEST_APPLESS_MAIN(TestUnitLayout)
#include "test_unit_layout.moc"
