#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

// A register that the driver does not list has no frame. A job that has none never ends.
class TestUnknownRegisters : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    // Whatever else is monitored: the key comes first, as unknown names of a station do, and stays.
    void keyStopsCyclicReading()
    {
        QCOMPARE(loop.monitor({key("D_W", 100), key("X_W", 5), key("M_bit", 3)}), 3);
        QCOMPARE(loop.turns(4), (Values{-1, -1, -1, -1}));
        loop.write("D_W", 100, {1});
        loop.readOnce("D_W", 200, 1);
        QCOMPARE(loop.turns(4), (Values{1, 1, -1, -1}));
        QVERIFY(loop.show({key("D_W", 100)}));
        QCOMPARE(loop.differences(), QStringList());
    }

    void keyBehindThoseThatAreRead()
    {
        loop.addStation(2);
        loop.monitor({key("D_W", 100), key("D_W", 500), key("X_W", 5, 1, 2)});
        QCOMPARE(loop.turns(5), (Values{1, 1, -1, -1, -1}));
    }

    void writeHoldsUpWrites()
    {
        loop.monitor({key("D_W", 100)});
        loop.write("X_W", 5, {1});
        loop.write("D_W", 100, {1});
        loop.turns(30);
        QCOMPARE(loop.inPlc("D_W", 100), Values{0});
        QCOMPARE(driver.pendingWrites.size(), 2);
        QVERIFY(loop.counts().answers > 0); // the cyclic reads between
    }

    void readingHoldsUpReadings()
    {
        loop.readOnce("X_W", 5, 1);
        loop.readOnce("D_W", 100, 1);
        loop.write("D_W", 100, {1});
        QCOMPARE(loop.turns(8), (Values{1, -1, -1, -1, -1, -1, -1, -1}));
        QCOMPARE(HostLoop::calls(), QStringList());
    }

    void recipeItemHoldsUpEverything_data()
    {
        const Columns<int> row("direction");
        row("write", static_cast<int>(Recipe::Write));
        row("read", static_cast<int>(Recipe::Read));
    }

    void recipeItemHoldsUpEverything()
    {
        QFETCH(int, direction);
        const Recipe recipe = static_cast<Recipe>(direction);
        QVERIFY(loop.show({key("D_W", 100)}));
        QCOMPARE(loop.setRecipe({recipeItem("X_W", 5, 1, 0), recipeItem("D_W", 7, 1, 1)}), 2);
        loop.request(recipe);
        loop.write("D_W", 100, {1});
        QCOMPARE(loop.turns(4), (Values{-1, -1, -1, -1}));
        QVERIFY(loop.isRequested(recipe));
        loop.request(recipe, false);
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("D_W", 100), Values{1});
        QCOMPARE(loop.differences(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestUnknownRegisters)
#include "test_unknown_registers.moc"
