#include <host/driver/driver.h>
#include <host/recipe/recipe_layout.h>

#include <QtTest>

using namespace cnet;

class TestRecipeLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void laysOut_data();
    void laysOut();

private:
    Driver m_driver;
};

void TestRecipeLayout::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

void TestRecipeLayout::laysOut_data()
{
    QTest::addColumn<QString>("items");
    QTest::addColumn<QString>("laidOut"); // "station/register:start*count@offset"
    QTest::addColumn<QString>("firstWords");
    const auto row = [](const char *name, const char *items, const char *laidOut,
                        const char *firstWords) {
        QTest::newRow(name) << QString::fromLatin1(items) << QString::fromLatin1(laidOut)
                            << QString::fromLatin1(firstWords);
    };
    row("one", "D_W:5*3", "1/D_W:5*3@0", "0");
    row("in order", "D_W:5*3 D_W:9*2", "1/D_W:5*3@0 1/D_W:9*2@3", "0 3");
    row("out of order", "D_W:9*2 D_W:5*3", "1/D_W:5*3@0 1/D_W:9*2@3", "3 0");
    row("by station first", "2/D_W:1 1/D_W:9", "1/D_W:9*1@0 2/D_W:1*1@1", "1 0");
    row("by the driver's order of registers", "M_W:1 C_W:1 D_W:9",
        "1/D_W:9*1@0 1/C_W:1*1@1 1/M_W:1*1@2", "2 1 0");
    row("as long as a block", "D_W:0*10", "1/D_W:0*10@0", "0");
    row("longer than a block", "D_W:0*21", "1/D_W:0*10@0 1/D_W:10*10@10 1/D_W:20*1@20", "0");
    row("those that touch fill blocks together", "D_W:0*3 D_W:3*9",
        "1/D_W:0*3@0 1/D_W:3*7@3 1/D_W:10*2@10", "0 3");
    row("those that touch and are full", "D_W:0*10 D_W:10*1", "1/D_W:0*10@0 1/D_W:10*1@10", "0 10");
    row("those that do not touch", "D_W:0*3 D_W:4*9", "1/D_W:0*3@0 1/D_W:4*9@3", "0 3");
    row("the same addresses of another register", "D_W:0*3 M_W:3*9", "1/D_W:0*3@0 1/M_W:3*9@3",
        "0 3");
    row("the same addresses of another station", "1/D_W:0*3 2/D_W:3*9", "1/D_W:0*3@0 2/D_W:3*9@3",
        "0 3");
}

void TestRecipeLayout::laysOut()
{
    QFETCH(QString, items);
    QVector<RecipeItem> recipe;
    QString error;
    for (const QString &text : items.split(QLatin1Char(' '))) {
        const auto item = parseItem(text, 1, m_driver.registers(), error);
        QVERIFY2(item.has_value(), qPrintable(error));
        recipe.append({*item, {}, 0});
    }
    const RecipeLayout layout = layOutRecipe(recipe, m_driver.registers(), 3, 10);
    QStringList laidOut;
    int words = 0;
    for (const _RCP_VAR_PRO &item : layout.items) {
        QCOMPARE(item.deviceNo, 3);
        words += item.count;
        laidOut.append(QString::fromLatin1("%1/%2:%3*%4@%5")
                           .arg(item.stationNo)
                           .arg(item.regName)
                           .arg(item.startAddr)
                           .arg(item.count)
                           .arg(item.bufOffset));
    }
    QStringList firstWords;
    for (const int word : layout.firstWord) {
        firstWords.append(QString::number(word));
    }
    QTEST(laidOut.join(QLatin1Char(' ')), "laidOut");
    QTEST(firstWords.join(QLatin1Char(' ')), "firstWords");
    QCOMPARE(layout.words, words);
}

QTEST_APPLESS_MAIN(TestRecipeLayout)
#include "test_recipe_layout.moc"
