#include "host/support/test_registers.h"

#include "panel/runs/recipe_run.h"
#include "panel/system/exit_code.h"

#include <QRegularExpression>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestRecipeRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { m_said.clear(); }
    void writes();
    void reads();
    void fails();
    void noLink();

private:
    int run(const QVector<RecipeItem> &items, RecipeDirection direction,
            Verify verify = Verify::Yes);

    Driver m_driver;
    QStringList m_said;
    Messages m_messages;
    LinkSettings m_link;
    QVector<QVector<quint16>> m_values;
};

void TestRecipeRun::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
    m_link.session.line.baud = 4000000;
}

int TestRecipeRun::run(const QVector<RecipeItem> &items, RecipeDirection direction, Verify verify)
{
    m_values.clear();
    m_messages.setSink([this](const QString &line) { m_said.append(line); });
    RecipeRun recipe;
    recipe.items = items;
    recipe.direction = direction;
    recipe.verify = verify;
    return runRecipe(m_driver, m_link, recipe, m_messages, m_values);
}

void TestRecipeRun::writes()
{
    // 59 words do not fit one write, though 60 fit a read.
    const QVector<RecipeItem> items{{testItem("D_W", 5000, 59), QVector<quint16>(59, 7), 2}};
    for (const Verify verify : {Verify::Yes, Verify::No}) {
        m_said.clear();
        QCOMPARE(run(items, RecipeDirection::Write, verify), static_cast<int>(kFine));
        const QRegularExpression end(
            QString::fromLatin1("\\Acnet-panel: recipe write: 2 blocks, 59 words%1, "
                                "\\d+\\.\\d\\d s\\z")
                .arg(QLatin1String(verify == Verify::Yes ? ", verified" : "")));
        QVERIFY2(end.match(m_said.value(0)).hasMatch(), qPrintable(m_said.join(QLatin1Char('\n'))));
    }
}

void TestRecipeRun::reads()
{
    const QVector<RecipeItem> items{{testItem("M_W", 200, 1), {}, 2},
                                    {testItem("D_W", 5000, 60), {}, 3}};
    QCOMPARE(run(items, RecipeDirection::Read), static_cast<int>(kFine));
    QVERIFY(
        m_said.value(0).startsWith(QLatin1String("cnet-panel: recipe read: 2 blocks, 61 words")));
    QCOMPARE(m_values, (QVector<QVector<quint16>>{{0}, QVector<quint16>(60, 0)}));
}

void TestRecipeRun::fails()
{
    const QVector<RecipeItem> items{{testItem("D_W", 9999, 1), {1}, 2},
                                    {testItem("M_W", 256, 1), {1}, 3}};
    QCOMPARE(run(items, RecipeDirection::Write), static_cast<int>(kDeviceFailed));
    QVERIFY2(m_said.last().startsWith(QLatin1String(
                 "cnet-panel: recipe write failed at block 2 (1/M_W:256*1): refused")),
             qPrintable(m_said.last()));
    QVERIFY(m_said.last().endsWith(QLatin1String("1 of 2 words had been transferred")));
    QVERIFY(m_values.isEmpty());
}

void TestRecipeRun::noLink()
{
    QString error;
    m_link.link = parseLinkAddress(QLatin1String("serial:/nowhere/tty"), error);
    QVERIFY(m_link.link.has_value());
    const int exitCode = run({{testItem("D_W", 1, 1), {1}, 2}}, RecipeDirection::Write);
    m_link.link.reset();
    QCOMPARE(exitCode, static_cast<int>(kNoLink));
    QCOMPARE(m_said.size(), 1);
    // And the next transfer is not hurt by it.
    QCOMPARE(run({{testItem("D_W", 1, 1), {1}, 2}}, RecipeDirection::Write),
             static_cast<int>(kFine));
}

QTEST_GUILESS_MAIN(TestRecipeRun)
#include "test_recipe_run.moc"
