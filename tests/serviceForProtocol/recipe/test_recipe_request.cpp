#include <QtTest/QtTest>

#include "serviceForProtocol/recipe/recipe_request.h"
#include "support/driver_fixture.h"
#include "support/other_thread.h"
#include "support/rows.h"

static const struct
{
    const char *what;
    int writeByte, readByte;
    bool write, read;
} kRequestBytes[] = {
    {"none", 0, 0, false, false},
    {"write", 1, 0, true, false},
    {"read", 0, 1, false, true},
    {"both", 1, 1, true, true},
    {"only 1 is a request", 2, 255, false, false},
};

static const Given<int> kClearing[] = {
    {"write", static_cast<int>(kRecipeWriteByte)},
    {"read", static_cast<int>(kRecipeReadByte)},
};

static const struct
{
    const char *what;
    bool block, mutex, buffer;
} kWithoutHostObjects[] = {
    {"no block", false, true, true},
    {"no mutex", true, false, true},
    {"no recipe buffer", true, true, false},
    {"nothing", false, false, false},
};

class TestRecipeRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestBytes_data() { addRows(kRequestBytes); }
    void requestBytes()
    {
        const auto &row = currentRow(kRequestBytes);
        DriverFixture fixture;
        fixture.shm[60115] = static_cast<char>(row.writeByte);
        fixture.shm[60116] = static_cast<char>(row.readByte);
        const QByteArray before = fixture.shm;
        const RecipeRequests requests = readRecipeRequests();
        QCOMPARE(requests.write, row.write);
        QCOMPARE(requests.read, row.read);
        QCOMPARE(QByteArray(fixture.shm), before);
        QVERIFY(isFree(fixture.shmLock));
    }

    void clearing_data() { addRows(kClearing); }
    void clearing()
    {
        const auto &row = currentRow(kClearing);
        DriverFixture fixture;
        std::memset(fixture.shm.data(), 1, kSharedBlockSize);
        clearRecipeRequest(static_cast<RecipeRequestByte>(row.given));
        QByteArray expected(kSharedBlockSize, '\x01');
        expected[row.given] = '\0';
        QVERIFY(fixture.shm == expected);
        QVERIFY(isFree(fixture.shmLock));
    }

    void withoutHostObjects_data() { addRows(kWithoutHostObjects); }
    void withoutHostObjects()
    {
        const auto &row = currentRow(kWithoutHostObjects);
        DriverFixture fixture;
        std::memset(fixture.shm.data(), 1, kSharedBlockSize);
        driver.shmBase = row.block ? driver.shmBase : nullptr;
        driver.shmMutex = row.mutex ? driver.shmMutex : nullptr;
        driver.rcpBuffer = row.buffer ? driver.rcpBuffer : nullptr;
        const RecipeRequests requests = readRecipeRequests();
        QCOMPARE(requests.write, false);
        QCOMPARE(requests.read, false);
        clearRecipeRequest(kRecipeWriteByte);
        clearRecipeRequest(kRecipeReadByte);
    }

    void readingWaitsForTheHost()
    {
        DriverFixture fixture;
        RecipeRequests requests = {false, false};
        OtherThread exchange;
        fixture.shmLock.lock();
        exchange.begin([&requests] { requests = readRecipeRequests(); });
        letOthersRun();
        driver.shmBase[60115] = 1;
        driver.shmBase[60116] = 1;
        fixture.shmLock.unlock();
        exchange.await();
        QVERIFY(requests.write);
        QVERIFY(requests.read);
    }

    void clearingWaitsForTheHost()
    {
        DriverFixture fixture;
        OtherThread exchange;
        fixture.shmLock.lock();
        driver.shmBase[60115] = 1;
        exchange.begin([] { clearRecipeRequest(kRecipeWriteByte); });
        letOthersRun();
        const int whileLocked = driver.shmBase[60115];
        fixture.shmLock.unlock();
        exchange.await();
        QCOMPARE(whileLocked, 1);
        QCOMPARE(static_cast<int>(driver.shmBase[60115]), 0);
    }
};

QTEST_APPLESS_MAIN(TestRecipeRequest)
#include "test_recipe_request.moc"
