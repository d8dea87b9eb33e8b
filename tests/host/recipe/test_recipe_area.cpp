#include <host/recipe/recipe_area.h>

#include <QtTest>

using namespace cnet;

class TestRecipeArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requests_data();
    void requests();
    void words();
};

void TestRecipeArea::requests_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<int>("place"); // in the shared block
    QTest::newRow("write") << static_cast<int>(RecipeDirection::Write)
                           << static_cast<int>(kRecipeWriteByte);
    QTest::newRow("read") << static_cast<int>(RecipeDirection::Read)
                          << static_cast<int>(kRecipeReadByte);
}

void TestRecipeArea::requests()
{
    QFETCH(int, direction);
    QFETCH(int, place);
    const auto asked = static_cast<RecipeDirection>(direction);
    DriverCore core;
    RecipeArea area(core);
    QVERIFY(!area.isRequested(asked));
    area.request(asked);
    QVERIFY(area.isRequested(asked));
    QCOMPARE(static_cast<int>(core.sharedBlock()[place]), 1);
    QCOMPARE(core.sharedBlock()[kRecipeWriteByte] + core.sharedBlock()[kRecipeReadByte], 1);
    // The driver withdraws it with a 0.
    core.sharedBlock()[place] = 0;
    QVERIFY(!area.isRequested(asked));
    area.request(RecipeDirection::Write);
    area.request(RecipeDirection::Read);
    area.clearRequests();
    QVERIFY(!area.isRequested(RecipeDirection::Write));
    QVERIFY(!area.isRequested(RecipeDirection::Read));
    // The lock is free again.
    QVERIFY(core.sharedBlockLock().tryLock());
    core.sharedBlockLock().unlock();
}

void TestRecipeArea::words()
{
    DriverCore core;
    RecipeArea area(core);
    area.setWord(3, 0x1234);
    QCOMPARE(static_cast<int>(core.recipeBuffer()[6]), 0x34);
    QCOMPARE(static_cast<int>(core.recipeBuffer()[7]), 0x12);
    QCOMPARE(area.word(3), quint16(0x1234));
    area.setWord(DriverCore::kRecipeWords - 1, 7);
    QCOMPARE(area.word(DriverCore::kRecipeWords - 1), quint16(7));
    for (const int beyond : {-1, DriverCore::kRecipeWords}) {
        area.setWord(beyond, 9);
        QCOMPARE(area.word(beyond), quint16(0));
    }
}

QTEST_APPLESS_MAIN(TestRecipeArea)
#include "test_recipe_area.moc"
