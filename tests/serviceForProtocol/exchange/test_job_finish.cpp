#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/job_finish.h"
#include "support/exchange_helpers.h"
#include "support/recipe_helpers.h"

static QString listsText()
{
    return listText(driver.pendingWrites) + latin(" | ") + listText(driver.conditionReads) +
           latin(" | ") + listText(readsInTurn());
}

static const char *const all =
    "1 D_W 1 x1, 1 D_W 2 x1 | 1 K_W 1 x1, 1 K_W 2 x1 | 1 M_W 1 x1, 1 M_W 2 x1";
static const char *const written = "1 D_W 2 x1 | 1 K_W 1 x1, 1 K_W 2 x1 | 1 M_W 1 x1, 1 M_W 2 x1";
static const char *const rotated =
    "1 D_W 1 x1, 1 D_W 2 x1 | 1 K_W 1 x1, 1 K_W 2 x1 | 1 M_W 2 x1, 1 M_W 1 x1";

static const struct
{
    const char *what;
    int sendState, lastFailed;
    const char *lists;
} kOnlyItsOwnListIsTouched[] = {
    {"idle", 0, 0, all},
    {"idle, failed", 0, 1, all},
    {"handshake", 1, 0, all},
    {"handshake, failed", 1, 1, all},
    {"write", 2, 0, written},
    {"write, failed", 2, 1, written},
    {"condition read", 3, 0, "1 D_W 1 x1, 1 D_W 2 x1 | 1 K_W 2 x1 | 1 M_W 1 x1, 1 M_W 2 x1"},
    {"condition read, failed: all of them go", 3, 1,
     "1 D_W 1 x1, 1 D_W 2 x1 |  | 1 M_W 1 x1, 1 M_W 2 x1"},
    {"cyclic read", 4, 0, rotated},
    {"cyclic read, failed: moves on all the same", 4, 1, rotated},
    {"recipe write", 5, 0, all},
    {"recipe write, failed", 5, 1, all},
    {"recipe read", 6, 0, all},
    {"recipe read, failed", 6, 1, all},
    {"unknown", 7, 0, all},
    {"negative", -1, 1, all},
};

static const Case<int, const char *> kCyclicReadsRotate[] = {
    {"one stays", 1, "1 M_W 1 x1"},
    {"two", 2, "1 M_W 2 x1, 1 M_W 1 x1"},
    {"three", 3, "1 M_W 2 x1, 1 M_W 3 x1, 1 M_W 1 x1"},
};

static const struct
{
    const char *what;
    QByteArray differs; // the head from the read that the host waits for
    int lastFailed;
    const char *calls;
} kConditionReadSignals[] = {
    {"done", QByteArray(), 0, "-1 -1 -1 0"},
    {"failed", QByteArray(), 1, "-1 -1 -1 -1"},
    {"another station", "station", 0, ""},
    {"another register", "register", 0, ""},
    {"another address", "address", 0, ""},
    {"another count", "count", 0, ""},
    {"another, failed", "address", 1, ""},
    {"another tag is the same read", "tag", 0, "-1 -1 -1 0"},
};

static const struct
{
    const char *what;
    int sendState, lastFailed;
    int rcpIndex; // of three blocks
    int indexAfter;
    QByteArray bytesAfter; // write, read
} kRecipeBlock[] = {
    // clang-format off
    {"write, first", 5, 0, 0, 1, "0101"},
    {"write, second", 5, 0, 1, 2, "0101"},
    {"write, last", 5, 0, 2, 0, "0001"},
    {"write, first failed", 5, 1, 0, 0, "0001"},
    {"write, second failed", 5, 1, 1, 0, "0001"},
    {"write, beyond the last", 5, 0, 7, 0, "0001"},
    {"read, first", 6, 0, 0, 1, "0101"},
    {"read, last", 6, 0, 2, 0, "0100"},
    {"read, second failed", 6, 1, 1, 0, "0100"},
    {"any other job", 4, 1, 1, 1, "0101"},
    // clang-format on
};

class TestJobFinish : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyItsOwnListIsTouched_data() { addRows(kOnlyItsOwnListIsTouched); }
    void onlyItsOwnListIsTouched()
    {
        const auto &row = currentRow(kOnlyItsOwnListIsTouched);
        DriverFixture fixture;
        queueWrites(1, 2);
        queueReads(driver.conditionReads, "K_W", 1, 2);
        queueReads(driver.cyclicReads, "M_W", 1, 2);
        driver.sendState = row.sendState;
        driver.lastFailed = row.lastFailed;
        dealListWhenFinish();
        QCOMPARE(listsText(), latin(row.lists));
        QCOMPARE(driver.sendState, row.sendState);
        QCOMPARE(callsText(), QString());
    }

    void emptyLists_data() { addRows(kOnlyItsOwnListIsTouched); }
    void emptyLists()
    {
        const auto &row = currentRow(kOnlyItsOwnListIsTouched);
        DriverFixture fixture;
        driver.sendState = row.sendState;
        driver.lastFailed = row.lastFailed;
        dealListWhenFinish();
        QCOMPARE(listsText(), latin(" |  | "));
        QCOMPARE(driver.rcpIndex, 0);
        QCOMPARE(callsText(), QString());
    }

    void cyclicReadsRotate_data() { addRows(kCyclicReadsRotate); }
    void cyclicReadsRotate()
    {
        const auto &row = currentRow(kCyclicReadsRotate);
        DriverFixture fixture;
        queueReads(driver.cyclicReads, "M_W", 1, row.given);
        driver.sendState = kJobCyclicRead;
        dealListWhenFinish();
        QCOMPARE(listText(readsInTurn()), latin(row.expected));
    }

    void conditionReadSignals_data() { addRows(kConditionReadSignals); }
    void conditionReadSignals()
    {
        const auto &row = currentRow(kConditionReadSignals);
        DriverFixture fixture;
        driver.lastVar =
            makeItem(row.differs == "station" ? 2 : 1, row.differs == "register" ? "M_W" : "D_W",
                     row.differs == "address" ? 6 : 5, row.differs == "count" ? 2 : 1);
        driver.lastVar.opKind = row.differs == "tag" ? 9 : 0;
        queueReads(driver.conditionReads, "D_W", 5, 2);
        driver.sendState = kJobConditionRead;
        driver.lastFailed = row.lastFailed;
        dealListWhenFinish();
        QCOMPARE(callsText(), latin(row.calls));
        QCOMPARE(listText(driver.conditionReads),
                 row.lastFailed != 0 ? QString() : latin("1 D_W 6 x1"));

        intf_setAddrValueChangeCallBack(nullptr);
        queueReads(driver.conditionReads, "D_W", 5, 1);
        dealListWhenFinish();
        QCOMPARE(callsText(), latin(row.calls));
    }

    void askingAgainFromTheSignal()
    {
        DriverFixture fixture;
        askOnce("D_W", 5);
        DriverFixture::hook() = [] { askOnce("D_W", 5); };
        driver.sendState = kJobConditionRead;
        dealListWhenFinish();
        QCOMPARE(callsText(), latin("-1 -1 -1 0"));
        QCOMPARE(listText(driver.conditionReads), latin("1 D_W 5 x1"));
        driver.lastFailed = 1;
        dealListWhenFinish();
        QCOMPARE(callsText(), latin("-1 -1 -1 0, -1 -1 -1 -1"));
        QCOMPARE(listText(driver.conditionReads), QString());
    }

    void recipeBlock_data() { addRows(kRecipeBlock); }
    void recipeBlock()
    {
        const auto &row = currentRow(kRecipeBlock);
        DriverFixture fixture;
        setRecipeItems("1 D_W 1 1 0; 1 D_W 3 1 1; 1 D_W 5 1 2");
        driver.shmBase[kRecipeWriteByte] = kRecipeRequested;
        driver.shmBase[kRecipeReadByte] = kRecipeRequested;
        driver.sendState = row.sendState;
        driver.lastFailed = row.lastFailed;
        driver.rcpIndex = row.rcpIndex;
        dealListWhenFinish();
        QCOMPARE(driver.rcpIndex, row.indexAfter);
        QCOMPARE(hexOf(driver.shmBase + kRecipeWriteByte, 2), row.bytesAfter);
    }

    void locksAreFree()
    {
        DriverFixture fixture;
        for (int state = 0; state < 7; ++state) {
            driver.sendState = state;
            dealListWhenFinish();
            QVERIFY(isFree(driver.listMutex));
            QVERIFY(isFree(fixture.shmLock));
        }
    }
};

QTEST_APPLESS_MAIN(TestJobFinish)
#include "test_job_finish.moc"
