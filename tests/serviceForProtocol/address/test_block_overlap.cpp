#include <climits>
#include <random>

#include <QtTest/QtTest>

#include "serviceForProtocol/address/block_overlap.h"
#include "support/area_helpers.h"

class TestBlockOverlap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blocksAlone_data();
    void blocksAlone();
    void anyBlocks();
};

// Blocks as "D_W 10 5", "2/D_W 10 5" at station 2, parted by "; ".
static QVector<MergeKey> blocksOf(const QByteArray &text)
{
    QVector<MergeKey> blocks;
    const QList<QByteArray> parts = text.split(';');
    for (const QByteArray &part : parts) {
        const QList<QByteArray> words = part.trimmed().split(' ');
        if (sizeOf(words) < 3) {
            continue;
        }
        const int slash = static_cast<int>(words.at(0).indexOf('/'));
        const int station = slash < 0 ? 1 : words.at(0).left(slash).toInt();
        blocks.append(mergeKeyOf(makeKey(station, words.at(0).mid(slash + 1).constData(),
                                         words.at(1).toInt(), words.at(2).toInt()),
                                 0));
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

void TestBlockOverlap::blocksAlone_data()
{
    QTest::addColumn<QByteArray>("blocks");
    QTest::addColumn<QByteArray>("alone"); // a digit for each

    const auto row = [](const char *name, const char *blocks, const char *alone) {
        QTest::newRow(name) << QByteArray(blocks) << QByteArray(alone);
    };
    row("none", "", "");
    row("one", "D_W 10 5", "1");
    row("apart", "D_W 10 5; D_W 20 5", "11");
    row("side by side", "D_W 10 5; D_W 15 5", "11");
    row("one unit in common", "D_W 10 5; D_W 14 5", "00");
    row("the same", "D_W 10 5; D_W 10 5", "00");
    row("same start", "D_W 10 1; D_W 10 5", "00");
    row("one within the other", "D_W 10 50; D_W 20 5", "00");
    row("two within one", "D_W 10 50; D_W 20 5; D_W 30 5; D_W 60 5", "0001");
    row("a chain", "D_W 10 5; D_W 14 5; D_W 18 5; D_W 23 5", "0001");
    row("the long one first", "D_W 0 100; D_W 1 1; D_W 50 100; D_W 99 1; D_W 150 1", "00001");
    row("not in order", "D_W 30 5; D_W 10 5; D_W 12 5; D_W 20 5", "1001");
    row("other register", "D_W 10 5; M_W 10 5; TX 10 5; CX 10 5; T_W 10 5", "11111");
    row("registers mixed", "D_W 10 5; M_W 10 5; D_W 14 5; M_W 15 5", "0101");
    row("other station", "D_W 10 5; 2/D_W 10 5; 257/D_W 10 5", "111");
    row("contacts", "TX 10 3; TX 12 1; CX 12 1", "001");
    row("nothing covered", "D_W 10 0", "0");
    row("nothing covered, within another", "D_W 10 5; D_W 12 0; D_W 10 0", "100");
    row("fewer than none", "D_W 10 5; D_W 14 -3", "10");
    row("unknown register", "X_W 10 5; D 10 5", "00");
    row("negative address", "D_W -5 5", "0");
    row("from a negative address into another", "D_W -5 10; D_W 4 1; D_W 5 1", "001");
    row("last address", "D_W 2147483646 1", "1");
    row("beyond the last address", "D_W 2147483640 8; D_W 2147483647 1", "00");
    row("beyond the last address, into another", "D_W 2147483640 900; D_W 2147483645 1", "00");
}

void TestBlockOverlap::blocksAlone()
{
    QFETCH(QByteArray, blocks);
    QFETCH(QByteArray, alone);

    QCOMPARE(textOf(blocksOnTheirOwn(blocksOf(blocks))), alone);
}

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

void TestBlockOverlap::anyBlocks()
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
                makeKey(static_cast<int>(1 + chance() % 2), names[chance() % 4], start, units), 0));
        }
        const QByteArray expected = aloneByLooking(blocks);
        QCOMPARE(textOf(blocksOnTheirOwn(blocks)), expected);
        alone += static_cast<int>(expected.count('1'));
        all += count;
    }
    QVERIFY2(alone > all / 4 && alone < all / 4 * 3, "both kinds come up");
}

QTEST_APPLESS_MAIN(TestBlockOverlap)
#include "test_block_overlap.moc"
