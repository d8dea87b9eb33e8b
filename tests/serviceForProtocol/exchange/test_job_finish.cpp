#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/job_finish.h"
#include "support/exchange_helpers.h"
#include "support/recipe_helpers.h"

class TestJobFinish : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyItsOwnListIsTouched_data();
    void onlyItsOwnListIsTouched();
    void emptyLists_data();
    void emptyLists();
    void cyclicReadsRotate_data();
    void cyclicReadsRotate();
    void conditionReadSignals_data();
    void conditionReadSignals();
    void askingAgainFromTheSignal();
    void recipeBlock_data();
    void recipeBlock();
    void locksAreFree();
};

static QString listsText()
{
    return listText(driver.pendingWrites) + latin(" | ") + listText(driver.conditionReads) +
           latin(" | ") + listText(readsInTurn());
}

void TestJobFinish::onlyItsOwnListIsTouched_data()
{
    QTest::addColumn<int>("sendState");
    QTest::addColumn<int>("lastFailed");
    QTest::addColumn<QString>("lists");

    const QString all = latin("1 D_W 1 x1, 1 D_W 2 x1 | 1 K_W 1 x1, 1 K_W 2 x1 | "
                              "1 M_W 1 x1, 1 M_W 2 x1");
    const QString written = latin("1 D_W 2 x1 | 1 K_W 1 x1, 1 K_W 2 x1 | 1 M_W 1 x1, 1 M_W 2 x1");
    const QString rotated = latin("1 D_W 1 x1, 1 D_W 2 x1 | 1 K_W 1 x1, 1 K_W 2 x1 | "
                                  "1 M_W 2 x1, 1 M_W 1 x1");
    QTest::newRow("idle") << 0 << 0 << all;
    QTest::newRow("handshake") << 1 << 0 << all;
    QTest::newRow("handshake, failed") << 1 << 1 << all;
    QTest::newRow("write") << 2 << 0 << written;
    QTest::newRow("write, failed") << 2 << 1 << written;
    QTest::newRow("condition read")
        << 3 << 0 << latin("1 D_W 1 x1, 1 D_W 2 x1 | 1 K_W 2 x1 | 1 M_W 1 x1, 1 M_W 2 x1");
    QTest::newRow("condition read, failed: all of them go")
        << 3 << 1 << latin("1 D_W 1 x1, 1 D_W 2 x1 |  | 1 M_W 1 x1, 1 M_W 2 x1");
    QTest::newRow("cyclic read") << 4 << 0 << rotated;
    QTest::newRow("cyclic read, failed: moves on all the same") << 4 << 1 << rotated;
    QTest::newRow("recipe write") << 5 << 0 << all;
    QTest::newRow("recipe read") << 6 << 0 << all;
    QTest::newRow("unknown") << 7 << 0 << all;
    QTest::newRow("negative") << -1 << 1 << all;
}

void TestJobFinish::onlyItsOwnListIsTouched()
{
    QFETCH(int, sendState);
    QFETCH(int, lastFailed);
    QFETCH(QString, lists);

    DriverFixture fixture;
    queueWrites(1, 2);
    queueReads(driver.conditionReads, "K_W", 1, 2);
    queueReads(driver.cyclicReads, "M_W", 1, 2);
    driver.sendState = sendState;
    driver.lastFailed = lastFailed;
    dealListWhenFinish();
    QCOMPARE(listsText(), lists);
    QCOMPARE(driver.sendState, sendState);
    QCOMPARE(callsText(), QString());
}

void TestJobFinish::emptyLists_data()
{
    QTest::addColumn<int>("sendState");
    QTest::addColumn<int>("lastFailed");

    for (int state = 0; state < 7; ++state) {
        QTest::newRow(("state " + QByteArray::number(state)).constData()) << state << 0;
        QTest::newRow(("failed, state " + QByteArray::number(state)).constData()) << state << 1;
    }
}

void TestJobFinish::emptyLists()
{
    QFETCH(int, sendState);
    QFETCH(int, lastFailed);

    DriverFixture fixture;
    driver.sendState = sendState;
    driver.lastFailed = lastFailed;
    dealListWhenFinish();
    QCOMPARE(listsText(), latin(" |  | "));
    QCOMPARE(driver.rcpIndex, 0);
    QCOMPARE(callsText(), QString());
}

void TestJobFinish::cyclicReadsRotate_data()
{
    QTest::addColumn<int>("blocks");
    QTest::addColumn<QString>("after");

    QTest::newRow("one stays") << 1 << latin("1 M_W 1 x1");
    QTest::newRow("two") << 2 << latin("1 M_W 2 x1, 1 M_W 1 x1");
    QTest::newRow("three") << 3 << latin("1 M_W 2 x1, 1 M_W 3 x1, 1 M_W 1 x1");
}

void TestJobFinish::cyclicReadsRotate()
{
    QFETCH(int, blocks);
    QFETCH(QString, after);

    DriverFixture fixture;
    queueReads(driver.cyclicReads, "M_W", 1, blocks);
    driver.sendState = kJobCyclicRead;
    dealListWhenFinish();
    QCOMPARE(listText(readsInTurn()), after);
}

void TestJobFinish::conditionReadSignals_data()
{
    QTest::addColumn<QByteArray>("differs"); // the head from the read that the host waits for
    QTest::addColumn<int>("lastFailed");
    QTest::addColumn<QString>("calls");

    QTest::newRow("done") << QByteArray() << 0 << latin("-1 -1 -1 0");
    QTest::newRow("failed") << QByteArray() << 1 << latin("-1 -1 -1 -1");
    QTest::newRow("another station") << QByteArray("station") << 0 << QString();
    QTest::newRow("another register") << QByteArray("register") << 0 << QString();
    QTest::newRow("another address") << QByteArray("address") << 0 << QString();
    QTest::newRow("another count") << QByteArray("count") << 0 << QString();
    QTest::newRow("another, failed") << QByteArray("address") << 1 << QString();
    QTest::newRow("another tag is the same read") << QByteArray("tag") << 0 << latin("-1 -1 -1 0");
}

void TestJobFinish::conditionReadSignals()
{
    QFETCH(QByteArray, differs);
    QFETCH(int, lastFailed);
    QFETCH(QString, calls);

    DriverFixture fixture;
    driver.lastVar = makeItem(differs == "station" ? 2 : 1, differs == "register" ? "M_W" : "D_W",
                              differs == "address" ? 6 : 5, differs == "count" ? 2 : 1);
    driver.lastVar.opKind = differs == "tag" ? 9 : 0;
    queueReads(driver.conditionReads, "D_W", 5, 2);
    driver.sendState = kJobConditionRead;
    driver.lastFailed = lastFailed;
    dealListWhenFinish();
    QCOMPARE(callsText(), calls);
    QCOMPARE(listText(driver.conditionReads), lastFailed != 0 ? QString() : latin("1 D_W 6 x1"));

    intf_setAddrValueChangeCallBack(nullptr);
    queueReads(driver.conditionReads, "D_W", 5, 1);
    dealListWhenFinish();
    QCOMPARE(callsText(), calls);
}

static void askAgain()
{
    KEY_ADDRESS key = makeKey(1, "D_W", 5, 1);
    intf_addConditionRead(key, 0);
}

void TestJobFinish::askingAgainFromTheSignal()
{
    DriverFixture fixture;
    askAgain();
    DriverFixture::hook() = &askAgain;
    driver.sendState = kJobConditionRead;
    dealListWhenFinish();
    QCOMPARE(callsText(), latin("-1 -1 -1 0"));
    QCOMPARE(listText(driver.conditionReads), latin("1 D_W 5 x1"));
    driver.lastFailed = 1;
    dealListWhenFinish();
    QCOMPARE(callsText(), latin("-1 -1 -1 0, -1 -1 -1 -1"));
    QCOMPARE(listText(driver.conditionReads), QString());
}

void TestJobFinish::recipeBlock_data()
{
    QTest::addColumn<int>("sendState");
    QTest::addColumn<int>("lastFailed");
    QTest::addColumn<int>("rcpIndex"); // of three blocks
    QTest::addColumn<int>("indexAfter");
    QTest::addColumn<QByteArray>("bytesAfter"); // write, read

    QTest::newRow("write, first") << 5 << 0 << 0 << 1 << QByteArray("0101");
    QTest::newRow("write, second") << 5 << 0 << 1 << 2 << QByteArray("0101");
    QTest::newRow("write, last") << 5 << 0 << 2 << 0 << QByteArray("0001");
    QTest::newRow("write, first failed") << 5 << 1 << 0 << 0 << QByteArray("0001");
    QTest::newRow("write, second failed") << 5 << 1 << 1 << 0 << QByteArray("0001");
    QTest::newRow("write, beyond the last") << 5 << 0 << 7 << 0 << QByteArray("0001");
    QTest::newRow("read, first") << 6 << 0 << 0 << 1 << QByteArray("0101");
    QTest::newRow("read, last") << 6 << 0 << 2 << 0 << QByteArray("0100");
    QTest::newRow("read, second failed") << 6 << 1 << 1 << 0 << QByteArray("0100");
    QTest::newRow("any other job") << 4 << 1 << 1 << 1 << QByteArray("0101");
}

void TestJobFinish::recipeBlock()
{
    QFETCH(int, sendState);
    QFETCH(int, lastFailed);
    QFETCH(int, rcpIndex);
    QFETCH(int, indexAfter);
    QFETCH(QByteArray, bytesAfter);

    DriverFixture fixture;
    QVector<_RCP_VAR_PRO> items = recipeItems("1 D_W 1 1 0; 1 D_W 3 1 1; 1 D_W 5 1 2");
    intf_setRcpAddress(items);
    driver.shmBase[kRecipeWriteByte] = kRecipeRequested;
    driver.shmBase[kRecipeReadByte] = kRecipeRequested;
    driver.sendState = sendState;
    driver.lastFailed = lastFailed;
    driver.rcpIndex = rcpIndex;
    dealListWhenFinish();
    QCOMPARE(driver.rcpIndex, indexAfter);
    QCOMPARE(hexOf(driver.shmBase + kRecipeWriteByte, 2), bytesAfter);
}

void TestJobFinish::locksAreFree()
{
    DriverFixture fixture;
    for (int state = 0; state < 7; ++state) {
        driver.sendState = state;
        dealListWhenFinish();
        QVERIFY(driver.listMutex.tryLock());
        driver.listMutex.unlock();
        QVERIFY(fixture.shmLock.tryLock());
        fixture.shmLock.unlock();
    }
}

QTEST_APPLESS_MAIN(TestJobFinish)
#include "test_job_finish.moc"
