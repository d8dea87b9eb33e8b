#include <QtTest/QtTest>

#include "serviceForProtocol/cache/monitor_flags.h"
#include "support/exchange_helpers.h"
#include "support/recipe_helpers.h"

/// Bad answers until a job is given up, and what is left of it.

static const Case<QByteArray, QByteArray> kRetriesOfTheProperties[] = {
    // clang-format off
    {"3", "7#0#0#3#60", "8 8 2"},
    {"2", "7#0#0#2#60", "8 2"},
    {"1", "7#0#0#1#60", "2"},
    {"0", "7#0#0#0#60", "2"},
    {"negative", "7#0#0#-5#60", "2"},
    // clang-format on
};

static const Given<bool> kPairGivenUp[] = {
    {"the read half is not answered", false},
    {"the write half is not answered", true},
};

static const struct
{
    const char *what;
    bool answered;
    const char *calls, *waiting;
} kConditionReadEnds[] = {
    {"answered", true, "7 1 D_W 5, -1 -1 -1 0", "1 K_W 9 x1"},
    {"given up", false, "-1 -1 -1 -1", ""},
};

static const Case<int, QByteArray> kRecipeGivenUp[] = {
    {"write", static_cast<int>(kRecipeWriteByte), "0000"},
    {"read", static_cast<int>(kRecipeReadByte), "0000"},
};

static const Given<QByteArray> kHandshakeHasNoGoodAnswer[] = {
    {"none", QByteArray()},
    {"one byte", QByteArray("\x06", 1)},
    {"a whole answer", writeAnswer()},
};

class TestGivenUpJobs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void retriesOfTheProperties_data() { addRows(kRetriesOfTheProperties); }
    void retriesOfTheProperties()
    {
        const auto &row = currentRow(kRetriesOfTheProperties);
        DriverFixture fixture(row.given.constData());
        queueReads(driver.cyclicReads, "M_W", 1, 2);
        for (int block = 1; block < 3; ++block) { // each block has all its retries
            QByteArray seen;
            do {
                send();
                QCOMPARE(driver.curVar.startAddr, block);
                seen += (seen.isEmpty() ? "" : " ") + QByteArray::number(answerWith(QByteArray()));
            } while (!seen.endsWith('2') && seen.size() < 20);
            QCOMPARE(seen, row.expected);
            QCOMPARE(driver.lastFailed, 1);
            QCOMPARE(driver.failCount, 0);
        }
    }

    void badAnswersAreCountedForEachFrame()
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

    void writeGivenUp()
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

    void pairGivenUp_data() { addRows(kPairGivenUp); }
    void pairGivenUp()
    {
        const auto &row = currentRow(kPairGivenUp);
        DriverFixture fixture("7#0#0#1#60");
        _setDataAreaMonitorFlag(1, latin("D_bit"), 53, 1);
        panelWrite("D_bit", 53, "01");
        send();
        if (row.given) {
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

    void cyclicReadGivenUp()
    {
        DriverFixture fixture("7#0#0#1#60");
        queueReads(driver.cyclicReads, "M_W", 1, 2);
        send();
        QCOMPARE(answerWith(QByteArray()), 2);
        QCOMPARE(callsText(), QString());
        QCOMPARE(takeTurns(3), latin("R M_W 2, R M_W 1, R M_W 2"));
    }

    void conditionReadEnds_data() { addRows(kConditionReadEnds); }
    void conditionReadEnds()
    {
        const auto &row = currentRow(kConditionReadEnds);
        DriverFixture fixture("7#0#0#1#60");
        _setDataAreaMonitorFlag(1, latin("D_W"), 5, 1);
        askOnce("D_W", 5);
        queueReads(driver.conditionReads, "K_W", 9, 1);
        send();
        QCOMPARE(answerWith(row.answered ? readAnswer("0001") : QByteArray()),
                 row.answered ? 1 : 2);
        QCOMPARE(callsText(), latin(row.calls));
        QCOMPARE(listText(driver.conditionReads), latin(row.waiting));
    }

    void recipeGivenUp_data() { addRows(kRecipeGivenUp); }
    void recipeGivenUp()
    {
        const auto &row = currentRow(kRecipeGivenUp);
        DriverFixture fixture("7#0#0#2#60");
        setRecipeItems("1 D_W 1 1 1; 1 D_W 3 1 3; 1 D_W 5 1 5");
        driver.shmBase[row.given] = kRecipeRequested;
        takeTurn();
        QCOMPARE(driver.rcpIndex, 1);
        send();
        QCOMPARE(answerWith(QByteArray()), 8);
        QCOMPARE(driver.rcpIndex, 1);
        QCOMPARE(static_cast<int>(driver.shmBase[row.given]), 1);
        send();
        QCOMPARE(answerWith(QByteArray()), 2);
        QCOMPARE(driver.rcpIndex, 0);
        QCOMPARE(hexOf(driver.shmBase + kRecipeWriteByte, 2), row.expected);
        QCOMPARE(takeTurn(), latin("idle"));
    }

    void handshakeHasNoGoodAnswer_data() { addRows(kHandshakeHasNoGoodAnswer); }
    void handshakeHasNoGoodAnswer()
    {
        const auto &row = currentRow(kHandshakeHasNoGoodAnswer);
        DriverFixture fixture("7#0#0#2#60");
        queueReads(driver.cyclicReads, "M_W", 1, 2);
        driver.needHandshake = 1;
        send();
        QString text;
        QCOMPARE(answerWith(row.given, &text), 8);
        QCOMPARE(text, QString());
        QCOMPARE(answerWith(row.given), 2);
        QVERIFY(driver.frames.isEmpty());
        QCOMPARE(listText(driver.cyclicReads), latin("1 M_W 1 x1, 1 M_W 2 x1"));
    }
};

QTEST_APPLESS_MAIN(TestGivenUpJobs)
#include "test_given_up_jobs.moc"
