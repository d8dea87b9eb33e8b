#include <climits>
#include <random>

#include <QtTest/QtTest>

#include "serviceForProtocol/address/block_overlap.h"
#include "support/area_helpers.h"
#include "support/key_text.h"

static QVector<MergeKey> blocksOf(const char *texts)
{
    QVector<MergeKey> blocks;
    const QList<KEY_ADDRESS> keys = keysOf(texts);
    for (const KEY_ADDRESS &key : keys) {
        blocks.append(mergeKeyOf(key, 0));
    }
    return blocks;
}

static QByteArray textOf(const QVector<bool> &alone)
{
    QByteArray text;
    for (const bool each : alone) {
        text += each ? '1' : '0';
    }
    return text;
}

static const struct
{
    const char *what, *blocks;
    const char *alone; // a digit for each
} kBlocksAlone[] = {
    {"none", "", ""},
    {"one", "D_W:10*5", "1"},
    {"apart", "D_W:10*5 D_W:20*5", "11"},
    {"side by side", "D_W:10*5 D_W:15*5", "11"},
    {"one unit in common", "D_W:10*5 D_W:14*5", "00"},
    {"the same", "D_W:10*5 D_W:10*5", "00"},
    {"same start", "D_W:10*1 D_W:10*5", "00"},
    {"one within the other", "D_W:10*50 D_W:20*5", "00"},
    {"two within one", "D_W:10*50 D_W:20*5 D_W:30*5 D_W:60*5", "0001"},
    {"a chain", "D_W:10*5 D_W:14*5 D_W:18*5 D_W:23*5", "0001"},
    {"the long one first", "D_W:0*100 D_W:1*1 D_W:50*100 D_W:99*1 D_W:150*1", "00001"},
    {"not in order", "D_W:30*5 D_W:10*5 D_W:12*5 D_W:20*5", "1001"},
    {"other register", "D_W:10*5 M_W:10*5 TX:10*5 CX:10*5 T_W:10*5", "11111"},
    {"registers mixed", "D_W:10*5 M_W:10*5 D_W:14*5 M_W:15*5", "0101"},
    {"other station", "D_W:10*5 2/D_W:10*5 257/D_W:10*5", "111"},
    {"contacts", "TX:10*3 TX:12*1 CX:12*1", "001"},
    {"nothing covered", "D_W:10*0", "0"},
    {"nothing covered, within another", "D_W:10*5 D_W:12*0 D_W:10*0", "100"},
    {"fewer than none", "D_W:10*5 D_W:14*-3", "10"},
    {"unknown register", "X_W:10*5 D:10*5", "00"},
    {"negative address", "D_W:-5*5", "0"},
    {"from a negative address into another", "D_W:-5*10 D_W:4*1 D_W:5*1", "001"},
    {"last address", "D_W:2147483646*1", "1"},
    {"beyond the last address", "D_W:2147483640*8 D_W:2147483647*1", "00"},
    {"beyond the last address, into another", "D_W:2147483640*900 D_W:2147483645*1", "00"},
};

static bool covers(const MergeKey &block, int unit)
{
    return block.startAddr <= unit && unit < block.startAddr + block.count;
}

static bool shareAUnit(const MergeKey &a, const MergeKey &b)
{
    for (int unit = a.startAddr; unit < a.startAddr + a.count; ++unit) {
        if (covers(b, unit)) {
            return a.stationNo == b.stationNo && a.regName == b.regName;
        }
    }
    return false;
}

// Each with each, unit by unit.
static QByteArray aloneByLooking(const QVector<MergeKey> &blocks)
{
    QByteArray text;
    for (int i = 0; i < blocks.size(); ++i) {
        bool alone = blocks.at(i).count > 0 && blocks.at(i).startAddr >= 0;
        for (int j = 0; j < blocks.size(); ++j) {
            alone = alone && (i == j || !shareAUnit(blocks.at(i), blocks.at(j)));
        }
        text += alone ? '1' : '0';
    }
    return text;
}

class TestBlockOverlap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blocksAlone_data() { addRows(kBlocksAlone); }
    void blocksAlone()
    {
        const auto &row = currentRow(kBlocksAlone);
        QCOMPARE(textOf(blocksOnTheirOwn(blocksOf(row.blocks))), QByteArray(row.alone));
    }

    void anyBlocks()
    {
        std::mt19937 chance(7);
        int alone = 0;
        int all = 0;
        for (int round = 0; round < 2000; ++round) {
            const char *const names[] = {"D_W", "D_W", "M_W", "TX"};
            QVector<MergeKey> blocks;
            const int count = static_cast<int>(chance() % 12);
            for (int i = 0; i < count; ++i) {
                const int start = static_cast<int>(chance() % 60) - 2;
                const int units = static_cast<int>(chance() % (round % 2 == 0 ? 4 : 20)) - 1;
                blocks.append(mergeKeyOf(
                    makeKey(static_cast<int>(1 + chance() % 2), names[chance() % 4], start, units),
                    0));
            }
            const QByteArray expected = aloneByLooking(blocks);
            QCOMPARE(textOf(blocksOnTheirOwn(blocks)), expected);
            alone += static_cast<int>(expected.count('1'));
            all += count;
        }
        QVERIFY2(alone > all / 4 && alone < all / 4 * 3, "both kinds come up");
    }
};

QTEST_APPLESS_MAIN(TestBlockOverlap)
#include "test_block_overlap.moc"
