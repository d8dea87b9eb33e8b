#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/cache/monitor_flags.h"
#include "support/area_helpers.h"

class TestMonitorFlags : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marksOfWidths_data();
    void marksOfWidths();
    void marksOfRegisters_data();
    void marksOfRegisters();
    void marksAddUp();
    void clearingKeepsValuesAndWrites();
};

// The whole area in order of first use: "letter address:marks", or "/bit marks" in hexadecimal.
static QString marksText()
{
    QStringList texts;
    for (const _DATA_ &record : driver.dataArea) {
        QString text = record.regPrefix + QString::number(record.unitAddr) + QLatin1Char(':') +
                       QString::number(record.monitorFlags, 16);
        if (record.bitMonitorFlags != 0) {
            text += QLatin1Char('/') + QString::number(record.bitMonitorFlags, 16);
        }
        texts.append(text);
    }
    return texts.join(QLatin1String(" "));
}

void TestMonitorFlags::marksOfWidths_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<bool>("bitName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("marks");

    const QString none;
    QTest::newRow("32 over words") << 32 << 16 << false << 4 << 4 << latin("M4:2 M5:4 M6:2 M7:4");
    QTest::newRow("32 over words, one word: nothing") << 32 << 16 << false << 4 << 1 << none;
    QTest::newRow("32 over words, three: the pair")
        << 32 << 16 << false << 4 << 3 << latin("M4:2 M5:4");
    QTest::newRow("32 over bytes") << 32 << 8 << false << 4 << 2 << latin("M4:8 M5:10 M6:20 M7:40");
    QTest::newRow("32 over bytes, two values")
        << 32 << 8 << false << 0 << 5 << latin("M0:8 M1:10 M2:20 M3:40 M4:8 M5:10 M6:20 M7:40");
    QTest::newRow("32 over bytes, one word: nothing") << 32 << 8 << false << 4 << 1 << none;
    QTest::newRow("32 kept whole") << 32 << 32 << false << 4 << 5 << latin("M4:1 M5:1");
    QTest::newRow("32 kept whole, one word: nothing") << 32 << 32 << false << 4 << 1 << none;
    QTest::newRow("16 over bytes") << 16 << 8 << false << 4 << 2 << latin("M4:2 M5:4 M6:2 M7:4");
    QTest::newRow("16 over words") << 16 << 16 << false << 4 << 3 << latin("M4:1 M5:1 M6:1");
    QTest::newRow("16, none: nothing") << 16 << 16 << false << 4 << 0 << none;
    QTest::newRow("16, negative: nothing") << 16 << 16 << false << 4 << -2 << none;
    QTest::newRow("8") << 8 << 8 << false << 4 << 2 << latin("M4:1 M5:1");
    QTest::newRow("1 without bit name") << 1 << 1 << false << 4 << 2 << latin("M4:1 M5:1");
    QTest::newRow("1 without bit name, none") << 1 << 1 << false << 4 << 0 << none;
    QTest::newRow("bits of words, across units")
        << 1 << 16 << true << 46 << 4 << latin("M2:0/c000 M3:0/3");
    QTest::newRow("bits of bytes, across units")
        << 1 << 8 << true << 22 << 4 << latin("M2:0/c0 M3:0/3");
    QTest::newRow("8 with bit name") << 8 << 16 << true << 16 << 1 << latin("M1:0/1");
    QTest::newRow("bits, none") << 1 << 16 << true << 46 << 0 << none;
    QTest::newRow("bits of 32: nothing") << 1 << 32 << true << 46 << 4 << none;
    QTest::newRow("any other width: nothing") << 64 << 16 << false << 4 << 2 << none;
    QTest::newRow("most negative count") << 1 << 16 << true << 0 << INT_MIN << none;
    QTest::newRow("addresses wrap round")
        << 16 << 16 << false << INT_MAX << 2 << latin("M2147483647:1 M-2147483648:1");
}

void TestMonitorFlags::marksOfWidths()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(bool, bitName);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QString, marks);

    DriverFixture fixture;
    markMonitored(makeWidths(unitBits, wordBits, bitName), 1, latin("M"), startAddr, count);
    QCOMPARE(marksText(), marks);
}

void TestMonitorFlags::marksOfRegisters_data()
{
    QTest::addColumn<QString>("regName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("marks");

    QTest::newRow("D_W 100 x2") << latin("D_W") << 100 << 2 << latin("D100:1 D101:1");
    QTest::newRow("M_bit 37 is bit 5 of word 2") << latin("M_bit") << 37 << 1 << latin("M2:0/20");
    QTest::newRow("D_bit 15") << latin("D_bit") << 15 << 1 << latin("D0:0/8000");
    QTest::newRow("a contact is its own letter") << latin("TX") << 7 << 2 << latin("TX7:1 TX8:1");
    QTest::newRow("unknown bit name: bits of words")
        << latin("Q_bit") << 16 << 2 << latin("Q1:0/3");
    QTest::newRow("unknown name: units") << latin("Q_W") << 16 << 2 << latin("Q16:1 Q17:1");
    QTest::newRow("names are compared exactly") << latin("m_bit") << 16 << 1 << latin("m1:0/1");
}

void TestMonitorFlags::marksOfRegisters()
{
    QFETCH(QString, regName);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QString, marks);

    DriverFixture fixture;
    QCOMPARE(_setDataAreaMonitorFlag(3, regName, startAddr, count), 0);
    QCOMPARE(marksText(), marks);
    QCOMPARE(driver.dataArea.at(0).stationNo, 3);
}

void TestMonitorFlags::marksAddUp()
{
    DriverFixture fixture;
    _setDataAreaMonitorFlag(1, latin("M_W"), 2, 1);
    _setDataAreaMonitorFlag(1, latin("M_bit"), 37, 1);
    _setDataAreaMonitorFlag(1, latin("M_bit"), 32, 1);
    markMonitored(makeWidths(32, 16), 1, latin("M"), 1, 2);
    _setDataAreaMonitorFlag(1, latin("M_W"), 2, 1);
    QCOMPARE(marksText(), latin("M2:5/21 M1:2"));
}

void TestMonitorFlags::clearingKeepsValuesAndWrites()
{
    DriverFixture fixture;
    unitAt(1, "D", 0);
    _DATA_ &record = unitAt(1, "M", 2);
    record.spareFlag = 1;
    record.writePending = 1;
    record.pendingBits = 0x30;
    record.monitorFlags = 0x7F;
    record.bitMonitorFlags = 0xFFFF;
    setBytes(record.readValue, "1234");
    setBytes(record.writeValue, "5678");
    clearMonitorFlags();

    QCOMPARE(sizeOf(driver.dataArea), 2);
    const _DATA_ &cleared = driver.dataArea.at(1);
    QCOMPARE(static_cast<int>(cleared.spareFlag), 0);
    QCOMPARE(cleared.monitorFlags, 0);
    QCOMPARE(cleared.bitMonitorFlags, 0);
    QCOMPARE(static_cast<int>(cleared.writePending), 1);
    QCOMPARE(cleared.pendingBits, 0x30);
    QCOMPARE(hexOf(cleared.readValue, 2), QByteArray("1234"));
    QCOMPARE(hexOf(cleared.writeValue, 2), QByteArray("5678"));
    QCOMPARE(cleared.unitAddr, 2);
}

QTEST_APPLESS_MAIN(TestMonitorFlags)
#include "test_monitor_flags.moc"
