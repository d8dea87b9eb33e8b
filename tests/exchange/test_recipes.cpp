#include "exchange/recipe_loop.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

using plc::FaultKind;

class TestRecipes : public RecipeTest
{
    Q_OBJECT

private Q_SLOTS:
    void write()
    {
        QVERIFY(!loop.turn());
        loop.request(Recipe::Write);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(loop.isRequested(Recipe::Write));
            QCOMPARE(loop.turns(1), Values{1});
        }
        QVERIFY(!loop.isRequested(Recipe::Write));
        QVERIFY(!loop.turn());
        QCOMPARE(loop.requests(), writes());
        QCOMPARE(loop.plcChanges(), texts({"D_W 10=1", "D_W 11=2", "D_W 12=3", "D_W 13=4",
                                           "D_W 14=5", "D_W 20=6", "D_W 21=7"}));
        QCOMPARE(loop.plcChanges(2), texts({"M_W 5=8"}));
        QCOMPARE(HostLoop::calls(), QStringList());
    }

    void read()
    {
        loop.fillPlcs();
        loop.request(Recipe::Read);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(loop.isRequested(Recipe::Read));
            QCOMPARE(loop.turns(1), Values{1});
        }
        QVERIFY(!loop.isRequested(Recipe::Read));
        QVERIFY(!loop.turn());
        QCOMPARE(loop.requests(), reads());
        QCOMPARE(loop.recipeWords(0, 9), (Values{11, 12, 13, 14, 15, 16, 17, 18, 9}));
        QCOMPARE(HostLoop::calls(), allReported());
        QCOMPARE(loop.plcChanges(), QStringList());
        // Recipe values are not what the screens show.
        QCOMPARE(loop.inPanel("D_W", 10), Values{0});
    }

    void thereAndBack()
    {
        loop.monitor({key("D_W", 10, 12), key("M_W", 5, 1, 2)});
        loop.request(Recipe::Write);
        QCOMPARE(loop.differencesAtRest(), QStringList());
        loop.setRecipeWords(0, {0, 0, 0, 0, 0, 0, 0, 0});
        loop.request(Recipe::Read);
        QVERIFY(loop.settle());
        QCOMPARE(loop.recipeWords(0, 9), (Values{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }

    void writeFailsInTheMiddle_data()
    {
        // good: blocks taken before one is refused
        const Columns<int, int> row("good", "changes");
        row("first block", 0, 0);
        row("second block", 1, 5);
    }

    void writeFailsInTheMiddle()
    {
        QFETCH(int, good);
        QFETCH(int, changes);
        loop.request(Recipe::Write);
        loop.turns(good);
        loop.refuse(3);
        QCOMPARE(loop.turns(2), (Values{8, 8}));
        QVERIFY(loop.isRequested(Recipe::Write));
        QCOMPARE(loop.turns(2), (Values{2, -1}));
        QVERIFY(!loop.isRequested(Recipe::Write));
        QCOMPARE(loop.plcChanges().size(), changes);
        QCOMPARE(loop.plcChanges(2), QStringList());

        // The next request begins with the first block.
        loop.forget();
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(4), (Values{1, 1, 1, -1}));
        QCOMPARE(loop.requests(), writes());
        QCOMPARE(loop.inPlc("D_W", 10, 5) + loop.inPlc("D_W", 20, 2) + loop.inPlc("M_W", 5, 1, 2),
                 (Values{1, 2, 3, 4, 5, 6, 7, 8}));
    }

    void readFailsInTheMiddle_data()
    {
        const Columns<int, Values> row("good", "buffer");
        row("first block", 0, {1, 2, 3, 4, 5, 6, 7, 8, 9});
        row("second block", 1, {11, 12, 13, 14, 15, 6, 7, 8, 9});
    }

    void readFailsInTheMiddle()
    {
        QFETCH(int, good);
        loop.fillPlcs();
        loop.request(Recipe::Read);
        loop.turns(good);
        loop.unit().faults.add({FaultKind::WrongCheck, 0, 0, 3});
        QCOMPARE(loop.turns(4), (Values{8, 8, 2, -1}));
        QVERIFY(!loop.isRequested(Recipe::Read));
        QTEST(loop.recipeWords(0, 9), "buffer");
        QCOMPARE(HostLoop::calls(), allReported().mid(0, 5 * good));

        loop.forget();
        loop.request(Recipe::Read);
        QCOMPARE(loop.turns(4), (Values{1, 1, 1, -1}));
        QCOMPARE(loop.requests(), reads());
        QCOMPARE(loop.recipeWords(0, 9), (Values{11, 12, 13, 14, 15, 16, 17, 18, 9}));
    }

    void resendsWithinATransfer()
    {
        loop.fillPlcs();
        loop.unit().faults.add({FaultKind::Silence, 0, 0, 2});
        loop.unit(2).faults.add({FaultKind::WrongCheck, 0, 0, 2});
        loop.request(Recipe::Read);
        QCOMPARE(loop.turns(8), (Values{8, 8, 1, 1, 8, 8, 1, -1}));
        QCOMPARE(loop.recipeWords(0, 9), (Values{11, 12, 13, 14, 15, 16, 17, 18, 9}));
        QCOMPARE(HostLoop::calls(), allReported());
    }

    // The whole write goes first, and what is read then is what was written.
    void bothAtOnce()
    {
        loop.fillPlcs();
        loop.request(Recipe::Read);
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(3), (Values{1, 1, 1}));
        QVERIFY(!loop.isRequested(Recipe::Write));
        QVERIFY(loop.isRequested(Recipe::Read));
        QCOMPARE(loop.turns(4), (Values{1, 1, 1, -1}));
        QCOMPARE(loop.requests(), writes() + reads());
        QCOMPARE(loop.recipeWords(0, 9), (Values{1, 2, 3, 4, 5, 6, 7, 8, 9}));
        QCOMPARE(loop.inPlc("D_W", 9, 7), (Values{90, 1, 2, 3, 4, 5, 91}));

        // A write that fails leaves the read to go on from the beginning.
        renew(loop);
        loop.fillPlcs();
        loop.request(Recipe::Read);
        loop.request(Recipe::Write);
        loop.turns(1);
        loop.unit(1).faults.add({FaultKind::Silence, 0, 0, 3});
        QCOMPARE(loop.turns(7), (Values{8, 8, 2, 1, 1, 1, -1}));
        QCOMPARE(loop.recipeWords(0, 9), (Values{1, 2, 3, 4, 5, 16, 17, 18, 9}));
    }

    // Both directions share the number of the block: a write asked for in the middle of a read
    // starts in the middle, and the read then starts anew.
    void writeAskedForDuringARead()
    {
        loop.fillPlcs();
        loop.request(Recipe::Read);
        QCOMPARE(loop.turns(1), Values{1});
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(6), (Values{1, 1, 1, 1, 1, -1}));
        QCOMPARE(loop.requests(), reads().mid(0, 1) + writes().mid(1) + reads());
        QCOMPARE(loop.recipeWords(0, 9), (Values{11, 12, 13, 14, 15, 6, 7, 8, 9}));
    }

    // A request that the host takes back ends the transfer where it is; the next one goes on from
    // there.
    void withdrawn()
    {
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(1), Values{1});
        loop.request(Recipe::Write, false);
        QCOMPARE(loop.turns(2), (Values{-1, -1}));
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(3), (Values{1, 1, -1}));
        QCOMPARE(loop.requests(), writes());
    }

    void goesBeforeEverything()
    {
        loop.monitor({key("C_W", 0)});
        loop.write("C_W", 1, {1});
        loop.readOnce("C_W", 2, 1);
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(6), (Values{1, 1, 1, 1, 1, 1}));
        QCOMPARE(loop.requests(), writes() + texts({"01wSB08%CW00001010001", "01rSB08%CW0000201",
                                                    "01rSB08%CW0000001"}));
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }

    void waitsForThePairInFlight()
    {
        loop.write("D_bit", 1600, {1});
        QCOMPARE(loop.turns(1), Values{1});
        loop.request(Recipe::Write);
        QCOMPARE(loop.turns(5), (Values{1, 1, 1, 1, -1}));
        QCOMPARE(loop.requests(), texts({"01rSB08%DW0010001", "01wSB08%DW00100010001"}) + writes());
        QCOMPARE(loop.differences(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestRecipes)
#include "test_recipes.moc"
