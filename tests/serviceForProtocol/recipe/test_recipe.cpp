#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/recipe/recipe.h"
#include "support/area_helpers.h"
#include "support/recipe_helpers.h"

static const struct
{
    const char *what;
    QByteArray items; // "[device/]station register start count offset"
    int blockWords;
    QByteArray sorted, blocks, starts;
} kBlocksOfItems[] = {
    {"one item", "1 D_W 10 2 50", 60, "1 D_W 10 2 50", "1 D_W 10 2 50", "0"},
    {"items that touch make one block", "1 D_W 10 2 50; 1 D_W 12 3 52", 60,
     "1 D_W 10 2 50; 1 D_W 12 3 52", "1 D_W 10 5 50", "0"},
    {"a gap is not bridged", "1 D_W 10 2 50; 1 D_W 14 2 52", 60, "1 D_W 10 2 50; 1 D_W 14 2 52",
     "1 D_W 10 2 50; 1 D_W 14 2 52", "0 1"},
    {"sorted by address first; the block has the offset of its first item",
     "1 D_W 12 3 52; 1 D_W 10 2 99", 60, "1 D_W 10 2 99; 1 D_W 12 3 52", "1 D_W 10 5 99", "0"},
    {"sorted by station, register, address", "2 D_W 0 1 1; 1 M_W 0 1 2; 1 D_W 9 1 3; 1 D_W 5 1 4",
     60, "1 D_W 5 1 4; 1 D_W 9 1 3; 1 M_W 0 1 2; 2 D_W 0 1 1",
     "1 D_W 5 1 4; 1 D_W 9 1 3; 1 M_W 0 1 2; 2 D_W 0 1 1", "0 1 2 3"},
    {"the same address keeps its order", "1 D_W 5 1 4; 1 D_W 5 2 3; 1 D_W 5 1 2", 60,
     "1 D_W 5 1 4; 1 D_W 5 2 3; 1 D_W 5 1 2", "1 D_W 5 2 4", "0"},
    {"an item within the one before adds nothing", "1 D_W 5 9 0; 1 D_W 6 2 20; 1 D_W 14 1 30", 60,
     "1 D_W 5 9 0; 1 D_W 6 2 20; 1 D_W 14 1 30", "1 D_W 5 10 0", "0"},
    {"a block holds no more than the words of a block", "1 D_W 10 2 0; 1 D_W 12 2 2; 1 D_W 14 2 4",
     4, "1 D_W 10 2 0; 1 D_W 12 2 2; 1 D_W 14 2 4", "1 D_W 10 4 0; 1 D_W 14 2 4", "0 2"},
    {"a longer item is a block of its own", "1 D_W 10 9 0; 1 D_W 19 1 9", 4,
     "1 D_W 10 9 0; 1 D_W 19 1 9", "1 D_W 10 9 0; 1 D_W 19 1 9", "0 1"},
    {"items of other devices are dropped", "8/1 D_W 10 2 0; 1 D_W 12 2 2; 0/1 D_W 14 2 4", 60,
     "1 D_W 12 2 2", "1 D_W 12 2 2", "0"},
    {"bits stay bits", "1 M_bit 35 3 0; 1 M_bit 38 1 3", 60, "1 M_bit 35 3 0; 1 M_bit 38 1 3",
     "1 M_bit 35 4 0", "0"},
    {"contacts join only at the same address", "1 TX 5 1 0; 1 TX 5 1 1; 1 TX 6 1 2", 60,
     "1 TX 5 1 0; 1 TX 5 1 1; 1 TX 6 1 2", "1 TX 5 1 0; 1 TX 6 1 2", "0 2"},
    {"an unknown register is kept as it is and comes before its station",
     "1 D_W 5 1 0; 1 Q_W 5 3 1", 60, "1 Q_W 5 3 1; 1 D_W 5 1 0", "1 Q_W 5 3 1; 1 D_W 5 1 0", "0 1"},
    {"no words in a block: a block for each item", "1 D_W 10 2 50; 1 D_W 12 1 52", 0,
     "1 D_W 10 2 50; 1 D_W 12 1 52", "1 D_W 10 2 50; 1 D_W 12 1 52", "0 1"},
};

static const Given<QByteArray> kNoItemOfThisDeviceLeavesTheRest[] = {
    {"no item", QByteArray()},
    {"items of other devices", "8/1 D_W 1 1 0; 0/1 D_W 2 1 0"},
};

// Byte n of the recipe buffer is n & 0xFF.
static void fillBuffer(DriverFixture &fixture)
{
    for (int i = 0; i < fixture.recipe.size(); ++i) {
        fixture.recipe.data()[i] = static_cast<char>(i & 0xFF);
    }
}

static const struct
{
    const char *what;
    QByteArray block;
    int withData;
    int first; // value of the first byte
    int bytes;
} kBlockAsRequest[] = {
    {"words", "1 D_W 100 2 5", 1, 10, 4},
    {"any number but 0 asks for values", "1 D_W 100 1 5", -1, 10, 2},
    {"for reading: no values", "1 D_W 100 2 5", 0, 0, 0},
    {"bits: a word each", "1 M_bit 35 3 5", 1, 10, 6},
    {"contacts: none", "1 TX 3 4 5", 1, 0, 0},
    {"512 words fill the area", "1 D_W 0 512 0", 1, 0, 1024},
    {"more words: the area is full", "1 D_W 0 513 0", 1, 0, 1024},
    {"endless words", "1 D_W 0 2147483647 0", 1, 0, 1024},
    {"no words", "1 D_W 0 0 5", 1, 0, 0},
    {"negative count", "1 D_W 0 -1 5", 1, 0, 0},
    {"negative offset: no values", "1 D_W 0 1 -1", 1, 0, 0},
    {"unknown register: no values", "1 Q_W 0 1 5", 1, 0, 0},
};

static const struct
{
    const char *what;
    int wordBits, count, bytes;
} kBytesOfBlock[] = {
    {"bytes", 8, 5, 5},
    {"words", 16, 5, 10},
    {"double words", 32, 5, 20},
    {"contacts", 1, 5, 0},
    {"negative", 16, -5, 0},
    {"most negative", 32, INT_MIN, 0},
    {"endless", 32, INT_MAX, 1024},
};

class TestRecipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blocksOfItems_data() { addRows(kBlocksOfItems); }
    void blocksOfItems()
    {
        const auto &row = currentRow(kBlocksOfItems);
        DriverFixture fixture("7#0#0#3#60");
        driver.maxBlockWords = row.blockWords;
        driver.rcpIndex = 1;
        QVector<_RCP_VAR_PRO> list = recipeItems(row.items);
        QCOMPARE(intf_setRcpAddress(list), sizeOf(recipeItems(row.sorted)));
        QCOMPARE(recipeText(driver.rcpItems), row.sorted);
        QCOMPARE(recipeText(driver.rcpBlocks), row.blocks);
        QCOMPARE(startsText(), row.starts);
        QCOMPARE(driver.rcpIndex, 1);
        QCOMPARE(sizeOf(list), sizeOf(recipeItems(row.items)));
    }

    void noItemOfThisDeviceLeavesTheRest_data() { addRows(kNoItemOfThisDeviceLeavesTheRest); }
    void noItemOfThisDeviceLeavesTheRest()
    {
        const auto &row = currentRow(kNoItemOfThisDeviceLeavesTheRest);
        DriverFixture fixture;
        setRecipeItems("1 D_W 10 2 50; 1 D_W 20 1 52");
        QCOMPARE(setRecipeItems(row.given), 0);
        QCOMPARE(recipeText(driver.rcpItems), QByteArray());
        QCOMPARE(recipeText(driver.rcpBlocks), QByteArray("1 D_W 10 2 50; 1 D_W 20 1 52"));
        QCOMPARE(startsText(), QByteArray("0 1"));
    }

    void newRecipeReplacesTheOld()
    {
        DriverFixture fixture;
        QCOMPARE(setRecipeItems("1 D_W 10 2 50; 1 D_W 20 1 52"), 2);
        QCOMPARE(setRecipeItems("2 M_W 3 1 7"), 1);
        QCOMPARE(recipeText(driver.rcpItems), QByteArray("2 M_W 3 1 7"));
        QCOMPARE(recipeText(driver.rcpBlocks), QByteArray("2 M_W 3 1 7"));
        QCOMPARE(startsText(), QByteArray("0"));
    }

    void itemsKeepTheirFields()
    {
        DriverFixture fixture;
        QVector<_RCP_VAR_PRO> list = recipeItems("2 M_W 3 1 7");
        list[0].reserved = 77;
        intf_setRcpAddress(list);
        QCOMPARE(driver.rcpItems.at(0).reserved, 77);
        QCOMPARE(driver.rcpItems.at(0).deviceNo, 7);
    }

    void blockAsRequest_data() { addRows(kBlockAsRequest); }
    void blockAsRequest()
    {
        const auto &row = currentRow(kBlockAsRequest);
        DriverFixture fixture;
        fillBuffer(fixture);
        VARIABLE var = VARIABLE();
        std::memset(var.data, 0xEE, sizeof var.data);
        const _RCP_VAR_PRO item = recipeItems(row.block).at(0);
        rcpAddrToVar(item, var, row.withData);
        QCOMPARE(var.stationNo, item.stationNo);
        QCOMPARE(var.regName, item.regName);
        QCOMPARE(var.startAddr, item.startAddr);
        QCOMPARE(var.count, item.count);
        QByteArray expected(1024, '\0');
        for (int i = 0; i < row.bytes; ++i) {
            expected[i] = static_cast<char>((row.first + i) & 0xFF);
        }
        QCOMPARE(bytesOf(var.data, 1024), expected);
    }

    void requestKeepsItsTag()
    {
        DriverFixture fixture;
        VARIABLE var = makeItem(9, "M_W", 9, 9);
        var.opKind = 4711;
        rcpAddrToVar(recipeItems("1 D_W 100 2 5").at(0), var, 1);
        QCOMPARE(var.opKind, 4711);
    }

    void withoutBufferNoValues()
    {
        DriverFixture fixture;
        driver.rcpBuffer = nullptr;
        VARIABLE var = makeItem(9, "M_W", 9, 9, "\x11\x22");
        rcpAddrToVar(recipeItems("1 D_W 100 2 5").at(0), var, 1);
        QCOMPARE(itemText(var), latin("1 D_W 100 x2"));
        QCOMPARE(bytesOf(var.data, 1024), QByteArray(1024, '\0'));
    }

    void nothingBeforeTheBufferIsRead()
    {
        DriverFixture fixture;
        QByteArray memory(4096, '\x55');
        driver.rcpBuffer = DriverFixture::bytes(memory) + 2048;
        VARIABLE var = makeItem(9, "M_W", 9, 9);
        rcpAddrToVar(recipeItems("1 D_W 100 2 -1").at(0), var, 1);
        QCOMPARE(bytesOf(var.data, 1024), QByteArray(1024, '\0'));
    }

    void bytesOfBlock_data() { addRows(kBytesOfBlock); }
    void bytesOfBlock()
    {
        const auto &row = currentRow(kBytesOfBlock);
        QCOMPARE(recipeBytes(makeWidths(row.wordBits, row.wordBits), row.count), row.bytes);
    }
};

QTEST_APPLESS_MAIN(TestRecipe)
#include "test_recipe.moc"
