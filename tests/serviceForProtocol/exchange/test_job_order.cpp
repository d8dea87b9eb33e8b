#include <QtTest/QtTest>

#include "waiting_jobs.h"

/// Which job comes when: priorities, fairness, rotation.
class TestJobOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstJob_data();
    void firstJob();
    void orderOfJobs_data();
    void orderOfJobs();
    void noRecipeRequest_data();
    void noRecipeRequest();
    void recipeBlocksInTurn();
};

void TestJobOrder::firstJob_data()
{
    QTest::addColumn<int>("waiting");
    QTest::addColumn<int>("sendState");

    QTest::newRow("nothing waits") << 0 << 0;
    QTest::newRow("everything waits: handshake") << 63 << 1;
    QTest::newRow("handshake alone") << static_cast<int>(kHandshake) << 1;
    QTest::newRow("then the recipe write") << 62 << 5;
    QTest::newRow("then the recipe read") << 60 << 6;
    QTest::newRow("then writes") << 56 << 2;
    QTest::newRow("then condition reads") << 48 << 3;
    QTest::newRow("then cyclic reads") << 32 << 4;
}

void TestJobOrder::firstJob()
{
    QFETCH(int, waiting);
    QFETCH(int, sendState);

    DriverFixture fixture;
    setRecipe();
    setWaiting(waiting);
    driver.sendState = 0;
    FRAME_PRO frame = FRAME_PRO();
    QCOMPARE(intf_getSendFrame(frame), sendState == 0 ? 0 : 1);
    QCOMPARE(driver.sendState, sendState);
    QVERIFY(fixture.shmLock.tryLock());
    fixture.shmLock.unlock();
    QVERIFY(driver.listMutex.tryLock());
    driver.listMutex.unlock();
}

void TestJobOrder::orderOfJobs_data()
{
    QTest::addColumn<int>("writes");
    QTest::addColumn<int>("conditionReads");
    QTest::addColumn<int>("cyclicReads");
    QTest::addColumn<QString>("jobs");

    QTest::newRow("12 writes and cyclic reads: ten, one read, two")
        << 12 << 0 << 1
        << latin("W D_W 1, W D_W 2, W D_W 3, W D_W 4, W D_W 5, W D_W 6, W D_W 7, W D_W 8, "
                 "W D_W 9, W D_W 10, R M_W 1, W D_W 11, W D_W 12, R M_W 1");
    QTest::newRow("12 writes alone: ten, a pause, two")
        << 12 << 0 << 0
        << latin("W D_W 1, W D_W 2, W D_W 3, W D_W 4, W D_W 5, W D_W 6, W D_W 7, W D_W 8, "
                 "W D_W 9, W D_W 10, idle, W D_W 11, W D_W 12, idle");
    QTest::newRow("three condition reads between cyclic reads")
        << 0 << 5 << 1 << latin("C K_W 1, C K_W 2, C K_W 3, R M_W 1, C K_W 4, C K_W 5, R M_W 1");
    QTest::newRow("three condition reads alone, a pause")
        << 0 << 4 << 0 << latin("C K_W 1, C K_W 2, C K_W 3, idle, C K_W 4, idle");
    QTest::newRow("two writes leave room for one condition read")
        << 2 << 2 << 1 << latin("W D_W 1, W D_W 2, C K_W 1, R M_W 1, C K_W 2, R M_W 1");
    QTest::newRow("after three writes a condition read waits for a cyclic read")
        << 3 << 1 << 1 << latin("W D_W 1, W D_W 2, W D_W 3, R M_W 1, C K_W 1, R M_W 1");
    QTest::newRow("after three writes a condition read waits for a pause")
        << 3 << 1 << 0 << latin("W D_W 1, W D_W 2, W D_W 3, idle, C K_W 1, idle");
    QTest::newRow("one block is read again and again")
        << 0 << 0 << 1 << latin("R M_W 1, R M_W 1, R M_W 1");
    QTest::newRow("three blocks in turn")
        << 0 << 0 << 3 << latin("R M_W 1, R M_W 2, R M_W 3, R M_W 1, R M_W 2");
    QTest::newRow("nothing") << 0 << 0 << 0 << latin("idle, idle");
}

void TestJobOrder::orderOfJobs()
{
    QFETCH(int, writes);
    QFETCH(int, conditionReads);
    QFETCH(int, cyclicReads);
    QFETCH(QString, jobs);

    DriverFixture fixture;
    queueWrites(1, writes);
    queueReads(driver.conditionReads, "K_W", 1, conditionReads);
    queueReads(driver.cyclicReads, "M_W", 1, cyclicReads);
    QCOMPARE(takeTurns(sizeOf(jobs.split(QLatin1String(", ")))), jobs);
}

void TestJobOrder::noRecipeRequest_data()
{
    QTest::addColumn<QByteArray>("lacks");

    QTest::newRow("no block") << QByteArray("block");
    QTest::newRow("no mutex") << QByteArray("mutex");
    QTest::newRow("no buffer") << QByteArray("buffer");
    QTest::newRow("bytes other than 1") << QByteArray("one");
}

void TestJobOrder::noRecipeRequest()
{
    QFETCH(QByteArray, lacks);

    DriverFixture fixture;
    setRecipe();
    setWaiting(kRecipeWrite | kRecipeRead | kCyclicRead);
    if (lacks == "block") {
        driver.shmBase = nullptr;
    } else if (lacks == "mutex") {
        driver.shmMutex = nullptr;
    } else if (lacks == "buffer") {
        driver.rcpBuffer = nullptr;
    } else {
        driver.shmBase[kRecipeWriteByte] = 2;
        driver.shmBase[kRecipeReadByte] = 0xFF;
    }
    QCOMPARE(takeTurns(2), latin("R M_W 1, R M_W 1"));
}

void TestJobOrder::recipeBlocksInTurn()
{
    DriverFixture fixture;
    setRecipe();
    setWaiting(kRecipeWrite | kRecipeRead | kWrite | kCyclicRead);
    QCOMPARE(takeTurns(7), latin("w T_W 1, w T_W 3, r T_W 1, r T_W 3, W D_W 1, R M_W 1, R M_W 1"));
    QCOMPARE(hexOf(driver.shmBase + kRecipeWriteByte, 2), QByteArray("0000"));
    QCOMPARE(driver.rcpIndex, 0);
}

QTEST_APPLESS_MAIN(TestJobOrder)
#include "test_job_order.moc"
