#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/request/condition_read.h"
#include "support/area_helpers.h"

static int ask(const char *regName, int startAddr, int count, int bitFlag = 0)
{
    KEY_ADDRESS key = makeKey(1, regName, startAddr, count, bitFlag);
    return intf_addConditionRead(key, 0);
}

static const struct
{
    const char *what;
    int wordBits, count;
    const char *list; // pieces of 4 words, from address 10 on
} kEntriesOfWidths[] = {
    {"words", 16, 3, "1 M_W 10 x3"},
    {"words, a full piece", 16, 4, "1 M_W 10 x4"},
    {"words, pieces", 16, 9, "1 M_W 10 x4, 1 M_W 14 x4, 1 M_W 18 x1"},
    {"words, two full pieces", 16, 8, "1 M_W 10 x4, 1 M_W 14 x4"},
    {"bytes: twice as many", 8, 6, "1 M_W 10 x8, 1 M_W 14 x4"},
    {"32: none", 32, 6, "1 M_W 10 x0, 1 M_W 14 x0"},
    {"single bits: sixteen times as many", 1, 2, "1 M_W 10 x32"},
    {"no width: the count as it is", 0, 2, "1 M_W 10 x2"},
    {"no units: an entry of none", 16, 0, "1 M_W 10 x0"},
};

static const struct
{
    const char *what;
    const char *regName;
    int count, bitFlag;
    const char *props, *list;
} kEntriesOfRegisters[] = {
    {"300 words in pieces of 120", "D_W", 300, 0, "7#0#0#3#120",
     "1 D_W 7 x120, 1 D_W 127 x120, 1 D_W 247 x60"},
    {"the flag of bits gives eight times the piece, whatever the register", "D_W", 20, -1,
     "7#0#0#3#1", "1 D_W 7 x8, 1 D_W 15 x8, 1 D_W 23 x4"},
    {"any other flag does not", "D_W", 2, 1, "7#0#0#3#1", "1 D_W 7 x1, 1 D_W 8 x1"},
    {"another negative flag does not either", "D_W", 2, -2, "7#0#0#3#1", "1 D_W 7 x1, 1 D_W 8 x1"},
    {"contacts: sixteen times as many", "TX", 3, 0, "7#0#0#3#60", "1 TX 7 x48"},
    {"unknown name: words, as the spare row says", "Q_W", 2, 0, "7#0#0#3#60", "1 Q_W 7 x2"},
};

static const Given<const char *> kBitNamesQueueNothing[] = {
    {"M_bit", "M_bit"},
    {"D_bit", "D_bit"},
    {"unknown bit name", "Q_bit"},
};

static const struct
{
    const char *what;
    const char *props;
    int bitFlag;
} kNoPieceNoEntry[] = {
    {"no limit", "7#0#0#3#0", 0},
    {"no limit, bits", "7#0#0#3#0", -1},
    {"negative", "7#0#0#3#-5", 0},
    {"most negative", "7#0#0#3#-2147483648", 0},
};

static const struct
{
    const char *what;
    int startAddr, count;
} kHugeCountsEnd[] = {
    {"endless", 0, INT_MAX},
    {"endless, from the last address on", INT_MAX, INT_MAX},
    {"just below the wrap", 2147483600, 480},
};

class TestConditionRead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesOfWidths_data() { addRows(kEntriesOfWidths); }
    void entriesOfWidths()
    {
        const auto &row = currentRow(kEntriesOfWidths);
        DriverFixture fixture("7#0#0#3#4");
        queueConditionRead(makeWidths(row.wordBits, row.wordBits), makeKey(1, "M_W", 10, row.count),
                           0);
        QCOMPARE(listText(driver.conditionReads), latin(row.list));
        QCOMPARE(itemText(driver.lastVar), itemText(driver.conditionReads.last()));
    }

    void entriesOfRegisters_data() { addRows(kEntriesOfRegisters); }
    void entriesOfRegisters()
    {
        const auto &row = currentRow(kEntriesOfRegisters);
        DriverFixture fixture(row.props);
        QCOMPARE(ask(row.regName, 7, row.count, row.bitFlag), 1);
        QCOMPARE(listText(driver.conditionReads), latin(row.list));
    }

    void entryCarriesTheRequest()
    {
        DriverFixture fixture("7#0#0#3#2");
        KEY_ADDRESS key = makeKey(31, "D_W", 5, 3);
        std::memset(key.data, 0x55, sizeof key.data);
        QCOMPARE(intf_addConditionRead(key, 9), 1);
        QCOMPARE(listText(driver.conditionReads), latin("31 D_W 5 x2, 31 D_W 7 x1"));
        QCOMPARE(driver.conditionReads.at(0).opKind, 9);
        QCOMPARE(driver.conditionReads.at(1).opKind, 9);
        QCOMPARE(bytesOf(driver.conditionReads.at(0).data, 1024), QByteArray(1024, '\0'));
        QCOMPARE(itemText(driver.lastVar), latin("31 D_W 7 x1"));
        QCOMPARE(driver.lastVar.opKind, 9);
        QCOMPARE(key.count, 3);
        QVERIFY(driver.dataArea.isEmpty());
        QCOMPARE(callsText(), QString());
    }

    void repeatedRequests()
    {
        DriverFixture fixture;
        ask("D_W", 1, 1);
        ask("D_W", 2, 1);
        ask("D_W", 3, 1);
        ask("D_W", 2, 1);
        QCOMPARE(listText(driver.conditionReads), latin("1 D_W 1 x1, 1 D_W 2 x1, 1 D_W 3 x1"));
        QCOMPARE(itemText(driver.lastVar), latin("1 D_W 2 x1"));
        ask("D_W", 1, 1);
        QCOMPARE(listText(driver.conditionReads),
                 latin("1 D_W 1 x1, 1 D_W 2 x1, 1 D_W 3 x1, 1 D_W 1 x1"));
    }

    void fullList()
    {
        DriverFixture fixture;
        for (int i = 0; i < 600; ++i) {
            ask("D_W", i, 1);
        }
        QCOMPARE(sizeOf(driver.conditionReads), 513);
        QCOMPARE(driver.conditionReads.at(511).startAddr, 511);
        QCOMPARE(driver.conditionReads.at(512).startAddr, 599);
        QCOMPARE(driver.lastVar.startAddr, 599);
    }

    void bitNamesQueueNothing_data() { addRows(kBitNamesQueueNothing); }
    void bitNamesQueueNothing()
    {
        const auto &row = currentRow(kBitNamesQueueNothing);
        DriverFixture fixture;
        ask("D_W", 5, 1);
        QCOMPARE(ask(row.given, 35, 1, -1), 1);
        QCOMPARE(ask(row.given, 35, 2000, -1), 1);
        QCOMPARE(listText(driver.conditionReads), latin("1 D_W 5 x1"));
        QCOMPARE(itemText(driver.lastVar), latin("1 D_W 5 x1"));
    }

    void noPieceNoEntry_data() { addRows(kNoPieceNoEntry); }
    void noPieceNoEntry()
    {
        const auto &row = currentRow(kNoPieceNoEntry);
        DriverFixture fixture(row.props);
        QCOMPARE(ask("D_W", 5, 10, row.bitFlag), 1);
        QVERIFY(driver.conditionReads.isEmpty());
    }

    void hugeCountsEnd_data() { addRows(kHugeCountsEnd); }
    void hugeCountsEnd()
    {
        const auto &row = currentRow(kHugeCountsEnd);
        DriverFixture fixture;
        QCOMPARE(ask("D_W", row.startAddr, row.count), 1);
        QVERIFY(!driver.conditionReads.isEmpty());
        QVERIFY(sizeOf(driver.conditionReads) <= 513);
        QCOMPARE(driver.conditionReads.at(0).count, 60);
        QCOMPARE(driver.conditionReads.at(0).startAddr, row.startAddr);
    }
};

QTEST_APPLESS_MAIN(TestConditionRead)
#include "test_condition_read.moc"
