#include "host/support/sim_panel.h"
#include "host/support/test_registers.h"

#include "host/recipe/recipe_transfer.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace cnet;

class TestRecipeTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void writes();
    void reads();
    void failsAtABlock_data();
    void failsAtABlock();
    void asksForNothingWithoutItems();
    void clearsAStaleRequest();
    void beginsAtTheFirstBlockAfterACutOff_data();
    void beginsAtTheFirstBlockAfterACutOff();

private:
    RecipeLayout layout(int secondStation = 1) const;
    void fill(RecipeTransfer &transfer, int words);
    void runToEnd(RecipeTransfer &transfer, RecipeDirection direction, const RecipeLayout &recipe);

    DriverLibrary m_driver;
    RegisterCatalog m_registers;
    std::unique_ptr<SimPanel> m_panel;
};

void TestRecipeTransfer::initTestCase()
{
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE)), qPrintable(m_driver.errorText()));
    m_registers = RegisterCatalog(m_driver.functions());
}

void TestRecipeTransfer::init()
{
    DriverProperties properties;
    properties.blockWords = 4;
    m_panel = std::make_unique<SimPanel>(m_driver.functions(), properties);
}

void TestRecipeTransfer::cleanup()
{
    m_panel.reset();
}

// Three blocks: D_W 10-13, D_W 14-15, and M_W 3.
RecipeLayout TestRecipeTransfer::layout(int secondStation) const
{
    return layOutRecipe({{testItem("M_W", 3, 1, secondStation), {}, 0},
                         {testItem("D_W", 12, 4), {}, 0},
                         {testItem("D_W", 10, 2), {}, 0}},
                        m_registers, 0, 4);
}

void TestRecipeTransfer::fill(RecipeTransfer &transfer, int words)
{
    for (int i = 0; i < words; ++i) {
        transfer.area().setWord(i, static_cast<quint16>(0x100 + i));
    }
}

void TestRecipeTransfer::runToEnd(RecipeTransfer &transfer, RecipeDirection direction,
                                  const RecipeLayout &recipe)
{
    QSignalSpy ended(&transfer, &RecipeTransfer::ended);
    QVERIFY(transfer.start(recipe, direction));
    m_panel->open();
    QTRY_COMPARE(ended.size(), 1);
    QVERIFY(!transfer.area().isRequested(direction));
}

void TestRecipeTransfer::writes()
{
    RecipeTransfer transfer(m_panel->driver, m_panel->exchange);
    QSignalSpy advanced(&transfer, &RecipeTransfer::advanced);
    const RecipeLayout recipe = layout();
    fill(transfer, recipe.words);
    runToEnd(transfer, RecipeDirection::Write, recipe);
    QCOMPARE(m_panel->frames, (QStringList{QLatin1String("01wSB08%DW00010040100010101020103"),
                                           QLatin1String("01wSB08%DW000140201040105"),
                                           QLatin1String("01wSB08%MW00003010106")}));
    QCOMPARE(transfer.progress().failure, QString());
    QCOMPARE(transfer.progress().blocks, 3);
    QCOMPARE(transfer.progress().words, 7);
    QCOMPARE(transfer.progress().total, 7);
    QCOMPARE(advanced.size(), 3);
}

void TestRecipeTransfer::reads()
{
    for (int i = 0; i < 6; ++i) {
        m_panel->memory().setWord('D', 10 + i, static_cast<quint16>(0xFF00 + i));
    }
    m_panel->memory().setWord('M', 3, 9);
    RecipeTransfer transfer(m_panel->driver, m_panel->exchange);
    runToEnd(transfer, RecipeDirection::Read, layout());
    QCOMPARE(transfer.progress().failure, QString());
    QCOMPARE(transfer.progress().blocks, 3);
    QVector<quint16> words;
    for (int i = 0; i < 7; ++i) {
        words.append(transfer.area().word(i));
    }
    QCOMPARE(words, (QVector<quint16>{0xFF00, 0xFF01, 0xFF02, 0xFF03, 0xFF04, 0xFF05, 9}));
}

void TestRecipeTransfer::failsAtABlock_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<int>("fault");
    QTest::addColumn<QString>("failure");
    for (const auto direction : {RecipeDirection::Write, RecipeDirection::Read}) {
        const char *name = direction == RecipeDirection::Write ? "write" : "read";
        QTest::addRow("%s, silence", name)
            << static_cast<int>(direction) << static_cast<int>(plc::FaultKind::Silence)
            << "block 3 (2/M_W:3*1): no answer";
        QTest::addRow("%s, refused", name)
            << static_cast<int>(direction) << static_cast<int>(plc::FaultKind::Refuse)
            << "block 3 (2/M_W:3*1): refused: 1132";
    }
}

void TestRecipeTransfer::failsAtABlock()
{
    QFETCH(int, direction);
    QFETCH(int, fault);
    QFETCH(QString, failure);
    plc::Fault strikes = plc::usualFault(static_cast<plc::FaultKind>(fault));
    strikes.times = 3;
    m_panel->faults(2).add(strikes);
    const auto asked = static_cast<RecipeDirection>(direction);
    RecipeTransfer transfer(m_panel->driver, m_panel->exchange);
    const RecipeLayout recipe = layout(2);
    fill(transfer, recipe.words);
    runToEnd(transfer, asked, recipe);
    QVERIFY2(transfer.progress().failure.startsWith(failure),
             qPrintable(transfer.progress().failure));
    QCOMPARE(transfer.progress().blocks, 2);
    QCOMPARE(transfer.progress().words, 6);
    // The next transfer begins at the first block again.
    runToEnd(transfer, asked, recipe);
    QCOMPARE(transfer.progress().failure, QString());
    QCOMPARE(transfer.progress().blocks, 3);
}

void TestRecipeTransfer::asksForNothingWithoutItems()
{
    RecipeTransfer transfer(m_panel->driver, m_panel->exchange);
    QVERIFY(!transfer.start(RecipeLayout(), RecipeDirection::Write));
    QVERIFY(!transfer.area().isRequested(RecipeDirection::Write));
    // Items of another device are none of this one's.
    RecipeLayout other = layout();
    for (_RCP_VAR_PRO &item : other.items) {
        item.deviceNo = 5;
    }
    QVERIFY(!transfer.start(other, RecipeDirection::Read));
    QVERIFY(!transfer.area().isRequested(RecipeDirection::Read));
}

void TestRecipeTransfer::clearsAStaleRequest()
{
    RecipeTransfer transfer(m_panel->driver, m_panel->exchange);
    transfer.area().request(RecipeDirection::Write);
    runToEnd(transfer, RecipeDirection::Read, layout());
    QCOMPARE(m_panel->frames.filter(QLatin1String("wSB")), QStringList());
    QCOMPARE(transfer.progress().blocks, 3);
}

void TestRecipeTransfer::beginsAtTheFirstBlockAfterACutOff_data()
{
    QTest::addColumn<int>("blocks"); // transferred before
    QTest::newRow("at the first block") << 0;
    QTest::newRow("at the second block") << 1;
    QTest::newRow("at the third block") << 2;
}

void TestRecipeTransfer::beginsAtTheFirstBlockAfterACutOff()
{
    QFETCH(int, blocks);
    {
        RecipeTransfer transfer(m_panel->driver, m_panel->exchange);
        connect(&transfer, &RecipeTransfer::advanced, this, [&] {
            if (transfer.progress().blocks == blocks) {
                m_panel->exchange.stop();
            }
        });
        QVERIFY(transfer.start(layout(), RecipeDirection::Write));
        if (blocks > 0) {
            m_panel->open();
        }
        QTRY_COMPARE(transfer.progress().blocks, blocks);
        transfer.cutOff(QLatin1String("enough"));
        QCOMPARE(transfer.progress().failure,
                 QString::fromLatin1("block %1: enough").arg(blocks + 1));
        QVERIFY(!transfer.area().isRequested(RecipeDirection::Write));
    }
    // Another session, as the panel's next command would have.
    cleanup();
    init();
    RecipeTransfer transfer(m_panel->driver, m_panel->exchange);
    const RecipeLayout recipe = layout();
    fill(transfer, recipe.words);
    runToEnd(transfer, RecipeDirection::Write, recipe);
    QCOMPARE(transfer.progress().blocks, 3);
    QCOMPARE(m_panel->frames.value(0), QLatin1String("01wSB08%DW00010040100010101020103"));
}

QTEST_GUILESS_MAIN(TestRecipeTransfer)
#include "test_recipe_transfer.moc"
