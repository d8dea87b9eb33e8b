#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/write_settle.h"
#include "support/area_helpers.h"

// Letter M, units 4 to 9: the PLC said 0n 00 00 01, the panel wrote 0n 10 20 30; all are pending.
static void fillUnits(const char *letter)
{
    for (int unitAddr = 4; unitAddr < 10; ++unitAddr) {
        _DATA_ &record = unitAt(1, letter, unitAddr);
        const unsigned char low = static_cast<unsigned char>(unitAddr);
        const unsigned char confirmed[4] = {low, 0, 0, 1};
        const unsigned char written[4] = {low, 0x10, 0x20, 0x30};
        std::memcpy(record.readValue, confirmed, sizeof confirmed);
        std::memcpy(record.writeValue, written, sizeof written);
        record.writePending = 1;
        record.monitorFlags = 1;
        record.bitMonitorFlags = 0xFFFF;
    }
}

// The units that are settled: "address=bytes that the PLC has confirmed".
static QString settledText(const char *letter)
{
    QStringList texts;
    for (int unitAddr = 4; unitAddr < 10; ++unitAddr) {
        const _DATA_ &record = unitAt(1, letter, unitAddr);
        if (record.writePending == 0) {
            texts.append(QString::number(unitAddr) + QLatin1Char('=') +
                         latin(hexOf(record.readValue, 4).constData()));
        }
    }
    return texts.join(QLatin1String(" "));
}

static const struct
{
    const char *what;
    int unitBits, wordBits;
    const char *letter; // under which the units of "M_W" are kept
    int count;
    const char *settled;
} kSuccess[] = {
    {"16 over words: two bytes", 16, 16, "M", 2, "4=04100001 5=05100001"},
    {"16 over anything else: two bytes", 16, 32, "M", 1, "4=04100001"},
    {"16 over bytes: always the first unit", 16, 8, "M", 2, "4=04000001"},
    {"8: always the first unit", 8, 8, "M", 3, "4=04000001"},
    {"8 over words: always the first unit", 8, 16, "M", 3, "4=04000001"},
    {"32 over bytes: two units for each word", 32, 8, "M", 2,
     "4=04000001 5=05000001 6=06000001 7=07000001"},
    {"32 over words: two bytes", 32, 16, "M", 2, "4=04100001 5=05100001"},
    {"32 whole: half as many, under the whole name", 32, 32, "M_W", 5, "4=04102030 5=05102030"},
    {"32 over anything else, under the whole name", 32, 1, "M_W", 2, "4=04102030"},
    {"single bits, under the whole name", 1, 1, "M_W", 2, "4=04000001 5=05000001"},
    {"1 over words without bit name, under the whole name", 1, 16, "M_W", 1, "4=04000001"},
    {"any other width: nothing", 64, 16, "M", 2, ""},
    {"none", 16, 16, "M", 0, ""},
    {"half a double word", 32, 32, "M_W", 1, ""},
};

// Written against confirmed, the values differ in bit 12 of a word and in no bit of a byte.
static const struct
{
    const char *what;
    int unitBits, wordBits;
    const char *letter;
    int count;
    const char *settled, *calls;
} kFailure[] = {
    {"16 over words: what differs", 16, 16, "M", 2, "4=04000001 5=05000001",
     "7 1 M_bit 76, 7 1 M_W 4, 7 1 M_bit 92, 7 1 M_W 5"},
    {"16 over bytes: the first unit twice for each word, without bits", 16, 8, "M", 2, "4=04000001",
     "7 1 M_B 4, 7 1 M_B 4, 7 1 M_B 4, 7 1 M_B 4"},
    {"8: the first unit each time, with every bit", 8, 8, "M", 2, "4=04000001",
     "7 1 M_bit 32, 7 1 M_bit 33, 7 1 M_bit 34, 7 1 M_bit 35, 7 1 M_bit 36, "
     "7 1 M_bit 37, 7 1 M_bit 38, 7 1 M_bit 39, 7 1 M_B 4, "
     "7 1 M_bit 32, 7 1 M_bit 33, 7 1 M_bit 34, 7 1 M_bit 35, 7 1 M_bit 36, "
     "7 1 M_bit 37, 7 1 M_bit 38, 7 1 M_bit 39, 7 1 M_B 4"},
    {"32 over bytes: what differs", 32, 8, "M", 1, "4=04000001 5=05000001", "7 1 M_B 4, 7 1 M_B 5"},
    {"32 over words: what differs", 32, 16, "M", 1, "4=04000001", "7 1 M_bit 76, 7 1 M_W 4"},
    {"32 whole: every bit", 32, 32, "M_W", 2, "4=04000001",
     "7 1 M_W_bit 128, 7 1 M_W_bit 129, 7 1 M_W_bit 130, 7 1 M_W_bit 131, "
     "7 1 M_W_bit 132, 7 1 M_W_bit 133, 7 1 M_W_bit 134, 7 1 M_W_bit 135, "
     "7 1 M_W_bit 136, 7 1 M_W_bit 137, 7 1 M_W_bit 138, 7 1 M_W_bit 139, "
     "7 1 M_W_bit 140, 7 1 M_W_bit 141, 7 1 M_W_bit 142, 7 1 M_W_bit 143, 7 1 M_W 4"},
    {"single bits: the address itself", 1, 1, "M_W", 2, "4=04000001 5=05000001",
     "7 1 M_W 4, 7 1 M_W 5"},
};

static const char *const all = "7 1 M_bit 48, 7 1 M_bit 59, 7 1 M_W 3";

static const struct
{
    const char *what;
    int startAddr; // unit 3: confirmed 0x0800, written 0x0021
    int count, marks;
    bool success;
    int marksAfter, pendingAfter;
    QByteArray confirmed;
    const char *calls;
} kBitsAreSettled[] = {
    {"the only write, taken", 53, 1, 0x400, true, 0, 0, "2008", all},
    {"the only write, failed", 53, 1, 0x400, false, 0, 0, "0008", all},
    {"a cleared bit, taken", 59, 1, 0x400000, true, 0, 0, "0000", all},
    {"the first of two, taken", 53, 1, 0xC00, true, 0x800, 1, "2008", ""},
    {"the first of two, failed", 53, 1, 0xC00, false, 0x800, 1, "0008", ""},
    {"the second of two, taken", 53, 1, 0x800, true, 0, 0, "2008", all},
    {"another bit still waits", 53, 1, 0x401, true, 0x1, 1, "2008", ""},
    {"two bits, the last one ends the wait", 53, 2, 0x1400, true, 0, 0, "2008", all},
    {"no mark at all", 53, 1, 0, true, 0, 0, "2008", all},
    {"no mark of this bit", 53, 1, 0x1, true, 0x1, 1, "2008", ""},
    {"bit 15, second write", 63, 1, INT_MIN, false, 0, 0, "0008", all},
    {"bit 15's second write still waits", 53, 1, INT_MIN | 0x400, true, INT_MIN, 1, "2008", ""},
    {"no bits", 53, 0, 0x400, true, 0x400, 1, "0008", ""},
};

static const struct
{
    const char *what;
    int wordBits;
    bool success;
    QByteArray confirmed;
    int pendingAfter;
    const char *calls;
} kBitOfByteUnits[] = {
    {"bytes, taken", 8, true, "20", 0, "7 1 M_bit 48, 7 1 M_B 6"},
    {"bytes, failed", 8, false, "00", 0, "7 1 M_bit 48, 7 1 M_B 6"},
    {"32: nothing", 32, true, "00", 1, ""},
    {"1: nothing", 1, true, "00", 1, ""},
};

static const struct
{
    const char *what;
    const char *regName, *letter;
    const char *settled, *calls; // of one unit at 4
} kRegisters[] = {
    {"word", "D_W", "D", "4=04000001", "7 1 D_bit 76, 7 1 D_W 4"},
    {"contact: reported though unwatched", "TX", "TX", "4=04000001", "7 1 TX 4"},
    {"unknown name: as the spare row says, under the whole name", "Q_W", "Q_W", "4=04000001",
     "7 1 Q_W 4"},
};

static const struct
{
    const char *what;
    int unitBits, wordBits;
    bool bitName;
    int count;
} kNothingToSettle[] = {
    {"negative words", 16, 16, false, -1},
    {"negative bits", 1, 16, true, -1},
    {"a bit of a double word", 1, 32, true, 1},
    {"most negative bits", 1, 16, true, INT_MIN},
    {"most negative whole double words", 32, 32, false, INT_MIN},
    {"most negative words", 16, 16, false, INT_MIN},
    {"most negative words of bytes", 16, 8, false, INT_MIN},
};

class TestWriteSettle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void success_data() { addRows(kSuccess); }
    void success()
    {
        const auto &row = currentRow(kSuccess);
        DriverFixture fixture;
        fillUnits(row.letter);
        settleWrite(makeWidths(row.unitBits, row.wordBits), 1, latin("M_W"), 4, row.count, 1);
        QCOMPARE(settledText(row.letter), latin(row.settled));
        QCOMPARE(callsText(), QString());
        QCOMPARE(sizeOf(driver.dataArea), 6);
    }

    void failure_data() { addRows(kFailure); }
    void failure()
    {
        const auto &row = currentRow(kFailure);
        DriverFixture fixture;
        fillUnits(row.letter);
        settleWrite(makeWidths(row.unitBits, row.wordBits), 1, latin("M_W"), 4, row.count, 0);
        QCOMPARE(settledText(row.letter), latin(row.settled));
        QCOMPARE(callsText(), latin(row.calls));
    }

    void bitsAreSettled_data() { addRows(kBitsAreSettled); }
    void bitsAreSettled()
    {
        const auto &row = currentRow(kBitsAreSettled);
        DriverFixture fixture;
        _DATA_ &record = unitAt(1, "M", 3);
        setBytes(record.readValue, "0008");
        setBytes(record.writeValue, "2100");
        record.writePending = 1;
        record.pendingBits = row.marks;
        record.monitorFlags = 1;
        record.bitMonitorFlags = 0x0801;
        _write_FailOrSuc(1, latin("M_bit"), row.startAddr, row.count, row.success ? 1 : 0);
        QCOMPARE(driver.dataArea.at(0).pendingBits, row.marksAfter);
        QCOMPARE(static_cast<int>(driver.dataArea.at(0).writePending), row.pendingAfter);
        QCOMPARE(hexOf(driver.dataArea.at(0).readValue, 2), row.confirmed);
        QCOMPARE(callsText(), latin(row.calls));
        QCOMPARE(sizeOf(driver.dataArea), 1);
    }

    void bitOfByteUnits_data() { addRows(kBitOfByteUnits); }
    void bitOfByteUnits()
    {
        const auto &row = currentRow(kBitOfByteUnits);
        DriverFixture fixture;
        _DATA_ &record = unitAt(1, "M", 6);
        record.writeValue[0] = 0x21;
        record.writePending = 1;
        record.pendingBits = 0x400;
        record.monitorFlags = 1;
        record.bitMonitorFlags = 0x1;
        settleWrite(makeWidths(1, row.wordBits, true), 1, latin("M_bit"), 53, 1,
                    row.success ? 1 : 0);
        QCOMPARE(hexOf(driver.dataArea.at(0).readValue, 1), row.confirmed);
        QCOMPARE(static_cast<int>(driver.dataArea.at(0).writePending), row.pendingAfter);
        QCOMPARE(callsText(), latin(row.calls));
    }

    void registers_data() { addRows(kRegisters); }
    void registers()
    {
        const auto &row = currentRow(kRegisters);
        DriverFixture fixture;
        fillUnits(row.letter);
        if (row.letter == QByteArray("TX")) {
            unitAt(1, "TX", 4).monitorFlags = 0;
        }
        _write_FailOrSuc(1, latin(row.regName), 4, 1, 0);
        QCOMPARE(settledText(row.letter), latin(row.settled));
        QCOMPARE(callsText(), latin(row.calls));
    }

    void nothingToSettle_data() { addRows(kNothingToSettle); }
    void nothingToSettle()
    {
        const auto &row = currentRow(kNothingToSettle);
        DriverFixture fixture;
        fillUnits("M");
        settleWrite(makeWidths(row.unitBits, row.wordBits, row.bitName), 1, latin("M_W"), 4,
                    row.count, 0);
        QCOMPARE(settledText("M"), QString());
        QCOMPARE(callsText(), QString());
        QCOMPARE(sizeOf(driver.dataArea), 6);
    }
};

QTEST_APPLESS_MAIN(TestWriteSettle)
#include "test_write_settle.moc"
