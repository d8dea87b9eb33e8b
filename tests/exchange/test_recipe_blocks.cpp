#include "exchange/recipe_loop.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

// What a recipe's items become, and requests that find nothing to transfer.
class TestRecipeBlocks : public RecipeTest
{
    Q_OBJECT

private Q_SLOTS:
    // A block is written from the buffer in one piece, from the place of its first item on, but
    // read into the place of each item: items that touch must lie in the order of their addresses.
    void itemsOutOfOrderInTheBuffer()
    {
        loop.setRecipe({recipeItem("D_W", 10, 2, 4), recipeItem("D_W", 12, 2, 0)});
        loop.request(Recipe::Write);
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("D_W", 10, 4), (Values{5, 6, 7, 8}));
        loop.request(Recipe::Read);
        QVERIFY(loop.settle());
        QCOMPARE(loop.recipeWords(0, 9), (Values{7, 8, 3, 4, 5, 6, 7, 8, 9}));
        QCOMPARE(HostLoop::calls(),
                 texts({"0 -1 RWI 4", "0 -1 RWI 5", "0 -1 RWI 0", "0 -1 RWI 1"}));
    }

    void blocks_data()
    {
        const Columns<Items, QStringList> row("items", "requests");
        row("touching items share a block",
            {recipeItem("D_W", 10, 2, 0), recipeItem("D_W", 12, 3, 2)}, {"01rSB08%DW0001005"});
        row("overlapping items share a block",
            {recipeItem("D_W", 10, 3, 0), recipeItem("D_W", 12, 3, 2)}, {"01rSB08%DW0001005"});
        row("no gap is bridged", {recipeItem("D_W", 10, 2, 0), recipeItem("D_W", 13, 2, 2)},
            {"01rSB08%DW0001002", "01rSB08%DW0001302"});
        row("no block above the limit",
            {recipeItem("D_W", 10, 40, 0), recipeItem("D_W", 50, 20, 40),
             recipeItem("D_W", 70, 1, 60)},
            {"01rSB08%DW000103C", "01rSB08%DW0007001"});
        row("stations and registers in order",
            {recipeItem("D_W", 0, 1, 0, 2), recipeItem("M_W", 0, 1, 1), recipeItem("C_W", 0, 1, 2),
             recipeItem("D_W", 1, 1, 3)},
            {"01rSB08%DW0000101", "01rSB08%CW0000001", "01rSB08%MW0000001", "02rSB08%DW0000001"});
    }

    void blocks()
    {
        QFETCH(Items, items);
        QCOMPARE(loop.setRecipe(items), items.size());
        loop.request(Recipe::Write);
        QVERIFY(loop.settle());
        loop.forget();
        loop.request(Recipe::Read);
        QVERIFY(loop.settle());
        QTEST(loop.requests(), "requests");
        for (const _RCP_VAR_PRO &item : items) {
            const QByteArray reg = item.regName.toLatin1();
            QCOMPARE(loop.recipeWords(item.bufOffset, item.count),
                     loop.inPlc(reg.constData(), item.startAddr, item.count, item.stationNo));
        }
    }

    void itemsOfBits_data()
    {
        // changes: of D 2 = 0x1234 and M 2 = 0x1234
        // cached: of D 35 and M 35, by the number of the bit
        const Columns<Items, QStringList, QStringList, Values> row("items", "requests", "changes",
                                                                   "cached");
        row("a data register's bit: zeros over its word", {recipeItem("D_bit", 35, 1, 0)},
            {"01rSB08%DW0000201", "01wSB08%DW00002010000"}, {"D_W 2=0"}, {0x1234, 0});
        row("several bits: zeros over their word", {recipeItem("M_bit", 35, 3, 0)},
            {"01rSB08%MW0000201", "01wSB08%MW00002010000"}, {"M_W 2=0"}, {0, 0x1234});
        row("a bit takes the low byte of its word", {recipeItem("M_bit", 32, 1, 0)},
            {"01wSS0109%MX00002001"}, {"M_W 2=4661"}, {0, 0});
        row("a contact takes 0", {recipeItem("TX", 5, 1, 0)}, {"01wSS0109%TX00000500"}, {}, {0, 0});
    }

    void itemsOfBits()
    {
        QFETCH(Items, items);
        loop.setPlc("D_W", 2, {0x1234});
        loop.setPlc("M_W", 2, {0x1234});
        loop.setRecipe(items);
        loop.setRecipeWords(0, {1, 1, 1});
        loop.request(Recipe::Write);
        QVERIFY(loop.settle());
        QTEST(loop.requests(), "requests");
        QTEST(loop.plcChanges(), "changes");
        QTEST(loop.inPanel("D_W", 35) + loop.inPanel("M_W", 35), "cached");
    }

    void otherDevices()
    {
        Items items = threeBlocks();
        items[1].deviceNo = 8;
        items[2].deviceNo = 0;
        QCOMPARE(loop.setRecipe(items), 2);
        loop.request(Recipe::Write);
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests(), texts({"01wSB08%DW000100200010002", "02wSB08%MW00005010008"}));

        // A list without any item of this device leaves the blocks of the last one, without their
        // items.
        items[0].deviceNo = items[3].deviceNo = 8;
        QCOMPARE(loop.setRecipe(items), 0);
        loop.forget();
        loop.request(Recipe::Read);
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests(), texts({"01rSB08%DW0001002", "02rSB08%MW0000501"}));
        QCOMPARE(HostLoop::calls(), QStringList());
        QCOMPARE(loop.recipeWords(0, 9), (Values{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }

    // A request without a recipe repeats the job before it until the host takes the request back;
    // the driver never does.
    void requestWithoutARecipe()
    {
        for (const Recipe direction : {Recipe::Write, Recipe::Read}) {
            HostLoop plain;
            plain.request(direction);
            QCOMPARE(plain.turns(2), (Values{-1, -1}));
            plain.request(direction, false);
            plain.monitor({key("D_W", 0), key("D_W", 500)});
            plain.turn();
            plain.request(direction);
            plain.turns(3);
            QVERIFY(plain.isRequested(direction));
            plain.request(direction, false);
            plain.turns(1);
            QCOMPARE(plain.requests(),
                     texts({"01rSB08%DW0000001", "01rSB08%DW0000001", "01rSB08%DW0000001",
                            "01rSB08%DW0000001", "01rSB08%DW0000001"}));
            QCOMPARE(plain.differencesAtRest(), QStringList());
        }
    }

    void otherByteValuesAreNoRequest()
    {
        for (const int value : {0, 2, 255}) {
            driver.shmBase[kRecipeWriteByte] = static_cast<unsigned char>(value);
            driver.shmBase[kRecipeReadByte] = static_cast<unsigned char>(value);
            QVERIFY(!loop.turn());
            QCOMPARE(static_cast<int>(driver.shmBase[kRecipeWriteByte]), value);
        }
    }
};

QTEST_APPLESS_MAIN(TestRecipeBlocks)
#include "test_recipe_blocks.moc"
