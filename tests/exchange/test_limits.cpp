#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

// What the words of a block do not bound: ranges longer than a block, and blocks of no words.
class TestLimits : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void noWordsInABlock_data()
    {
        const Columns<QByteArray> row("properties");
        row("0 words", "7#0#0#3#0");
        row("-60 words", "7#0#0#3#-60");
    }

    // Nothing is merged, so each key and each item is a block. What is cut into pieces has none:
    // words and bits that the panel writes stay in the cache, and one-off readings are not queued.
    // Contacts are not cut.
    void noWordsInABlock()
    {
        QFETCH(QByteArray, properties);
        loop.start(properties);
        loop.setPlc("D_W", 10, {1, 2, 3});
        QCOMPARE(loop.monitor({key("D_W", 11, 2), key("D_W", 10), key("M_bit", 35)}), 3);
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests(),
                 texts({"01rSB08%DW0001001", "01rSB08%DW0001102", "01rSB08%MW0000201"}));
        QCOMPARE(loop.inPanel("D_W", 10, 3), (Values{1, 2, 3}));

        QCOMPARE(loop.setRecipe({recipeItem("D_W", 20, 2, 0), recipeItem("D_W", 22, 1, 2)}), 2);
        loop.setRecipeWords(0, {7, 8, 9});
        loop.request(Recipe::Write);
        loop.forget();
        QCOMPARE(loop.turns(2), (Values{1, 1}));
        QVERIFY(!loop.isRequested(Recipe::Write));
        QCOMPARE(loop.requests(), texts({"01wSB08%DW000200200070008", "01wSB08%DW00022010009"}));

        loop.monitor({});
        loop.forget();
        loop.write("D_W", 30, {5});
        loop.write("M_bit", 3, {1});
        loop.readOnce("D_W", 10, 1);
        loop.write("TX", 5, {1, 1});
        QCOMPARE(loop.turns(3), (Values{1, 1, -1}));
        QCOMPARE(loop.requests(), texts({"01wSS0109%TX00000501", "01wSS0109%TX00000601"}));
        QCOMPARE(loop.inPanel("D_W", 30), Values{5});
        QCOMPARE(loop.inPlc("D_W", 30), Values{0});
    }

    // An item is never divided: it is one frame of its own length.
    void itemLongerThanABlock()
    {
        loop.start("7#0#0#3#2");
        loop.setRecipe({recipeItem("D_W", 20, 3, 0), recipeItem("D_W", 23, 1, 3)});
        loop.setRecipeWords(0, {7, 8, 9, 10});
        loop.request(Recipe::Write);
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests(),
                 texts({"01wSB08%DW0002003000700080009", "01wSB08%DW0002301000A"}));
        QCOMPARE(loop.inPlc("D_W", 20, 4), (Values{7, 8, 9, 10}));
    }

    void itemLongerThanThePlcTakes()
    {
        loop.setRecipe({recipeItem("D_W", 20, 61, 0), recipeItem("D_W", 100, 1, 61)});
        for (const Recipe direction : {Recipe::Write, Recipe::Read}) {
            loop.request(direction);
            QCOMPARE(loop.turns(4), (Values{8, 8, 2, -1}));
            QVERIFY(!loop.isRequested(direction));
        }
        QCOMPARE(loop.log().last().answer.left(1), QByteArray("\x15"));
        QCOMPARE(loop.plcChanges(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestLimits)
#include "test_limits.moc"
