#include <QtTest/QtTest>

#include "serviceForProtocol/cache/monitor_flags.h"
#include "serviceForProtocol/exchange/answer_handling.h"
#include "support/exchange_helpers.h"
#include "support/recipe_helpers.h"

static void startAnew()
{
    int status = 0;
    intf_initProperty(driver.shmBase, 0, driver.rcpBuffer, &status, "8#0#0#3#60", driver.shmMutex);
}

class TestAnswerHandling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingInFlight()
    {
        DriverFixture fixture;
        queueWrites(1, 1);
        driver.failCount = 2;
        QString text;
        QCOMPARE(answerWith(writeAnswer(), &text), 0);
        QCOMPARE(text, latin(""));
        QVERIFY(!text.isNull());
        QCOMPARE(sizeOf(driver.pendingWrites), 1);
        QCOMPARE(driver.failCount, 2);
    }

    void goodReadAnswer()
    {
        DriverFixture fixture;
        _setDataAreaMonitorFlag(1, latin("M_W"), 2, 1);
        driver.cyclicReads.append(makeItem(1, "M_W", 1, 2));
        driver.cyclicReads.append(makeItem(1, "M_W", 9, 2));
        send();
        driver.lastFailed = 1;
        driver.failCount = 1;
        QString text;
        QCOMPARE(answerWith(readAnswer("12345678"), &text), 1);
        QCOMPARE(text, latin("1#M_W1(2)(21)"));
        QCOMPARE(callsText(), latin("7 1 M_W 2"));
        QCOMPARE(hexOf(unitAt(1, "M", 1).readValue, 2), QByteArray("3412"));
        QVERIFY(driver.frames.isEmpty());
        QCOMPARE(driver.failCount, 0);
        QCOMPARE(driver.lastFailed, 0);
        QCOMPARE(listText(readsInTurn()), latin("1 M_W 9 x2, 1 M_W 1 x2"));
    }

    void goodWriteAnswer()
    {
        DriverFixture fixture;
        panelWrite("D_W", 5, "3412");
        send();
        driver.lastFailed = 1;
        driver.failCount = 1;
        QString text;
        QCOMPARE(answerWith(writeAnswer(), &text), 1);
        QCOMPARE(text, latin("1#D_W5(1)(9)"));
        QCOMPARE(static_cast<int>(unitAt(1, "D", 5).writePending), 0);
        QCOMPARE(hexOf(unitAt(1, "D", 5).readValue, 2), QByteArray("3412"));
        QVERIFY(driver.frames.isEmpty());
        QVERIFY(driver.pendingWrites.isEmpty());
        QCOMPARE(driver.failCount, 0);
        QCOMPARE(driver.lastFailed, 0);
    }

    void badAnswers_data()
    {
        QTest::addColumn<QByteArray>("answer"); // to a read of one word: 17 bytes

        const QByteArray good = readAnswer("1234");
        QByteArray refusal = good;
        refusal[0] = '\x15';
        QByteArray noEnd = good;
        noEnd[14] = '\x04';
        QByteArray wrongCheck = good;
        wrongCheck[16] = wrongCheck.at(16) == '0' ? '1' : '0';
        QTest::newRow("time-out") << QByteArray();
        QTest::newRow("one byte") << good.left(1);
        QTest::newRow("two bytes") << good.left(2);
        QTest::newRow("no data") << good.left(10);
        QTest::newRow("one byte short") << good.left(16);
        QTest::newRow("one byte long") << good + QByteArray("\x00", 1);
        QTest::newRow("refused") << refusal;
        QTest::newRow("refused, short") << QByteArray("\x15"
                                                      "01rSB1132\x03"
                                                      "6B");
        QTest::newRow("not closed") << noEnd;
        QTest::newRow("wrong block check") << wrongCheck;
        QTest::newRow("lower-case block check") << readAnswer("123:").toLower();
        QTest::newRow("an acknowledgement") << writeAnswer();
    }

    void badAnswers()
    {
        QFETCH(QByteArray, answer);

        DriverFixture fixture;
        queueReads(driver.cyclicReads, "M_W", 1, 1);
        send();
        QString text;
        QCOMPARE(answerWith(answer, &text), 8);
        QCOMPARE(text, latin("1#M_W1(1)(%1)").arg(answer.size()));
        QCOMPARE(sizeOf(driver.frames), 1);
        QCOMPARE(driver.failCount, 1);
        QVERIFY(driver.dataArea.isEmpty());
        QCOMPARE(answerWith(readAnswer("1234")), 1);
        QCOMPARE(driver.failCount, 0);
    }

    // A recipe write is acknowledged or given up without a word to the cache.
    void onlyPanelWritesAreSettled()
    {
        DriverFixture fixture("7#0#0#1#60");
        _setDataAreaMonitorFlag(1, latin("D_W"), 1, 1);
        unitAt(1, "D", 1).writePending = 1;
        setRecipeItems("1 D_W 1 1 1");
        driver.shmBase[kRecipeWriteByte] = kRecipeRequested;
        QCOMPARE(takeTurn(), latin("w D_W 1"));
        driver.shmBase[kRecipeWriteByte] = kRecipeRequested;
        send();
        QCOMPARE(answerWith(QByteArray()), 2);
        QCOMPARE(static_cast<int>(unitAt(1, "D", 1).writePending), 1);
        QCOMPARE(callsText(), QString());
    }

    void decodingWithoutFrame()
    {
        DriverFixture fixture;
        QCOMPARE(dealReadFrameReturnSaveData(readAnswer("1234")), 0);
        QVERIFY(driver.dataArea.isEmpty());
        FRAME_PRO frame = FRAME_PRO();
        frame.unitCount = 1;
        frame.dataPos = 10;
        frame.var = makeItem(1, "D_W", 5, 1);
        queueFrame(frame);
        QCOMPARE(dealReadFrameReturnSaveData(readAnswer("1234")), 0);
        QCOMPARE(hexOf(unitAt(1, "D", 5).readValue, 2), QByteArray("3412"));
        QCOMPARE(sizeOf(driver.frames), 1);
    }

    void answerIsNotChanged()
    {
        DriverFixture fixture;
        driver.pendingWrites.append(makeItem(1, "D_bit", 53, 1, "\x01"));
        send();
        QByteArray reply = readAnswer("1234");
        const QByteArray before(reply.constData(), reply.size());
        QString text;
        QCOMPARE(intf_dealRcvFrame(reply, text), 1);
        QCOMPARE(reply, before);
    }

    void hostMayStartAnewMeanwhile()
    {
        DriverFixture fixture;
        _setDataAreaMonitorFlag(1, latin("M_W"), 1, 1);
        driver.cyclicReads.append(makeItem(1, "M_W", 1, 2));
        send();
        DriverFixture::hook() = &startAnew;
        QCOMPARE(answerWith(readAnswer("12345678")), 1);
        QCOMPARE(callsText(), latin("7 1 M_W 1"));
        QVERIFY(driver.frames.isEmpty());
        QVERIFY(driver.cyclicReads.isEmpty());
        QCOMPARE(takeTurn(), latin("idle"));
    }
};

QTEST_APPLESS_MAIN(TestAnswerHandling)
#include "test_answer_handling.moc"
