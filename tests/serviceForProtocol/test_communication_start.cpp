#include <QtTest/QtTest>

#include "support/driver_fixture.h"

class TestCommunicationStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void propertiesAreTaken_data();
    void propertiesAreTaken();
    void missingPropertiesKeepTheOldOnes_data();
    void missingPropertiesKeepTheOldOnes();
    void blockLimitsFollow_data();
    void blockLimitsFollow();
    void hostObjectsAreTaken();
    void hostObjectsAreReplaced();
    void statusMayBeNull();
    void jobsAndCacheAreEmptied();
    void exchangeIsReset();
    void recipeAndLastConditionReadStay();
};

static QString settings()
{
    QStringList numbers;
    numbers << QString::number(driver.deviceNo) << QString::number(driver.cacheOnlyWrites)
            << QString::number(driver.property3) << QString::number(driver.maxRetries)
            << QString::number(driver.maxBlockWords);
    return numbers.join(QLatin1String(" "));
}

static int startWith(const char *props)
{
    int status = 5;
    return intf_initProperty(nullptr, 0, nullptr, &status, props, nullptr);
}

void TestCommunicationStart::propertiesAreTaken_data()
{
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<QString>("expected");

    QTest::newRow("five numbers") << QByteArray("3#0#0#3#32") << "3 0 0 3 32";
    QTest::newRow("each in its place") << QByteArray("1#2#3#4#5") << "1 2 3 4 5";
    QTest::newRow("further fields are ignored") << QByteArray("1#2#3#4#5#6#7") << "1 2 3 4 5";
    QTest::newRow("empty field at the end") << QByteArray("1#2#3#4#5#") << "1 2 3 4 5";
    QTest::newRow("empty field is 0") << QByteArray("1##3##5") << "1 0 3 0 5";
    QTest::newRow("empty fields only") << QByteArray("####") << "0 0 0 0 0";
    QTest::newRow("no number is 0") << QByteArray("1#two#3#0x4#5words") << "1 0 3 0 0";
    QTest::newRow("beyond 32 bits is 0") << QByteArray("1#2#3#4#2147483648") << "1 2 3 4 0";
    QTest::newRow("negative") << QByteArray("-1#-2#-3#-4#-5") << "-1 -2 -3 -4 -5";
    QTest::newRow("Latin-1 is no number") << QByteArray("1#\xB2#3#4#5") << "1 0 3 4 5";
}

void TestCommunicationStart::propertiesAreTaken()
{
    QFETCH(QByteArray, props);

    DriverFixture fixture("11#12#13#14#15");
    QCOMPARE(startWith(props.constData()), 1);
    QTEST(settings(), "expected");
}

void TestCommunicationStart::missingPropertiesKeepTheOldOnes_data()
{
    QTest::addColumn<QByteArray>("props");

    QTest::newRow("three fields") << QByteArray("1#2#3");
    QTest::newRow("four fields") << QByteArray("1#2#3#4");
    QTest::newRow("four empty fields") << QByteArray("###");
    QTest::newRow("other separator") << QByteArray("1,2,3,4,5");
    QTest::newRow("empty text") << QByteArray("");
}

void TestCommunicationStart::missingPropertiesKeepTheOldOnes()
{
    QFETCH(QByteArray, props);

    DriverFixture fixture("11#12#13#14#15");
    QCOMPARE(startWith(props.constData()), 1);
    QCOMPARE(settings(), QString::fromLatin1("11 12 13 14 15"));
    QCOMPARE(startWith(nullptr), 1);
    QCOMPARE(settings(), QString::fromLatin1("11 12 13 14 15"));
    QCOMPARE(driver.maxBlockBits, 120);
}

void TestCommunicationStart::blockLimitsFollow_data()
{
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<int>("words");
    QTest::addColumn<int>("bits");

    QTest::newRow("32 words") << QByteArray("3#0#0#3#32") << 32 << 256;
    QTest::newRow("60 words") << QByteArray("3#0#0#3#60") << 60 << 480;
    QTest::newRow("none") << QByteArray("3#0#0#3#0") << 0 << 0;
    QTest::newRow("negative") << QByteArray("3#0#0#3#-2") << -2 << -16;
    QTest::newRow("earlier limit when fields are missing") << QByteArray("3") << 7 << 56;
    QTest::newRow("beyond all numbers") << QByteArray("3#0#0#3#2147483647") << 2147483647 << -8;
}

void TestCommunicationStart::blockLimitsFollow()
{
    QFETCH(QByteArray, props);

    DriverFixture fixture("1#0#0#3#7");
    driver.maxBlockWordsCopy = 99;
    driver.maxBlockBits = 99;
    startWith(props.constData());
    QTEST(driver.maxBlockWords, "words");
    QTEST(driver.maxBlockWordsCopy, "words");
    QTEST(driver.maxBlockBits, "bits");
}

void TestCommunicationStart::hostObjectsAreTaken()
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
    QVERIFY(lock.tryLock());
    lock.unlock();
}

void TestCommunicationStart::hostObjectsAreReplaced()
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

void TestCommunicationStart::statusMayBeNull()
{
    DriverFixture fixture;

    QCOMPARE(intf_initProperty(nullptr, 0, nullptr, nullptr, "2#0#0#3#60", nullptr), 1);
    QCOMPARE(driver.deviceNo, 2);
}

void TestCommunicationStart::jobsAndCacheAreEmptied()
{
    DriverFixture fixture;
    driver.cyclicReads.append(makeItem(1, "D_W", 0, 1));
    driver.pendingWrites.append(makeItem(1, "D_W", 1, 1));
    driver.conditionReads.append(makeItem(1, "D_W", 2, 1));
    driver.dataArea.append(_DATA_());
    queueFrame(FRAME_PRO());
    startWith("1#0#0#3#60");

    QVERIFY(driver.cyclicReads.isEmpty());
    QVERIFY(driver.pendingWrites.isEmpty());
    QVERIFY(driver.conditionReads.isEmpty());
    QVERIFY(driver.dataArea.isEmpty());
    QVERIFY(driver.frames.isEmpty());
}

void TestCommunicationStart::exchangeIsReset()
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

    QCOMPARE(driver.sendState, 0);
    QCOMPARE(driver.tryCount, 0);
    QCOMPARE(driver.needHandshake, 0);
    QCOMPARE(driver.failCount, 0);
    QCOMPARE(driver.lastFailed, 0);
    QCOMPARE(driver.curFrameIndex, 0);
    QCOMPARE(driver.initDone, 1);
}

void TestCommunicationStart::recipeAndLastConditionReadStay()
{
    DriverFixture fixture;
    const ValueChangeCallback callback = driver.valueChangeCallback;
    const _RCP_VAR_PRO item = {7, 1, QString::fromLatin1("D_W"), 10, 2, 0, 0};
    driver.rcpItems.append(item);
    driver.rcpBlocks.append(item);
    driver.rcpBlockStarts.append(0);
    driver.rcpIndex = 1;
    driver.lastVar = makeItem(1, "M_W", 3, 4);
    driver.propertyPage = QString::fromLatin1("page");
    startWith("1#0#0#3#60");

    QCOMPARE(static_cast<int>(driver.rcpItems.size()), 1);
    QCOMPARE(static_cast<int>(driver.rcpBlocks.size()), 1);
    QCOMPARE(static_cast<int>(driver.rcpBlockStarts.size()), 1);
    QCOMPARE(driver.rcpIndex, 1);
    QVERIFY(isSameRequest(driver.lastVar, makeItem(1, "M_W", 3, 4)));
    QCOMPARE(driver.propertyPage, QString::fromLatin1("page"));
    QCOMPARE(static_cast<int>(driver.regNames.size()), 16);
    QVERIFY(callback != nullptr && driver.valueChangeCallback == callback);
}

QTEST_APPLESS_MAIN(TestCommunicationStart)
#include "test_communication_start.moc"
