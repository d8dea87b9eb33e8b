#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/recipe/recipe.h"
#include "support/area_helpers.h"
#include "support/recipe_helpers.h"

class TestRecipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blocksOfItems_data();
    void blocksOfItems();
    void noItemOfThisDeviceLeavesTheRest_data();
    void noItemOfThisDeviceLeavesTheRest();
    void newRecipeReplacesTheOld();
    void itemsKeepTheirFields();
    void blockAsRequest_data();
    void blockAsRequest();
    void requestKeepsItsTag();
    void withoutBufferNoValues();
    void nothingBeforeTheBufferIsRead();
    void bytesOfBlock_data();
    void bytesOfBlock();
};

void TestRecipe::blocksOfItems_data()
{
    QTest::addColumn<QByteArray>("items"); // "[device/]station register start count offset"
    QTest::addColumn<int>("blockWords");
    QTest::addColumn<QByteArray>("sorted");
    QTest::addColumn<QByteArray>("blocks");
    QTest::addColumn<QByteArray>("starts");

    QTest::newRow("one item") << QByteArray("1 D_W 10 2 50") << 60 << QByteArray("1 D_W 10 2 50")
                              << QByteArray("1 D_W 10 2 50") << QByteArray("0");
    QTest::newRow("items that touch make one block")
        << QByteArray("1 D_W 10 2 50; 1 D_W 12 3 52") << 60
        << QByteArray("1 D_W 10 2 50; 1 D_W 12 3 52") << QByteArray("1 D_W 10 5 50")
        << QByteArray("0");
    QTest::newRow("a gap is not bridged")
        << QByteArray("1 D_W 10 2 50; 1 D_W 14 2 52") << 60
        << QByteArray("1 D_W 10 2 50; 1 D_W 14 2 52") << QByteArray("1 D_W 10 2 50; 1 D_W 14 2 52")
        << QByteArray("0 1");
    QTest::newRow("sorted by address first; the block has the offset of its first item")
        << QByteArray("1 D_W 12 3 52; 1 D_W 10 2 99") << 60
        << QByteArray("1 D_W 10 2 99; 1 D_W 12 3 52") << QByteArray("1 D_W 10 5 99")
        << QByteArray("0");
    QTest::newRow("sorted by station, register, address")
        << QByteArray("2 D_W 0 1 1; 1 M_W 0 1 2; 1 D_W 9 1 3; 1 D_W 5 1 4") << 60
        << QByteArray("1 D_W 5 1 4; 1 D_W 9 1 3; 1 M_W 0 1 2; 2 D_W 0 1 1")
        << QByteArray("1 D_W 5 1 4; 1 D_W 9 1 3; 1 M_W 0 1 2; 2 D_W 0 1 1")
        << QByteArray("0 1 2 3");
    QTest::newRow("the same address keeps its order")
        << QByteArray("1 D_W 5 1 4; 1 D_W 5 2 3; 1 D_W 5 1 2") << 60
        << QByteArray("1 D_W 5 1 4; 1 D_W 5 2 3; 1 D_W 5 1 2") << QByteArray("1 D_W 5 2 4")
        << QByteArray("0");
    QTest::newRow("an item within the one before adds nothing")
        << QByteArray("1 D_W 5 9 0; 1 D_W 6 2 20; 1 D_W 14 1 30") << 60
        << QByteArray("1 D_W 5 9 0; 1 D_W 6 2 20; 1 D_W 14 1 30") << QByteArray("1 D_W 5 10 0")
        << QByteArray("0");
    QTest::newRow("a block holds no more than the words of a block")
        << QByteArray("1 D_W 10 2 0; 1 D_W 12 2 2; 1 D_W 14 2 4") << 4
        << QByteArray("1 D_W 10 2 0; 1 D_W 12 2 2; 1 D_W 14 2 4")
        << QByteArray("1 D_W 10 4 0; 1 D_W 14 2 4") << QByteArray("0 2");
    QTest::newRow("a longer item is a block of its own")
        << QByteArray("1 D_W 10 9 0; 1 D_W 19 1 9") << 4 << QByteArray("1 D_W 10 9 0; 1 D_W 19 1 9")
        << QByteArray("1 D_W 10 9 0; 1 D_W 19 1 9") << QByteArray("0 1");
    QTest::newRow("items of other devices are dropped")
        << QByteArray("8/1 D_W 10 2 0; 1 D_W 12 2 2; 0/1 D_W 14 2 4") << 60
        << QByteArray("1 D_W 12 2 2") << QByteArray("1 D_W 12 2 2") << QByteArray("0");
    QTest::newRow("bits stay bits") << QByteArray("1 M_bit 35 3 0; 1 M_bit 38 1 3") << 60
                                    << QByteArray("1 M_bit 35 3 0; 1 M_bit 38 1 3")
                                    << QByteArray("1 M_bit 35 4 0") << QByteArray("0");
    QTest::newRow("contacts join only at the same address")
        << QByteArray("1 TX 5 1 0; 1 TX 5 1 1; 1 TX 6 1 2") << 60
        << QByteArray("1 TX 5 1 0; 1 TX 5 1 1; 1 TX 6 1 2") << QByteArray("1 TX 5 1 0; 1 TX 6 1 2")
        << QByteArray("0 2");
    QTest::newRow("an unknown register is kept as it is and comes before its station")
        << QByteArray("1 D_W 5 1 0; 1 Q_W 5 3 1") << 60 << QByteArray("1 Q_W 5 3 1; 1 D_W 5 1 0")
        << QByteArray("1 Q_W 5 3 1; 1 D_W 5 1 0") << QByteArray("0 1");
    QTest::newRow("no words in a block: a block for each item")
        << QByteArray("1 D_W 10 2 50; 1 D_W 12 1 52") << 0
        << QByteArray("1 D_W 10 2 50; 1 D_W 12 1 52") << QByteArray("1 D_W 10 2 50; 1 D_W 12 1 52")
        << QByteArray("0 1");
}

void TestRecipe::blocksOfItems()
{
    QFETCH(QByteArray, items);
    QFETCH(int, blockWords);
    QFETCH(QByteArray, sorted);
    QFETCH(QByteArray, blocks);
    QFETCH(QByteArray, starts);

    DriverFixture fixture("7#0#0#3#60");
    driver.maxBlockWords = blockWords;
    driver.rcpIndex = 1;
    QVector<_RCP_VAR_PRO> list = recipeItems(items);
    QCOMPARE(intf_setRcpAddress(list), sizeOf(recipeItems(sorted)));
    QCOMPARE(recipeText(driver.rcpItems), sorted);
    QCOMPARE(recipeText(driver.rcpBlocks), blocks);
    QCOMPARE(startsText(), starts);
    QCOMPARE(driver.rcpIndex, 1);
    QCOMPARE(sizeOf(list), sizeOf(recipeItems(items)));
}

void TestRecipe::noItemOfThisDeviceLeavesTheRest_data()
{
    QTest::addColumn<QByteArray>("items");

    QTest::newRow("no item") << QByteArray();
    QTest::newRow("items of other devices") << QByteArray("8/1 D_W 1 1 0; 0/1 D_W 2 1 0");
}

void TestRecipe::noItemOfThisDeviceLeavesTheRest()
{
    QFETCH(QByteArray, items);

    DriverFixture fixture;
    QVector<_RCP_VAR_PRO> first = recipeItems("1 D_W 10 2 50; 1 D_W 20 1 52");
    intf_setRcpAddress(first);
    QVector<_RCP_VAR_PRO> list = recipeItems(items);
    QCOMPARE(intf_setRcpAddress(list), 0);
    QCOMPARE(recipeText(driver.rcpItems), QByteArray());
    QCOMPARE(recipeText(driver.rcpBlocks), QByteArray("1 D_W 10 2 50; 1 D_W 20 1 52"));
    QCOMPARE(startsText(), QByteArray("0 1"));
}

void TestRecipe::newRecipeReplacesTheOld()
{
    DriverFixture fixture;
    QVector<_RCP_VAR_PRO> first = recipeItems("1 D_W 10 2 50; 1 D_W 20 1 52");
    QCOMPARE(intf_setRcpAddress(first), 2);
    QVector<_RCP_VAR_PRO> second = recipeItems("2 M_W 3 1 7");
    QCOMPARE(intf_setRcpAddress(second), 1);
    QCOMPARE(recipeText(driver.rcpItems), QByteArray("2 M_W 3 1 7"));
    QCOMPARE(recipeText(driver.rcpBlocks), QByteArray("2 M_W 3 1 7"));
    QCOMPARE(startsText(), QByteArray("0"));
}

void TestRecipe::itemsKeepTheirFields()
{
    DriverFixture fixture;
    QVector<_RCP_VAR_PRO> list = recipeItems("2 M_W 3 1 7");
    list[0].reserved = 77;
    intf_setRcpAddress(list);
    QCOMPARE(driver.rcpItems.at(0).reserved, 77);
    QCOMPARE(driver.rcpItems.at(0).deviceNo, 7);
}

// Byte n of the recipe buffer is n & 0xFF.
static void fillBuffer(DriverFixture &fixture)
{
    for (int i = 0; i < fixture.recipe.size(); ++i) {
        fixture.recipe.data()[i] = static_cast<char>(i & 0xFF);
    }
}

void TestRecipe::blockAsRequest_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<int>("withData");
    QTest::addColumn<int>("first"); // value of the first byte
    QTest::addColumn<int>("bytes");

    QTest::newRow("words") << QByteArray("1 D_W 100 2 5") << 1 << 10 << 4;
    QTest::newRow("any number but 0 asks for values")
        << QByteArray("1 D_W 100 1 5") << -1 << 10 << 2;
    QTest::newRow("for reading: no values") << QByteArray("1 D_W 100 2 5") << 0 << 0 << 0;
    QTest::newRow("bits: a word each") << QByteArray("1 M_bit 35 3 5") << 1 << 10 << 6;
    QTest::newRow("contacts: none") << QByteArray("1 TX 3 4 5") << 1 << 0 << 0;
    QTest::newRow("512 words fill the area") << QByteArray("1 D_W 0 512 0") << 1 << 0 << 1024;
    QTest::newRow("more words: the area is full") << QByteArray("1 D_W 0 513 0") << 1 << 0 << 1024;
    QTest::newRow("endless words") << QByteArray("1 D_W 0 2147483647 0") << 1 << 0 << 1024;
    QTest::newRow("no words") << QByteArray("1 D_W 0 0 5") << 1 << 0 << 0;
    QTest::newRow("negative count") << QByteArray("1 D_W 0 -1 5") << 1 << 0 << 0;
    QTest::newRow("negative offset: no values") << QByteArray("1 D_W 0 1 -1") << 1 << 0 << 0;
    QTest::newRow("unknown register: no values") << QByteArray("1 Q_W 0 1 5") << 1 << 0 << 0;
}

void TestRecipe::blockAsRequest()
{
    QFETCH(QByteArray, block);
    QFETCH(int, withData);
    QFETCH(int, first);
    QFETCH(int, bytes);

    DriverFixture fixture;
    fillBuffer(fixture);
    VARIABLE var = VARIABLE();
    std::memset(var.data, 0xEE, sizeof var.data);
    const _RCP_VAR_PRO item = recipeItems(block).at(0);
    rcpAddrToVar(item, var, withData);
    QCOMPARE(var.stationNo, item.stationNo);
    QCOMPARE(var.regName, item.regName);
    QCOMPARE(var.startAddr, item.startAddr);
    QCOMPARE(var.count, item.count);
    QByteArray expected(1024, '\0');
    for (int i = 0; i < bytes; ++i) {
        expected[i] = static_cast<char>((first + i) & 0xFF);
    }
    QCOMPARE(bytesOf(var.data, 1024), expected);
}

void TestRecipe::requestKeepsItsTag()
{
    DriverFixture fixture;
    VARIABLE var = makeItem(9, "M_W", 9, 9);
    var.opKind = 4711;
    rcpAddrToVar(recipeItems("1 D_W 100 2 5").at(0), var, 1);
    QCOMPARE(var.opKind, 4711);
}

void TestRecipe::withoutBufferNoValues()
{
    DriverFixture fixture;
    driver.rcpBuffer = nullptr;
    VARIABLE var = makeItem(9, "M_W", 9, 9, "\x11\x22");
    rcpAddrToVar(recipeItems("1 D_W 100 2 5").at(0), var, 1);
    QCOMPARE(itemText(var), latin("1 D_W 100 x2"));
    QCOMPARE(bytesOf(var.data, 1024), QByteArray(1024, '\0'));
}

void TestRecipe::nothingBeforeTheBufferIsRead()
{
    DriverFixture fixture;
    QByteArray memory(4096, '\x55');
    driver.rcpBuffer = DriverFixture::bytes(memory) + 2048;
    VARIABLE var = makeItem(9, "M_W", 9, 9);
    rcpAddrToVar(recipeItems("1 D_W 100 2 -1").at(0), var, 1);
    QCOMPARE(bytesOf(var.data, 1024), QByteArray(1024, '\0'));
}

void TestRecipe::bytesOfBlock_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("bytes");

    QTest::newRow("bytes") << 8 << 5 << 5;
    QTest::newRow("words") << 16 << 5 << 10;
    QTest::newRow("double words") << 32 << 5 << 20;
    QTest::newRow("contacts") << 1 << 5 << 0;
    QTest::newRow("negative") << 16 << -5 << 0;
    QTest::newRow("most negative") << 32 << INT_MIN << 0;
    QTest::newRow("endless") << 32 << INT_MAX << 1024;
}

void TestRecipe::bytesOfBlock()
{
    QFETCH(int, wordBits);
    QFETCH(int, count);
    QFETCH(int, bytes);

    QCOMPARE(recipeBytes(makeWidths(wordBits, wordBits), count), bytes);
}

QTEST_APPLESS_MAIN(TestRecipe)
#include "test_recipe.moc"
