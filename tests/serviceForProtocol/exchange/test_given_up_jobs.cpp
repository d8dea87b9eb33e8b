#include <QtTest/QtTest>

#include "serviceForProtocol/cache/monitor_flags.h"
#include "support/exchange_helpers.h"
#include "support/recipe_helpers.h"

/// Bad answers until a job is given up, and what is left of it.
class TestGivenUpJobs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void retriesOfTheProperties_data();
    void retriesOfTheProperties();
    void badAnswersAreCountedForEachFrame();
    void writeGivenUp();
    void pairGivenUp_data();
    void pairGivenUp();
    void cyclicReadGivenUp();
    void conditionReadEnds_data();
    void conditionReadEnds();
    void recipeGivenUp_data();
    void recipeGivenUp();
    void handshakeHasNoGoodAnswer_data();
    void handshakeHasNoGoodAnswer();
};

void TestGivenUpJobs::retriesOfTheProperties_data()
{
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<QByteArray>("results");

    QTest::newRow("3") << QByteArray("7#0#0#3#60") << QByteArray("8 8 2");
    QTest::newRow("2") << QByteArray("7#0#0#2#60") << QByteArray("8 2");
    QTest::newRow("1") << QByteArray("7#0#0#1#60") << QByteArray("2");
    QTest::newRow("0") << QByteArray("7#0#0#0#60") << QByteArray("2");
    QTest::newRow("negative") << QByteArray("7#0#0#-5#60") << QByteArray("2");
}

void TestGivenUpJobs::retriesOfTheProperties()
{
    QFETCH(QByteArray, props);
    QFETCH(QByteArray, results);

    DriverFixture fixture(props.constData());
    queueReads(driver.cyclicReads, "M_W", 1, 2);
    for (int block = 1; block < 3; ++block) { // each block has all its retries
        QByteArray seen;
        do {
            send();
            QCOMPARE(driver.curVar.startAddr, block);
            seen += (seen.isEmpty() ? "" : " ") + QByteArray::number(answerWith(QByteArray()));
        } while (!seen.endsWith('2') && seen.size() < 20);
        QCOMPARE(seen, results);
        QCOMPARE(driver.lastFailed, 1);
        QCOMPARE(driver.failCount, 0);
    }
}

void TestGivenUpJobs::badAnswersAreCountedForEachFrame()
{
    DriverFixture fixture;
    driver.pendingWrites.append(makeItem(1, "D_bit", 53, 1, "\x01"));
    send();
    QCOMPARE(answerWith(QByteArray()), 8);
    QCOMPARE(answerWith(QByteArray()), 8);
    QCOMPARE(answerWith(readAnswer("0000")), 1);
    send();
    QCOMPARE(answerWith(QByteArray()), 8);
    QCOMPARE(answerWith(QByteArray()), 8);
    QCOMPARE(answerWith(writeAnswer()), 1);
    QVERIFY(driver.pendingWrites.isEmpty());
}

void TestGivenUpJobs::writeGivenUp()
{
    DriverFixture fixture("7#0#0#1#60");
    _setDataAreaMonitorFlag(1, latin("D_W"), 5, 1);
    setBytes(unitAt(1, "D", 5).readValue, "1111");
    panelWrite("D_W", 5, "3412");
    panelWrite("D_W", 6, "3412");
    send();
    QCOMPARE(answerWith(QByteArray()), 2);
    QCOMPARE(callsText(), latin("7 1 D_W 5, 7 1 D_W 5"));
    QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 5)), 2), QByteArray("1111"));
    QCOMPARE(listText(driver.pendingWrites), latin("1 D_W 6 x1"));
    QVERIFY(driver.frames.isEmpty());
    QCOMPARE(driver.lastFailed, 1);
}

void TestGivenUpJobs::pairGivenUp_data()
{
    QTest::addColumn<bool>("readTaken");

    QTest::newRow("the read half is not answered") << false;
    QTest::newRow("the write half is not answered") << true;
}

void TestGivenUpJobs::pairGivenUp()
{
    QFETCH(bool, readTaken);

    DriverFixture fixture("7#0#0#1#60");
    _setDataAreaMonitorFlag(1, latin("D_bit"), 53, 1);
    panelWrite("D_bit", 53, "01");
    send();
    if (readTaken) {
        QCOMPARE(answerWith(readAnswer("0000")), 1);
        send();
    }
    QString text;
    QCOMPARE(answerWith(QByteArray(), &text), 2);
    QCOMPARE(text, latin("1#D_bit3.5(1)(0)"));
    QCOMPARE(callsText(), latin("7 1 D_bit 53, 7 1 D_bit 53"));
    QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 3)), 2), QByteArray("0000"));
    QCOMPARE(unitAt(1, "D", 3).pendingBits, 0);
    QVERIFY(driver.frames.isEmpty());
    QVERIFY(driver.pendingWrites.isEmpty());
}

void TestGivenUpJobs::cyclicReadGivenUp()
{
    DriverFixture fixture("7#0#0#1#60");
    queueReads(driver.cyclicReads, "M_W", 1, 2);
    send();
    QCOMPARE(answerWith(QByteArray()), 2);
    QCOMPARE(callsText(), QString());
    QCOMPARE(takeTurns(3), latin("R M_W 2, R M_W 1, R M_W 2"));
}

void TestGivenUpJobs::conditionReadEnds_data()
{
    QTest::addColumn<bool>("answered");
    QTest::addColumn<QString>("calls");
    QTest::addColumn<QString>("waiting");

    QTest::newRow("answered") << true << latin("7 1 D_W 5, -1 -1 -1 0") << latin("1 K_W 9 x1");
    QTest::newRow("given up") << false << latin("-1 -1 -1 -1") << QString();
}

void TestGivenUpJobs::conditionReadEnds()
{
    QFETCH(bool, answered);
    QFETCH(QString, calls);
    QFETCH(QString, waiting);

    DriverFixture fixture("7#0#0#1#60");
    _setDataAreaMonitorFlag(1, latin("D_W"), 5, 1);
    KEY_ADDRESS key = makeKey(1, "D_W", 5, 1);
    intf_addConditionRead(key, 0);
    queueReads(driver.conditionReads, "K_W", 9, 1);
    send();
    QCOMPARE(answerWith(answered ? readAnswer("0001") : QByteArray()), answered ? 1 : 2);
    QCOMPARE(callsText(), calls);
    QCOMPARE(listText(driver.conditionReads), waiting);
}

void TestGivenUpJobs::recipeGivenUp_data()
{
    QTest::addColumn<int>("byte");
    QTest::addColumn<QByteArray>("bytesAfter");

    QTest::newRow("write") << static_cast<int>(kRecipeWriteByte) << QByteArray("0000");
    QTest::newRow("read") << static_cast<int>(kRecipeReadByte) << QByteArray("0000");
}

void TestGivenUpJobs::recipeGivenUp()
{
    QFETCH(int, byte);
    QFETCH(QByteArray, bytesAfter);

    DriverFixture fixture("7#0#0#2#60");
    QVector<_RCP_VAR_PRO> items = recipeItems("1 D_W 1 1 1; 1 D_W 3 1 3; 1 D_W 5 1 5");
    intf_setRcpAddress(items);
    driver.shmBase[byte] = kRecipeRequested;
    takeTurn();
    QCOMPARE(driver.rcpIndex, 1);
    send();
    QCOMPARE(answerWith(QByteArray()), 8);
    QCOMPARE(driver.rcpIndex, 1);
    QCOMPARE(static_cast<int>(driver.shmBase[byte]), 1);
    send();
    QCOMPARE(answerWith(QByteArray()), 2);
    QCOMPARE(driver.rcpIndex, 0);
    QCOMPARE(hexOf(driver.shmBase + kRecipeWriteByte, 2), bytesAfter);
    QCOMPARE(takeTurn(), latin("idle"));
}

void TestGivenUpJobs::handshakeHasNoGoodAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");

    QTest::newRow("none") << QByteArray();
    QTest::newRow("one byte") << QByteArray("\x06", 1);
    QTest::newRow("a whole answer") << writeAnswer();
}

void TestGivenUpJobs::handshakeHasNoGoodAnswer()
{
    QFETCH(QByteArray, answer);

    DriverFixture fixture("7#0#0#2#60");
    queueReads(driver.cyclicReads, "M_W", 1, 2);
    driver.needHandshake = 1;
    send();
    QString text;
    QCOMPARE(answerWith(answer, &text), 8);
    QCOMPARE(text, QString());
    QCOMPARE(answerWith(answer), 2);
    QVERIFY(driver.frames.isEmpty());
    QCOMPARE(listText(driver.cyclicReads), latin("1 M_W 1 x1, 1 M_W 2 x1"));
}

QTEST_APPLESS_MAIN(TestGivenUpJobs)
#include "test_given_up_jobs.moc"
