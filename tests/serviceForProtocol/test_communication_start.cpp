#include <QtTest/QtTest>

#include "support/driver_fixture.h"
#include "support/rows.h"

static QString settings()
{
    return latin("%1 %2 %3 %4 %5")
        .arg(driver.deviceNo)
        .arg(driver.cacheOnlyWrites)
        .arg(driver.property3)
        .arg(driver.maxRetries)
        .arg(driver.maxBlockWords);
}

static int startWith(const char *props)
{
    int status = 5;
    return intf_initProperty(nullptr, 0, nullptr, &status, props, nullptr);
}

static const Case<const char *, const char *> kPropertiesAreTaken[] = {
    {"five numbers", "3#0#0#3#32", "3 0 0 3 32"},
    {"each in its place", "1#2#3#4#5", "1 2 3 4 5"},
    {"further fields are ignored", "1#2#3#4#5#6#7", "1 2 3 4 5"},
    {"empty field at the end", "1#2#3#4#5#", "1 2 3 4 5"},
    {"empty field is 0", "1##3##5", "1 0 3 0 5"},
    {"empty fields only", "####", "0 0 0 0 0"},
    {"no number is 0", "1#two#3#0x4#5words", "1 0 3 0 0"},
    {"beyond 32 bits is 0", "1#2#3#4#2147483648", "1 2 3 4 0"},
    {"negative", "-1#-2#-3#-4#-5", "-1 -2 -3 -4 -5"},
    {"Latin-1 is no number", "1#\xB2#3#4#5", "1 0 3 4 5"},
};

static const Given<const char *> kMissingPropertiesKeepTheOldOnes[] = {
    // clang-format off
    {"three fields", "1#2#3"},
    {"four fields", "1#2#3#4"},
    {"four empty fields", "###"},
    {"other separator", "1,2,3,4,5"},
    {"empty text", ""},
    // clang-format on
};

static const struct
{
    const char *what;
    const char *props;
    int words, bits;
} kBlockLimitsFollow[] = {
    {"32 words", "3#0#0#3#32", 32, 256},
    {"60 words", "3#0#0#3#60", 60, 480},
    {"none", "3#0#0#3#0", 0, 0},
    {"negative", "3#0#0#3#-2", -2, -16},
    {"earlier limit when fields are missing", "3", 7, 56},
    {"beyond all numbers", "3#0#0#3#2147483647", 2147483647, -8},
};

class TestCommunicationStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void propertiesAreTaken_data() { addRows(kPropertiesAreTaken); }
    void propertiesAreTaken()
    {
        const auto &row = currentRow(kPropertiesAreTaken);
        DriverFixture fixture("11#12#13#14#15");
        QCOMPARE(startWith(row.given), 1);
        QCOMPARE(settings(), latin(row.expected));
    }

    void missingPropertiesKeepTheOldOnes_data() { addRows(kMissingPropertiesKeepTheOldOnes); }
    void missingPropertiesKeepTheOldOnes()
    {
        const auto &row = currentRow(kMissingPropertiesKeepTheOldOnes);
        DriverFixture fixture("11#12#13#14#15");
        QCOMPARE(startWith(row.given), 1);
        QCOMPARE(settings(), latin("11 12 13 14 15"));
        QCOMPARE(startWith(nullptr), 1);
        QCOMPARE(settings(), latin("11 12 13 14 15"));
        QCOMPARE(driver.maxBlockBits, 120);
    }

    void blockLimitsFollow_data() { addRows(kBlockLimitsFollow); }
    void blockLimitsFollow()
    {
        const auto &row = currentRow(kBlockLimitsFollow);
        DriverFixture fixture("1#0#0#3#7");
        driver.maxBlockWordsCopy = 99;
        driver.maxBlockBits = 99;
        startWith(row.props);
        QCOMPARE(driver.maxBlockWords, row.words);
        QCOMPARE(driver.maxBlockWordsCopy, row.words);
        QCOMPARE(driver.maxBlockBits, row.bits);
    }

    void hostObjectsAreTaken()
    {
        DriverFixture fixture;
        unsigned char shm = 0;
        unsigned char recipe = 0;
        QMutex lock;
        int status = 5;

        QCOMPARE(intf_initProperty(&shm, 1234, &recipe, &status, "1#0#0#3#60", &lock), 1);
        QCOMPARE(status, 0);
        QVERIFY(driver.shmBase == &shm);
        QCOMPARE(driver.hostArg2, 1234);
        QVERIFY(driver.rcpBuffer == &recipe);
        QVERIFY(driver.shmMutex == &lock);
        QVERIFY(isFree(lock));
    }

    void hostObjectsAreReplaced()
    {
        DriverFixture fixture;
        driver.hostArg2 = 1234;
        QVERIFY(driver.shmBase != nullptr && driver.rcpBuffer != nullptr);
        QVERIFY(driver.shmMutex == &fixture.shmLock);
        startWith("");

        QVERIFY(driver.shmBase == nullptr);
        QCOMPARE(driver.hostArg2, 0);
        QVERIFY(driver.rcpBuffer == nullptr);
        QVERIFY(driver.shmMutex == nullptr);
    }

    void statusMayBeNull()
    {
        DriverFixture fixture;

        QCOMPARE(intf_initProperty(nullptr, 0, nullptr, nullptr, "2#0#0#3#60", nullptr), 1);
        QCOMPARE(driver.deviceNo, 2);
    }

    void jobsAndCacheAreEmptied()
    {
        DriverFixture fixture;
        driver.cyclicReads.append(makeItem(1, "D_W", 0, 1));
        driver.pendingWrites.append(makeItem(1, "D_W", 1, 1));
        driver.conditionReads.append(makeItem(1, "D_W", 2, 1));
        driver.dataArea.append(_DATA_());
        queueFrame(FRAME_PRO());
        startWith("1#0#0#3#60");

        QVERIFY(driver.cyclicReads.isEmpty() && driver.pendingWrites.isEmpty());
        QVERIFY(driver.conditionReads.isEmpty() && driver.dataArea.isEmpty());
        QVERIFY(driver.frames.isEmpty());
    }

    void exchangeIsReset()
    {
        DriverFixture fixture;
        driver.sendState = kJobRecipeRead;
        driver.tryCount = 9;
        driver.needHandshake = 1;
        driver.failCount = 2;
        driver.lastFailed = 1;
        driver.curFrameIndex = 4;
        driver.initDone = 0;
        startWith("1#0#0#3#60");

        const int numbers[] = {driver.sendState, driver.tryCount,   driver.needHandshake,
                               driver.failCount, driver.lastFailed, driver.curFrameIndex};
        for (const int number : numbers) {
            QCOMPARE(number, 0);
        }
        QCOMPARE(driver.initDone, 1);
    }

    void recipeAndLastConditionReadStay()
    {
        DriverFixture fixture;
        const ValueChangeCallback callback = driver.valueChangeCallback;
        const _RCP_VAR_PRO item = {7, 1, latin("D_W"), 10, 2, 0, 0};
        driver.rcpItems.append(item);
        driver.rcpBlocks.append(item);
        driver.rcpBlockStarts.append(0);
        driver.rcpIndex = 1;
        driver.lastVar = makeItem(1, "M_W", 3, 4);
        driver.propertyPage = latin("page");
        startWith("1#0#0#3#60");

        QCOMPARE(sizeOf(driver.rcpItems), 1);
        QCOMPARE(sizeOf(driver.rcpBlocks), 1);
        QCOMPARE(sizeOf(driver.rcpBlockStarts), 1);
        QCOMPARE(driver.rcpIndex, 1);
        QVERIFY(isSameRequest(driver.lastVar, makeItem(1, "M_W", 3, 4)));
        QCOMPARE(driver.propertyPage, latin("page"));
        QCOMPARE(sizeOf(driver.regNames), 16);
        QVERIFY(callback != nullptr && driver.valueChangeCallback == callback);
    }
};

QTEST_APPLESS_MAIN(TestCommunicationStart)
#include "test_communication_start.moc"
