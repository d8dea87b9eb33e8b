#include <QtTest/QtTest>

#include "serviceForProtocol/recipe/recipe_request.h"
#include "support/driver_fixture.h"
#include "support/other_thread.h"

class TestRecipeRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestBytes_data();
    void requestBytes();
    void clearing_data();
    void clearing();
    void withoutHostObjects_data();
    void withoutHostObjects();
    void readingWaitsForTheHost();
    void clearingWaitsForTheHost();
};

void TestRecipeRequest::requestBytes_data()
{
    QTest::addColumn<int>("writeByte");
    QTest::addColumn<int>("readByte");
    QTest::addColumn<bool>("write");
    QTest::addColumn<bool>("read");

    QTest::newRow("none") << 0 << 0 << false << false;
    QTest::newRow("write") << 1 << 0 << true << false;
    QTest::newRow("read") << 0 << 1 << false << true;
    QTest::newRow("both") << 1 << 1 << true << true;
    QTest::newRow("only 1 is a request") << 2 << 255 << false << false;
}

void TestRecipeRequest::requestBytes()
{
    QFETCH(int, writeByte);
    QFETCH(int, readByte);
    QFETCH(bool, write);
    QFETCH(bool, read);

    DriverFixture fixture;
    fixture.shm[60115] = static_cast<char>(writeByte);
    fixture.shm[60116] = static_cast<char>(readByte);
    const QByteArray before = fixture.shm;
    const RecipeRequests requests = readRecipeRequests();
    QCOMPARE(requests.write, write);
    QCOMPARE(requests.read, read);
    QCOMPARE(QByteArray(fixture.shm), before);
    QVERIFY(fixture.shmLock.tryLock());
    fixture.shmLock.unlock();
}

void TestRecipeRequest::clearing_data()
{
    QTest::addColumn<int>("byte");

    QTest::newRow("write") << static_cast<int>(kRecipeWriteByte);
    QTest::newRow("read") << static_cast<int>(kRecipeReadByte);
}

void TestRecipeRequest::clearing()
{
    QFETCH(int, byte);

    DriverFixture fixture;
    std::memset(fixture.shm.data(), 1, kSharedBlockSize);
    clearRecipeRequest(static_cast<RecipeRequestByte>(byte));
    QByteArray expected(kSharedBlockSize, '\x01');
    expected[byte] = '\0';
    QVERIFY(fixture.shm == expected);
    QVERIFY(fixture.shmLock.tryLock());
    fixture.shmLock.unlock();
}

void TestRecipeRequest::withoutHostObjects_data()
{
    QTest::addColumn<bool>("block");
    QTest::addColumn<bool>("mutex");
    QTest::addColumn<bool>("buffer");

    QTest::newRow("no block") << false << true << true;
    QTest::newRow("no mutex") << true << false << true;
    QTest::newRow("no recipe buffer") << true << true << false;
    QTest::newRow("nothing") << false << false << false;
}

void TestRecipeRequest::withoutHostObjects()
{
    QFETCH(bool, block);
    QFETCH(bool, mutex);
    QFETCH(bool, buffer);

    DriverFixture fixture;
    std::memset(fixture.shm.data(), 1, kSharedBlockSize);
    driver.shmBase = block ? driver.shmBase : nullptr;
    driver.shmMutex = mutex ? driver.shmMutex : nullptr;
    driver.rcpBuffer = buffer ? driver.rcpBuffer : nullptr;
    const RecipeRequests requests = readRecipeRequests();
    QCOMPARE(requests.write, false);
    QCOMPARE(requests.read, false);
    clearRecipeRequest(kRecipeWriteByte);
    clearRecipeRequest(kRecipeReadByte);
}

void TestRecipeRequest::readingWaitsForTheHost()
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

void TestRecipeRequest::clearingWaitsForTheHost()
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

QTEST_APPLESS_MAIN(TestRecipeRequest)
#include "test_recipe_request.moc"
