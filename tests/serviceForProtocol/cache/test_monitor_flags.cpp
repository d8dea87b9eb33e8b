#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/cache/monitor_flags.h"
#include "support/area_helpers.h"

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

static const char *const none = "";

static const struct
{
    const char *what;
    int unitBits, wordBits;
    bool bitName;
    int startAddr, count;
    const char *marks;
} kMarksOfWidths[] = {
    {"32 over words", 32, 16, false, 4, 4, "M4:2 M5:4 M6:2 M7:4"},
    {"32 over words, one word: nothing", 32, 16, false, 4, 1, none},
    {"32 over words, three: the pair", 32, 16, false, 4, 3, "M4:2 M5:4"},
    {"32 over bytes", 32, 8, false, 4, 2, "M4:8 M5:10 M6:20 M7:40"},
    {"32 over bytes, two values", 32, 8, false, 0, 5,
     "M0:8 M1:10 M2:20 M3:40 M4:8 M5:10 M6:20 M7:40"},
    {"32 over bytes, one word: nothing", 32, 8, false, 4, 1, none},
    {"32 kept whole", 32, 32, false, 4, 5, "M4:1 M5:1"},
    {"32 kept whole, one word: nothing", 32, 32, false, 4, 1, none},
    {"16 over bytes", 16, 8, false, 4, 2, "M4:2 M5:4 M6:2 M7:4"},
    {"16 over words", 16, 16, false, 4, 3, "M4:1 M5:1 M6:1"},
    {"16, none: nothing", 16, 16, false, 4, 0, none},
    {"16, negative: nothing", 16, 16, false, 4, -2, none},
    {"8", 8, 8, false, 4, 2, "M4:1 M5:1"},
    {"1 without bit name", 1, 1, false, 4, 2, "M4:1 M5:1"},
    {"1 without bit name, none", 1, 1, false, 4, 0, none},
    {"bits of words, across units", 1, 16, true, 46, 4, "M2:0/c000 M3:0/3"},
    {"bits of bytes, across units", 1, 8, true, 22, 4, "M2:0/c0 M3:0/3"},
    {"8 with bit name", 8, 16, true, 16, 1, "M1:0/1"},
    {"bits, none", 1, 16, true, 46, 0, none},
    {"bits of 32: nothing", 1, 32, true, 46, 4, none},
    {"any other width: nothing", 64, 16, false, 4, 2, none},
    {"most negative count", 1, 16, true, 0, INT_MIN, none},
    {"addresses wrap round", 16, 16, false, INT_MAX, 2, "M2147483647:1 M-2147483648:1"},
};

static const struct
{
    const char *what, *regName;
    int startAddr, count;
    const char *marks;
} kMarksOfRegisters[] = {
    {"D_W 100 x2", "D_W", 100, 2, "D100:1 D101:1"},
    {"M_bit 37 is bit 5 of word 2", "M_bit", 37, 1, "M2:0/20"},
    {"D_bit 15", "D_bit", 15, 1, "D0:0/8000"},
    {"a contact is its own letter", "TX", 7, 2, "TX7:1 TX8:1"},
    {"unknown bit name: bits of words", "Q_bit", 16, 2, "Q1:0/3"},
    {"unknown name: units", "Q_W", 16, 2, "Q16:1 Q17:1"},
    {"names are compared exactly", "m_bit", 16, 1, "m1:0/1"},
};

class TestMonitorFlags : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marksOfWidths_data() { addRows(kMarksOfWidths); }
    void marksOfWidths()
    {
        const auto &row = currentRow(kMarksOfWidths);
        DriverFixture fixture;
        markMonitored(makeWidths(row.unitBits, row.wordBits, row.bitName), 1, latin("M"),
                      row.startAddr, row.count);
        QCOMPARE(marksText(), latin(row.marks));
    }

    void marksOfRegisters_data() { addRows(kMarksOfRegisters); }
    void marksOfRegisters()
    {
        const auto &row = currentRow(kMarksOfRegisters);
        DriverFixture fixture;
        QCOMPARE(_setDataAreaMonitorFlag(3, latin(row.regName), row.startAddr, row.count), 0);
        QCOMPARE(marksText(), latin(row.marks));
        QCOMPARE(driver.dataArea.at(0).stationNo, 3);
    }

    void marksAddUp()
    {
        DriverFixture fixture;
        _setDataAreaMonitorFlag(1, latin("M_W"), 2, 1);
        _setDataAreaMonitorFlag(1, latin("M_bit"), 37, 1);
        _setDataAreaMonitorFlag(1, latin("M_bit"), 32, 1);
        markMonitored(makeWidths(32, 16), 1, latin("M"), 1, 2);
        _setDataAreaMonitorFlag(1, latin("M_W"), 2, 1);
        QCOMPARE(marksText(), latin("M2:5/21 M1:2"));
    }

    void clearingKeepsValuesAndWrites()
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
        QCOMPARE(recordText(driver.dataArea.at(1)), QByteArray("1M2=12340000/56780000/1/48/0/0"));
        QCOMPARE(static_cast<int>(driver.dataArea.at(1).spareFlag), 0);
    }
};

QTEST_APPLESS_MAIN(TestMonitorFlags)
#include "test_monitor_flags.moc"
