#include "exchange/host_loop.h"

#include <QtTest>

using namespace exchange;

// A register that the driver does not list has no frame. A job that has none never ends.
class TestUnknownRegisters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyStopsCyclicReading();
    void keyBehindThoseThatAreRead();
    void writeHoldsUpWrites();
    void readingHoldsUpReadings();
    void recipeItemHoldsUpEverything_data();
    void recipeItemHoldsUpEverything();
};

// Whatever else is monitored: the key comes first, as unknown names of a station do, and stays.
void TestUnknownRegisters::keyStopsCyclicReading()
{
    HostLoop loop;
    loop.addStation(1);
    QCOMPARE(loop.monitor({key(1, "D_W", 100), key(1, "X_W", 5), key(1, "M_bit", 3)}), 3);
    QCOMPARE(loop.turns(4), (Values{-1, -1, -1, -1}));
    loop.write(1, "D_W", 100, {1});
    loop.readOnce(1, "D_W", 200, 1);
    QCOMPARE(loop.turns(4), (Values{1, 1, -1, -1}));
    loop.monitor({key(1, "D_W", 100)});
    QVERIFY(loop.settle());
    QCOMPARE(loop.differences(), QStringList());
}

void TestUnknownRegisters::keyBehindThoseThatAreRead()
{
    HostLoop loop;
    loop.addStation(1);
    loop.addStation(2);
    loop.monitor({key(1, "D_W", 100), key(1, "D_W", 500), key(2, "X_W", 5)});
    QCOMPARE(loop.turns(5), (Values{1, 1, -1, -1, -1}));
}

void TestUnknownRegisters::writeHoldsUpWrites()
{
    HostLoop loop;
    loop.addStation(1);
    loop.monitor({key(1, "D_W", 100)});
    loop.write(1, "X_W", 5, {1});
    loop.write(1, "D_W", 100, {1});
    loop.turns(30);
    QCOMPARE(loop.inPlc(1, "D_W", 100), Values{0});
    QCOMPARE(driver.pendingWrites.size(), 2);
    QVERIFY(loop.counts().answers > 0); // the cyclic reads between
}

void TestUnknownRegisters::readingHoldsUpReadings()
{
    HostLoop loop;
    loop.addStation(1);
    loop.readOnce(1, "X_W", 5, 1);
    loop.readOnce(1, "D_W", 100, 1);
    loop.write(1, "D_W", 100, {1});
    QCOMPARE(loop.turns(8), (Values{1, -1, -1, -1, -1, -1, -1, -1}));
    QCOMPARE(HostLoop::calls(), QStringList());
}

void TestUnknownRegisters::recipeItemHoldsUpEverything_data()
{
    QTest::addColumn<int>("direction");
    QTest::newRow("write") << static_cast<int>(Recipe::Write);
    QTest::newRow("read") << static_cast<int>(Recipe::Read);
}

void TestUnknownRegisters::recipeItemHoldsUpEverything()
{
    QFETCH(int, direction);
    const Recipe recipe = static_cast<Recipe>(direction);
    HostLoop loop;
    loop.addStation(1);
    loop.monitor({key(1, "D_W", 100)});
    QVERIFY(loop.settle());
    QCOMPARE(loop.setRecipe({recipeItem(1, "X_W", 5, 1, 0), recipeItem(1, "D_W", 7, 1, 1)}), 2);
    loop.request(recipe);
    loop.write(1, "D_W", 100, {1});
    QCOMPARE(loop.turns(4), (Values{-1, -1, -1, -1}));
    QVERIFY(loop.isRequested(recipe));
    loop.request(recipe, false);
    QVERIFY(loop.settle());
    QCOMPARE(loop.inPlc(1, "D_W", 100), Values{1});
    QCOMPARE(loop.differences(), QStringList());
}

QTEST_APPLESS_MAIN(TestUnknownRegisters)
#include "test_unknown_registers.moc"
