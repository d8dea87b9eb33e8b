#include <QtTest/QtTest>

#include "waiting_jobs.h"

/// Which job comes when: priorities, fairness, rotation.

static const struct
{
    const char *what;
    int waiting, sendState;
} kFirstJob[] = {
    {"nothing waits", 0, 0},
    {"everything waits: handshake", 63, 1},
    {"handshake alone", static_cast<int>(kHandshake), 1},
    {"then the recipe write", 62, 5},
    {"then the recipe read", 60, 6},
    {"then writes", 56, 2},
    {"then condition reads", 48, 3},
    {"then cyclic reads", 32, 4},
};

static const struct
{
    const char *what;
    int writes, conditionReads, cyclicReads;
    const char *jobs;
} kOrderOfJobs[] = {
    {"12 writes and cyclic reads: ten, one read, two", 12, 0, 1,
     "W D_W 1, W D_W 2, W D_W 3, W D_W 4, W D_W 5, W D_W 6, W D_W 7, W D_W 8, "
     "W D_W 9, W D_W 10, R M_W 1, W D_W 11, W D_W 12, R M_W 1"},
    {"12 writes alone: ten, a pause, two", 12, 0, 0,
     "W D_W 1, W D_W 2, W D_W 3, W D_W 4, W D_W 5, W D_W 6, W D_W 7, W D_W 8, "
     "W D_W 9, W D_W 10, idle, W D_W 11, W D_W 12, idle"},
    {"three condition reads between cyclic reads", 0, 5, 1,
     "C K_W 1, C K_W 2, C K_W 3, R M_W 1, C K_W 4, C K_W 5, R M_W 1"},
    {"three condition reads alone, a pause", 0, 4, 0,
     "C K_W 1, C K_W 2, C K_W 3, idle, C K_W 4, idle"},
    {"two writes leave room for one condition read", 2, 2, 1,
     "W D_W 1, W D_W 2, C K_W 1, R M_W 1, C K_W 2, R M_W 1"},
    {"after three writes a condition read waits for a cyclic read", 3, 1, 1,
     "W D_W 1, W D_W 2, W D_W 3, R M_W 1, C K_W 1, R M_W 1"},
    {"after three writes a condition read waits for a pause", 3, 1, 0,
     "W D_W 1, W D_W 2, W D_W 3, idle, C K_W 1, idle"},
    {"one block is read again and again", 0, 0, 1, "R M_W 1, R M_W 1, R M_W 1"},
    {"three blocks in turn", 0, 0, 3, "R M_W 1, R M_W 2, R M_W 3, R M_W 1, R M_W 2"},
    {"nothing", 0, 0, 0, "idle, idle"},
};

static const Given<QByteArray> kNoRecipeRequest[] = {
    {"no block", "block"},
    {"no mutex", "mutex"},
    {"no buffer", "buffer"},
    {"bytes other than 1", "one"},
};

class TestJobOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstJob_data() { addRows(kFirstJob); }
    void firstJob()
    {
        const auto &row = currentRow(kFirstJob);
        DriverFixture fixture;
        setRecipe();
        setWaiting(row.waiting);
        driver.sendState = 0;
        FRAME_PRO frame = FRAME_PRO();
        QCOMPARE(intf_getSendFrame(frame), row.sendState == 0 ? 0 : 1);
        QCOMPARE(driver.sendState, row.sendState);
        QVERIFY(isFree(fixture.shmLock));
        QVERIFY(isFree(driver.listMutex));
    }

    void orderOfJobs_data() { addRows(kOrderOfJobs); }
    void orderOfJobs()
    {
        const auto &row = currentRow(kOrderOfJobs);
        DriverFixture fixture;
        queueWrites(1, row.writes);
        queueReads(driver.conditionReads, "K_W", 1, row.conditionReads);
        queueReads(driver.cyclicReads, "M_W", 1, row.cyclicReads);
        QCOMPARE(takeTurns(sizeOf(latin(row.jobs).split(QLatin1String(", ")))), latin(row.jobs));
    }

    void noRecipeRequest_data() { addRows(kNoRecipeRequest); }
    void noRecipeRequest()
    {
        const auto &row = currentRow(kNoRecipeRequest);
        DriverFixture fixture;
        setRecipe();
        setWaiting(kRecipeWrite | kRecipeRead | kCyclicRead);
        if (row.given == "block") {
            driver.shmBase = nullptr;
        } else if (row.given == "mutex") {
            driver.shmMutex = nullptr;
        } else if (row.given == "buffer") {
            driver.rcpBuffer = nullptr;
        } else {
            driver.shmBase[kRecipeWriteByte] = 2;
            driver.shmBase[kRecipeReadByte] = 0xFF;
        }
        QCOMPARE(takeTurns(2), latin("R M_W 1, R M_W 1"));
    }

    void recipeBlocksInTurn()
    {
        DriverFixture fixture;
        setRecipe();
        setWaiting(kRecipeWrite | kRecipeRead | kWrite | kCyclicRead);
        QCOMPARE(takeTurns(7),
                 latin("w T_W 1, w T_W 3, r T_W 1, r T_W 3, W D_W 1, R M_W 1, R M_W 1"));
        QCOMPARE(hexOf(driver.shmBase + kRecipeWriteByte, 2), QByteArray("0000"));
        QCOMPARE(driver.rcpIndex, 0);
    }
};

QTEST_APPLESS_MAIN(TestJobOrder)
#include "test_job_order.moc"
