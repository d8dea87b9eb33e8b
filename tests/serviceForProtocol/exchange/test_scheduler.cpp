#include <QtTest/QtTest>

#include "waiting_jobs.h"

static const struct
{
    const char *what;
    int waiting;
    QByteArray request;
    int recvLen, unitCount;
} kFramesOfJobs[] = {
    {"handshake sends nothing", static_cast<int>(kHandshake), "", 0, 0},
    {"recipe write", static_cast<int>(kRecipeWrite), requestBytes("01wSB08%TW00001011234", "CA"), 9,
     0},
    {"recipe read", static_cast<int>(kRecipeRead), requestBytes("01rSB08%TW0000101", "FB"), 17, 1},
    {"write", static_cast<int>(kWrite), requestBytes("01wSB08%DW00001010000", "B0"), 9, 0},
    {"condition read", static_cast<int>(kConditionRead), requestBytes("01rSB08%KW0000101", "F2"),
     17, 1},
    {"cyclic read", static_cast<int>(kCyclicRead), requestBytes("01rSB08%MW0000101", "F4"), 17, 1},
};

static const QByteArray read = requestBytes("01rSB08%DW0000501", "EF");
static const QByteArray write = requestBytes("01wSB08%DW00005011234", "BE");
static const struct
{
    const char *what;
    int sendState, result;
    QByteArray request; // of curVar "D_W" 5
} kLastJobIsRepeated[] = {
    {"idle: nothing", 0, 0, ""},
    {"handshake", 1, 1, ""},
    {"write", 2, 1, write},
    {"condition read", 3, 1, read},
    {"cyclic read, without a new pick", 4, 1, read},
    {"recipe write", 5, 1, write},
    {"recipe read", 6, 1, read},
    {"any other: nothing", 7, 0, ""},
    {"negative: nothing", -1, 0, ""},
};

static const Given<int> kUnknownRegisterSendsNothing[] = {
    {"write", 2},
    {"condition read", 3},
    {"cyclic read", 4},
};

class TestScheduler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesOfJobs_data() { addRows(kFramesOfJobs); }
    void framesOfJobs()
    {
        const auto &row = currentRow(kFramesOfJobs);
        DriverFixture fixture;
        setRecipe();
        driver.rcpBuffer[2] = 0x34; // word 1, low byte first
        driver.rcpBuffer[3] = 0x12;
        setWaiting(row.waiting);
        FRAME_PRO frame = FRAME_PRO();
        QCOMPARE(intf_getSendFrame(frame), 1);
        QCOMPARE(sentBytes(frame), row.request);
        QCOMPARE(frame.recvLen, row.recvLen);
        QCOMPARE(frame.unitCount, row.unitCount);
        QCOMPARE(sizeOf(driver.frames), 1);
        if (row.waiting == kRecipeRead) {
            QCOMPARE(bytesOf(driver.curVar.data, 1024), QByteArray(1024, '\0'));
        }
    }

    void stateOfJobs()
    {
        DriverFixture fixture;
        queueWrites(1, 1);
        driver.readItemCount = 7;
        send();
        QCOMPARE(driver.tryCount, 1);
        QCOMPARE(driver.readItemCount, 1);
        QCOMPARE(itemText(driver.curVar), latin("1 D_W 1 x1"));
        QCOMPARE(sizeOf(driver.pendingWrites), 1); // leaves its list when it is answered
        answerWith(writeAnswer());

        queueReads(driver.conditionReads, "K_W", 2, 1);
        send();
        QCOMPARE(driver.tryCount, 2);
        QCOMPARE(listText(driver.curReadList), latin("1 K_W 2 x1"));
        QCOMPARE(driver.readItemCount, 1);
        answerWith(readAnswer("0000"));
        QCOMPARE(driver.sendState, 3); // the last job stays named

        queueReads(driver.cyclicReads, "M_W", 3, 1);
        const FRAME_PRO frame = send();
        QCOMPARE(driver.tryCount, 0);
        QCOMPARE(listText(driver.curReadList), latin("1 M_W 3 x1"));
        QCOMPARE(itemText(frame.var), latin("1 M_W 3 x1"));
    }

    void wholeFrameIsCopied()
    {
        DriverFixture fixture;
        VARIABLE item = makeItem(8, "D_W", 9, 10, QByteArray(1024, '\x22'));
        item.opKind = 11;
        queueFrame(numberedFrame(3, 0x11, item));
        FRAME_PRO out = FRAME_PRO();
        QCOMPARE(intf_getSendFrame(out), 1);
        QCOMPARE(bytesOf(out.sendBuf, 1024), QByteArray(1024, '\x11'));
        QCOMPARE(numbersText(out), latin("3 4 5 6 7"));
        QCOMPARE(itemText(out.var), latin("8 D_W 9 x10"));
        QCOMPARE(out.var.opKind, 11);
        QCOMPARE(bytesOf(out.var.data, 1024), QByteArray(1024, '\x22'));
    }

    void frameInFlightIsHandedOutAgain()
    {
        DriverFixture fixture;
        setRecipe();
        setWaiting(kCyclicRead);
        const FRAME_PRO first = send();
        FRAME_PRO again = FRAME_PRO();
        setWaiting(63);
        QCOMPARE(intf_getSendFrame(again), 1);
        QCOMPARE(sentBytes(again), sentBytes(first));
        QCOMPARE(driver.sendState, 4);
        QCOMPARE(sizeOf(driver.frames), 1);
        QCOMPARE(driver.tryCount, 0);
    }

    void secondFrameOfPairNeedsNoPick()
    {
        DriverFixture fixture;
        driver.pendingWrites.append(makeItem(1, "D_bit", 53, 1, "\x01"));
        queueWrites(1, 1);
        FRAME_PRO frame = send();
        QCOMPARE(sentBytes(frame), requestBytes("01rSB08%DW0000301", "ED"));
        QCOMPARE(answerWith(readAnswer("1204")), 1);
        QCOMPARE(sizeOf(driver.pendingWrites), 2);
        QCOMPARE(intf_getSendFrame(frame), 1);
        QCOMPARE(sentBytes(frame), requestBytes("01wSB08%DW00003011224", "BB"));
        QCOMPARE(driver.sendState, 2);
        QCOMPARE(driver.tryCount, 1);
        QCOMPARE(answerWith(writeAnswer()), 1);
        QCOMPARE(listText(driver.pendingWrites), latin("1 D_W 1 x1"));
    }

    void nothingToSend()
    {
        DriverFixture fixture;
        driver.tryCount = 7;
        driver.sendState = kJobWrite;
        FRAME_PRO out = FRAME_PRO();
        out.sendLen = 77;
        QCOMPARE(intf_getSendFrame(out), 0);
        QCOMPARE(out.sendLen, 77);
        QVERIFY(driver.frames.isEmpty());
        QCOMPARE(driver.tryCount, 0);
        QCOMPARE(driver.sendState, 0);
    }

    // A recipe is asked for, and no block is left.
    void lastJobIsRepeated_data() { addRows(kLastJobIsRepeated); }
    void lastJobIsRepeated()
    {
        const auto &row = currentRow(kLastJobIsRepeated);
        const int requests[] = {kRecipeWrite, kRecipeRead, kRecipeWrite | kRecipeRead};
        const int indexes[] = {2, 3, -1};
        for (int i = 0; i < 9; ++i) {
            DriverFixture fixture;
            setRecipe();
            driver.rcpIndex = indexes[i / 3];
            setWaiting(requests[i % 3] | kWrite | kConditionRead | kCyclicRead);
            driver.sendState = row.sendState;
            driver.curVar = makeItem(1, "D_W", 5, 1, "\x34\x12");
            FRAME_PRO frame = FRAME_PRO();
            QCOMPARE(intf_getSendFrame(frame), row.result);
            QCOMPARE(sentBytes(frame), row.request);
            QCOMPARE(sizeOf(driver.frames), row.result);
            QCOMPARE(driver.sendState, row.sendState);
            QCOMPARE(driver.tryCount, 0);
            QCOMPARE(itemText(driver.curVar), latin("1 D_W 5 x1"));
        }
    }

    void unknownRegisterSendsNothing_data() { addRows(kUnknownRegisterSendsNothing); }
    void unknownRegisterSendsNothing()
    {
        const auto &row = currentRow(kUnknownRegisterSendsNothing);
        DriverFixture fixture;
        QList<VARIABLE> *const lists[] = {&driver.pendingWrites, &driver.conditionReads,
                                          &driver.cyclicReads};
        lists[row.given - 2]->append(makeItem(1, "Q_W", 1, 1));
        FRAME_PRO frame = FRAME_PRO();
        QCOMPARE(intf_getSendFrame(frame), 0);
        QVERIFY(driver.frames.isEmpty());
        QCOMPARE(driver.sendState, row.given);
        QCOMPARE(driver.readItemCount, row.given == 3 ? 0 : 1);
    }
};

QTEST_APPLESS_MAIN(TestScheduler)
#include "test_scheduler.moc"
