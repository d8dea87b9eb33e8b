#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_merge.h"
#include "support/area_helpers.h"
#include "support/key_text.h"
#include "support/recipe_helpers.h"

static const struct
{
    const char *what;
    int limit;
    const char *keys, *blocks;
} kReadsAreMerged[] = {
    // clang-format off
    {"none", 60, "", ""},
    {"touching", 60, "1/D_W:0*1 1/D_W:1*1", "1/D_W:0*2"},
    {"touching, limit of one", 1, "1/D_W:0*1 1/D_W:1*1", "1/D_W:0*1 1/D_W:1*1"},
    {"gap within the limit", 20, "1/D_W:0*2 1/D_W:10*2", "1/D_W:0*12"},
    {"gap up to the limit", 12, "1/D_W:0*2 1/D_W:10*2", "1/D_W:0*12"},
    {"span beyond the limit", 11, "1/D_W:0*2 1/D_W:10*2", "1/D_W:0*2 1/D_W:10*2"},
    {"gap beyond the limit", 5, "1/D_W:0*2 1/D_W:10*2", "1/D_W:0*2 1/D_W:10*2"},
    {"contained", 60, "1/D_W:0*10 1/D_W:3*2", "1/D_W:0*10"},
    {"overlapping", 60, "1/D_W:0*10 1/D_W:8*5", "1/D_W:0*13"},
    {"chain up to the limit", 12, "1/D_W:0*5 1/D_W:5*5 1/D_W:10*5", "1/D_W:0*10 1/D_W:10*5"},
    {"long key is one block", 10, "1/D_W:0*30", "1/D_W:0*30"},
    {"early part of a long key", 10, "1/D_W:0*30 1/D_W:5*2", "1/D_W:0*30"},
    {"late part of a long key", 10, "1/D_W:0*30 1/D_W:25*2", "1/D_W:0*30 1/D_W:25*2"},
    {"what touches goes first", 10, "1/D_W:0*1 1/D_W:5*1 1/D_W:6*6", "1/D_W:0*1 1/D_W:5*7"},
    {"sorted by address", 60, "1/D_W:200*1 1/D_W:100*1 1/D_W:0*1", "1/D_W:0*1 1/D_W:100*1 1/D_W:200*1"},
    {"sorted by register list", 60, "1/M_W:0*1 1/C_W:0*1 1/TX:0*1 1/D_W:0*1", "1/D_W:0*1 1/C_W:0*1 1/M_W:0*1 1/TX:0*1"},
    {"sorted by station first", 60, "2/D_W:0*1 1/M_W:0*1 0/CX:0*1", "0/CX:0*1 1/M_W:0*1 2/D_W:0*1"},
    {"stations do not merge", 60, "2/D_W:1*1 1/D_W:0*1", "1/D_W:0*1 2/D_W:1*1"},
    {"registers do not merge", 60, "1/D_W:0*1 1/C_W:1*1", "1/D_W:0*1 1/C_W:1*1"},
    {"same weight stays, other register first", 60, "0/C_W:0*1 0/D_W:65535*1", "0/C_W:0*1 0/D_W:65535*1"},
    {"same weight stays, other register last", 60, "0/D_W:65535*1 0/C_W:0*1", "0/D_W:65535*1 0/C_W:0*1"},
    {"negative weight comes last", 60, "0/D_W:-99*1 0/M_W:5*1", "0/M_W:5*1 0/D_W:-99*1"},
    {"unknown name comes last", 60, "0/Q_W:5*3 0/CX:7*1", "0/CX:7*1 0/Q_W:5*3"},
    {"unknown bit name becomes words", 60, "0/Q_bit:35*3", "0/Q_W:2*1"},
    {"unknown name without two parts", 60, "0/QQ:35*3", "0/QQ:35*3"},
    {"bits become words", 60, "1/M_bit:35*3", "1/M_W:2*1"},
    {"bits join their words", 60, "1/M_bit:35*3 1/M_W:3*1", "1/M_W:2*2"},
    {"bits are sorted as words", 60, "1/M_bit:0*1 1/C_W:0*1 1/D_bit:16*1", "1/D_W:1*1 1/C_W:0*1 1/M_W:0*1"},
    {"bits of many words", 60, "1/P_bit:0*1 1/P_bit:40*1 1/P_bit:160*1", "1/P_W:0*11"},
    {"contacts at one address", 60, "1/TX:7*1 1/TX:7*1", "1/TX:7*1"},
    {"contacts side by side", 60, "1/TX:8*1 1/TX:7*1", "1/TX:7*1 1/TX:8*1"},
    {"contacts of two counts", 60, "1/CX:7*1 1/CX:7*3", "1/CX:7*3"},
    {"no units", 60, "1/D_W:5*0", "1/D_W:5*0"},
    {"limit of none", 0, "1/D_W:0*1 1/D_W:1*5", "1/D_W:0*1 1/D_W:1*5"},
    {"limit of none, one key twice", 0, "1/M_bit:3*1 1/M_bit:5*1", "1/M_W:0*1 1/M_W:0*1"},
    {"limit of none, no units", 0, "1/D_W:5*0 1/D_W:5*0", "1/D_W:5*0"},
    {"limit below none", -60, "1/TX:7*1 1/D_W:0*1", "1/D_W:0*1 1/TX:7*1"},
    {"limit below none, no units", -60, "1/D_W:5*0 1/D_W:5*0", "1/D_W:5*0 1/D_W:5*0"},
    {"lowest limit", INT_MIN, "1/D_W:0*1 1/D_W:1*1", "1/D_W:0*1 1/D_W:1*1"},
    // clang-format on
};

static const struct
{
    const char *what;
    int limit;
    const char *keys, *blocks, *starts;
} kRecipeIsMerged[] = {
    // clang-format off
    {"none", 60, "", "", ""},
    {"one", 60, "1/D_W:5*2", "1/D_W:5*2", "0"},
    {"touching", 60, "1/D_W:5*2 1/D_W:7*1 1/D_W:20*1", "1/D_W:5*3 1/D_W:20*1", "0 2"},
    {"no gap is bridged", 60, "1/D_W:5*2 1/D_W:8*1", "1/D_W:5*2 1/D_W:8*1", "0 1"},
    {"limit", 4, "1/D_W:0*2 1/D_W:2*2 1/D_W:4*2 1/D_W:6*1", "1/D_W:0*4 1/D_W:4*3", "0 2"},
    {"overlapping", 60, "1/D_W:0*4 1/D_W:2*4", "1/D_W:0*6", "0"},
    {"long item is one block", 4, "1/D_W:0*9 1/D_W:9*1", "1/D_W:0*9 1/D_W:9*1", "0 1"},
    {"not sorted", 60, "1/M_W:5*1 1/D_W:0*1", "1/M_W:5*1 1/D_W:0*1", "0 1"},
    {"apart in the list, apart in blocks", 60, "1/D_W:0*1 1/M_W:9*1 1/D_W:1*1", "1/D_W:0*1 1/M_W:9*1 1/D_W:1*1", "0 1 2"},
    {"item before the block is swallowed", 60, "1/D_W:0*1 1/D_W:10*1 1/D_W:1*1", "1/D_W:0*1 1/D_W:10*1", "0 1"},
    {"stations", 60, "1/D_W:0*1 2/D_W:1*1", "1/D_W:0*1 2/D_W:1*1", "0 1"},
    {"bits stay bits", 60, "1/M_bit:35*3 1/M_bit:38*2", "1/M_bit:35*5", "0"},
    {"contacts stay apart", 60, "1/TX:7*1 1/TX:8*1", "1/TX:7*1 1/TX:8*1", "0 1"},
    {"unknown name stays as it is", 60, "1/Q_bit:35*3", "1/Q_bit:35*3", "0"},
    {"limit of one", 1, "1/D_W:0*1 1/D_W:1*1", "1/D_W:0*1 1/D_W:1*1", "0 1"},
    {"limit of none", 0, "1/D_W:0*9 1/D_W:9*1", "1/D_W:0*9 1/D_W:9*1", "0 1"},
    {"limit below none", -1, "1/D_W:0*1 1/D_W:1*1", "1/D_W:0*1 1/D_W:1*1", "0 1"},
    // clang-format on
};

static _DATA_ markedRecord()
{
    _DATA_ record = _DATA_();
    record.spareFlag = 1;
    record.writePending = 1;
    record.pendingBits = 0x55;
    record.monitorFlags = 0x7F;
    record.bitMonitorFlags = -1;
    record.stationNo = 1;
    record.regPrefix = QLatin1String("M");
    record.unitAddr = 2;
    record.readValue[0] = 0x11;
    record.writeValue[3] = 0x22;
    return record;
}

class TestAddressMerge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAreMerged_data() { addRows(kReadsAreMerged); }
    void readsAreMerged()
    {
        const auto &row = currentRow(kReadsAreMerged);
        DriverFixture fixture;
        driver.maxBlockWords = row.limit;
        const int modes[] = {1, 0, 3, -1};
        for (const int mode : modes) {
            QList<KEY_ADDRESS> list = keysOf(row.keys);
            addrMerge(list, mode);
            QCOMPARE(rangesText(list), latin(row.blocks));
        }
        QVERIFY(driver.rcpBlockStarts.isEmpty());

        QList<KEY_ADDRESS> list = keysOf(row.keys);
        QCOMPARE(intf_addrMerge(list), static_cast<int>(QByteArray(row.blocks).count('/')));
        QCOMPARE(rangesText(driver.cyclicReads), latin(row.blocks));
        QCOMPARE(rangesText(list), latin(row.keys));
    }

    // The weight of word 65535 of one register is that of word 0 of the next.
    void manyEqualWeightsStay()
    {
        DriverFixture fixture;
        const QByteArray texts = QByteArray("0/C_W:0*1 0/D_W:65535*1 ").repeated(100).trimmed();
        QList<KEY_ADDRESS> keys = keysOf(texts);
        addrMerge(keys, kMergeReads);
        QCOMPARE(rangesText(keys), latin(texts.constData()));
    }

    void recipeIsMerged_data() { addRows(kRecipeIsMerged); }
    void recipeIsMerged()
    {
        const auto &row = currentRow(kRecipeIsMerged);
        DriverFixture fixture;
        driver.maxBlockWords = row.limit;
        QList<KEY_ADDRESS> list = keysOf(row.keys);
        addrMerge(list, kMergeRecipe);
        QCOMPARE(rangesText(list), latin(row.blocks));
        QCOMPARE(startsText(), QByteArray(row.starts));
    }

    void blockKeepsItsFirstKey()
    {
        DriverFixture fixture;
        QList<KEY_ADDRESS> keys = keysOf("1/D_W:1*1 1/D_W:0*1");
        keys[1].keyText = QLatin1String("first");
        keys[1].keyA = 11;
        keys[1].keyB = 22;
        keys[1].addrText = QLatin1String("0");
        keys[1].bitFlag = -1;
        keys[1].data[1023] = 0x5A;
        addrMerge(keys, kMergeReads);

        QCOMPARE(rangesText(keys), latin("1/D_W:0*2"));
        QCOMPARE(otherFieldsText(keys.at(0)), latin("first 11 22 0 -1"));
        QCOMPARE(int(keys.at(0).data[1023]), 0x5A);
    }

    void blockStartsAreAppended()
    {
        DriverFixture fixture;
        driver.rcpBlockStarts.append(77);
        QList<KEY_ADDRESS> keys = keysOf("1/D_W:0*1");
        addrMerge(keys, kMergeRecipe);

        QCOMPARE(startsText(), QByteArray("77 0"));
    }

    void cyclicReadsAreReplaced()
    {
        DriverFixture fixture;
        driver.cyclicReads.append(makeItem(9, "M_W", 0, 1));
        QList<KEY_ADDRESS> keys = keysOf("1/D_W:100*5");
        std::memset(keys[0].data, 0x5A, sizeof(keys[0].data));

        QCOMPARE(intf_addrMerge(keys), 1);
        QCOMPARE(rangesText(driver.cyclicReads), latin("1/D_W:100*5"));
        QCOMPARE(driver.cyclicReads.at(0).opKind, 4);
        const VARIABLE blank = VARIABLE();
        QCOMPARE(std::memcmp(driver.cyclicReads.at(0).data, blank.data, sizeof(blank.data)), 0);
    }

    void otherJobsStay()
    {
        DriverFixture fixture;
        driver.pendingWrites.append(makeItem(1, "D_W", 0, 1));
        driver.conditionReads.append(makeItem(1, "D_W", 0, 1));
        queueFrame(FRAME_PRO());
        driver.rcpBlockStarts.append(0);
        QList<KEY_ADDRESS> keys = keysOf("1/D_W:100*5");
        intf_addrMerge(keys);

        QCOMPARE(sizeOf(driver.pendingWrites), 1);
        QCOMPARE(sizeOf(driver.conditionReads), 1);
        QCOMPARE(sizeOf(driver.frames), 1);
        QCOMPARE(sizeOf(driver.rcpBlockStarts), 1);
    }

    void monitorMarksAreReplaced()
    {
        DriverFixture fixture;
        driver.dataArea.append(markedRecord());
        QList<KEY_ADDRESS> keys = keysOf("1/M_bit:35*2 1/D_W:7*1");
        intf_addrMerge(keys);

        QCOMPARE(sizeOf(driver.dataArea), 2);
        QCOMPARE(recordText(driver.dataArea.at(0)), QByteArray("1M2=11000000/00000022/1/85/0/24"));
        QCOMPARE(recordText(driver.dataArea.at(1)), QByteArray("1D7=00000000/00000000/0/0/1/0"));
    }

    void emptySetClearsTheMarks()
    {
        DriverFixture fixture;
        driver.dataArea.append(markedRecord());
        driver.cyclicReads.append(makeItem(1, "D_W", 0, 1));
        QList<KEY_ADDRESS> keys;

        QCOMPARE(intf_addrMerge(keys), 0);
        QVERIFY(driver.cyclicReads.isEmpty());
        QCOMPARE(sizeOf(driver.dataArea), 1);
        QCOMPARE(recordText(driver.dataArea.at(0)), QByteArray("1M2=11000000/00000022/1/85/0/0"));
        QCOMPARE(int(driver.dataArea.at(0).spareFlag), 0);
    }
};

QTEST_APPLESS_MAIN(TestAddressMerge)
#include "test_address_merge.moc"
