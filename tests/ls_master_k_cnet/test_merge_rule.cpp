#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/merge_rule.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

static const struct
{
    const char *what, *curName;
    int curStart, curCount;
    const char *nextName;
    int nextStart;
    int touching; // mode 0
    int bridging; // any other mode, blocks of 20 words
} kKeyJoinsOrStartsABlock[] = {
    {"touching", "D_W", 0, 5, "D_W", 5, 0, 0},
    {"overlapping", "D_W", 0, 5, "D_W", 3, 0, 0},
    {"same start", "D_W", 4, 5, "D_W", 4, 0, 0},
    {"before the block", "D_W", 9, 5, "D_W", 2, 0, 0},
    {"gap of one", "D_W", 0, 5, "D_W", 6, 1, 0},
    {"gap of a block", "D_W", 0, 5, "D_W", 25, 1, 0},
    {"gap above a block", "D_W", 0, 5, "D_W", 26, 1, 1},
    {"other register", "D_W", 0, 5, "M_W", 5, 1, 1},
    {"other view of the same device", "M_W", 0, 5, "M_bit", 5, 1, 1},
    {"letter case counts", "D_W", 0, 5, "d_w", 5, 1, 1},
    {"timer contacts at one address", "TX", 7, 1, "TX", 7, 0, 0},
    {"timer contacts side by side", "TX", 7, 1, "TX", 8, 1, 1},
    {"timer contacts overlapping", "TX", 7, 3, "TX", 8, 1, 1},
    {"timer contact before another", "TX", 7, 1, "TX", 6, 1, 1},
    {"counter contacts at one address", "CX", 0, 1, "CX", 0, 0, 0},
    {"counter contacts side by side", "CX", 0, 1, "CX", 1, 1, 1},
    {"contacts of two kinds", "TX", 7, 1, "CX", 7, 1, 1},
    {"contacts without units at one address", "TX", 7, -1, "TX", 7, 1, 0},
    {"far apart", "D_W", 0, 1, "D_W", INT_MAX, 1, 1},
};

class TestMergeRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyJoinsOrStartsABlock_data() { addRows(kKeyJoinsOrStartsABlock); }
    void keyJoinsOrStartsABlock()
    {
        const auto &row = currentRow(kKeyJoinsOrStartsABlock);
        DriverFixture fixture("7#0#0#3#20");
        const KEY_ADDRESS cur = makeKey(1, row.curName, row.curStart, row.curCount);
        const KEY_ADDRESS next = makeKey(1, row.nextName, row.nextStart, 1);
        QCOMPARE(judgeAddrMerge(cur, next, 0), row.touching);
        QCOMPARE(judgeAddrMerge(cur, next, 1), row.bridging);
        QCOMPARE(judgeAddrMerge(cur, next, 2), row.bridging);
        QCOMPARE(judgeAddrMerge(cur, next, -1), row.bridging);
    }

    void otherStationNeverJoins()
    {
        DriverFixture fixture;

        QCOMPARE(judgeAddrMerge(makeKey(1, "D_W", 0, 5), makeKey(2, "D_W", 5, 1), 0), 1);
        QCOMPARE(judgeAddrMerge(makeKey(1, "D_W", 0, 5), makeKey(2, "D_W", 0, 5), 1), 1);
        QCOMPARE(judgeAddrMerge(makeKey(2, "D_W", 0, 5), makeKey(1, "D_W", 5, 1), 0), 1);
        QCOMPARE(judgeAddrMerge(makeKey(1, "TX", 0, 1), makeKey(257, "TX", 0, 1), 1), 1);
    }

    void otherFieldsDoNotCount()
    {
        DriverFixture fixture;
        KEY_ADDRESS next = makeKey(1, "D_W", 5, 900, -1);
        next.keyText = QLatin1String("other");
        next.keyA = 1;
        next.keyB = 2;
        next.addrText = QLatin1String("77");
        next.data[0] = 3;

        QCOMPARE(judgeAddrMerge(makeKey(1, "D_W", 0, 5), next, 0), 0);
    }

    void blockLimitIsReadEachTime()
    {
        DriverFixture fixture("7#0#0#3#3");
        const KEY_ADDRESS cur = makeKey(1, "D_W", 0, 1);
        const KEY_ADDRESS next = makeKey(1, "D_W", 5, 1);

        QCOMPARE(judgeAddrMerge(cur, next, 1), 1);
        driver.maxBlockWords = 4;
        QCOMPARE(judgeAddrMerge(cur, next, 1), 0);
    }
};

QTEST_APPLESS_MAIN(TestMergeRule)
#include "test_merge_rule.moc"
