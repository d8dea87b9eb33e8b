#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/request/condition_read.h"
#include "support/area_helpers.h"

class TestConditionRead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesOfWidths_data();
    void entriesOfWidths();
    void entriesOfRegisters_data();
    void entriesOfRegisters();
    void entryCarriesTheRequest();
    void repeatedRequests();
    void fullList();
    void bitNamesQueueNothing_data();
    void bitNamesQueueNothing();
    void noPieceNoEntry_data();
    void noPieceNoEntry();
    void hugeCountsEnd_data();
    void hugeCountsEnd();
};

static int ask(const char *regName, int startAddr, int count, int bitFlag = 0)
{
    KEY_ADDRESS key = makeKey(1, regName, startAddr, count, bitFlag);
    return intf_addConditionRead(key, 0);
}

void TestConditionRead::entriesOfWidths_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("list"); // pieces of 4 words, from address 10 on

    QTest::newRow("words") << 16 << 3 << latin("1 M_W 10 x3");
    QTest::newRow("words, a full piece") << 16 << 4 << latin("1 M_W 10 x4");
    QTest::newRow("words, pieces") << 16 << 9 << latin("1 M_W 10 x4, 1 M_W 14 x4, 1 M_W 18 x1");
    QTest::newRow("words, two full pieces") << 16 << 8 << latin("1 M_W 10 x4, 1 M_W 14 x4");
    QTest::newRow("bytes: twice as many") << 8 << 6 << latin("1 M_W 10 x8, 1 M_W 14 x4");
    QTest::newRow("32: none") << 32 << 6 << latin("1 M_W 10 x0, 1 M_W 14 x0");
    QTest::newRow("single bits: sixteen times as many") << 1 << 2 << latin("1 M_W 10 x32");
    QTest::newRow("no width: the count as it is") << 0 << 2 << latin("1 M_W 10 x2");
    QTest::newRow("no units: an entry of none") << 16 << 0 << latin("1 M_W 10 x0");
}

void TestConditionRead::entriesOfWidths()
{
    QFETCH(int, wordBits);
    QFETCH(int, count);
    QFETCH(QString, list);

    DriverFixture fixture("7#0#0#3#4");
    queueConditionRead(makeWidths(wordBits, wordBits), makeKey(1, "M_W", 10, count), 0);
    QCOMPARE(listText(driver.conditionReads), list);
    QCOMPARE(itemText(driver.lastVar), itemText(driver.conditionReads.last()));
}

void TestConditionRead::entriesOfRegisters_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("bitFlag");
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<QString>("list");

    QTest::newRow("300 words in pieces of 120")
        << QByteArray("D_W") << 300 << 0 << QByteArray("7#0#0#3#120")
        << latin("1 D_W 7 x120, 1 D_W 127 x120, 1 D_W 247 x60");
    QTest::newRow("the flag of bits gives eight times the piece, whatever the register")
        << QByteArray("D_W") << 20 << -1 << QByteArray("7#0#0#3#1")
        << latin("1 D_W 7 x8, 1 D_W 15 x8, 1 D_W 23 x4");
    QTest::newRow("any other flag does not")
        << QByteArray("D_W") << 2 << 1 << QByteArray("7#0#0#3#1")
        << latin("1 D_W 7 x1, 1 D_W 8 x1");
    QTest::newRow("another negative flag does not either")
        << QByteArray("D_W") << 2 << -2 << QByteArray("7#0#0#3#1")
        << latin("1 D_W 7 x1, 1 D_W 8 x1");
    QTest::newRow("contacts: sixteen times as many")
        << QByteArray("TX") << 3 << 0 << QByteArray("7#0#0#3#60") << latin("1 TX 7 x48");
    QTest::newRow("unknown name: words, as the spare row says")
        << QByteArray("Q_W") << 2 << 0 << QByteArray("7#0#0#3#60") << latin("1 Q_W 7 x2");
}

void TestConditionRead::entriesOfRegisters()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, count);
    QFETCH(int, bitFlag);
    QFETCH(QByteArray, props);
    QFETCH(QString, list);

    DriverFixture fixture(props.constData());
    QCOMPARE(ask(regName.constData(), 7, count, bitFlag), 1);
    QCOMPARE(listText(driver.conditionReads), list);
}

void TestConditionRead::entryCarriesTheRequest()
{
    DriverFixture fixture("7#0#0#3#2");
    KEY_ADDRESS key = makeKey(31, "D_W", 5, 3);
    std::memset(key.data, 0x55, sizeof key.data);
    QCOMPARE(intf_addConditionRead(key, 9), 1);
    QCOMPARE(listText(driver.conditionReads), latin("31 D_W 5 x2, 31 D_W 7 x1"));
    QCOMPARE(driver.conditionReads.at(0).opKind, 9);
    QCOMPARE(driver.conditionReads.at(1).opKind, 9);
    QCOMPARE(bytesOf(driver.conditionReads.at(0).data, 1024), QByteArray(1024, '\0'));
    QCOMPARE(itemText(driver.lastVar), latin("31 D_W 7 x1"));
    QCOMPARE(driver.lastVar.opKind, 9);
    QCOMPARE(key.count, 3);
    QVERIFY(driver.dataArea.isEmpty());
    QCOMPARE(callsText(), QString());
}

void TestConditionRead::repeatedRequests()
{
    DriverFixture fixture;
    ask("D_W", 1, 1);
    ask("D_W", 2, 1);
    ask("D_W", 3, 1);
    ask("D_W", 2, 1);
    QCOMPARE(listText(driver.conditionReads), latin("1 D_W 1 x1, 1 D_W 2 x1, 1 D_W 3 x1"));
    QCOMPARE(itemText(driver.lastVar), latin("1 D_W 2 x1"));
    ask("D_W", 1, 1);
    QCOMPARE(listText(driver.conditionReads),
             latin("1 D_W 1 x1, 1 D_W 2 x1, 1 D_W 3 x1, 1 D_W 1 x1"));
}

void TestConditionRead::fullList()
{
    DriverFixture fixture;
    for (int i = 0; i < 600; ++i) {
        ask("D_W", i, 1);
    }
    QCOMPARE(sizeOf(driver.conditionReads), 513);
    QCOMPARE(driver.conditionReads.at(511).startAddr, 511);
    QCOMPARE(driver.conditionReads.at(512).startAddr, 599);
    QCOMPARE(driver.lastVar.startAddr, 599);
}

void TestConditionRead::bitNamesQueueNothing_data()
{
    QTest::addColumn<QByteArray>("regName");

    QTest::newRow("M_bit") << QByteArray("M_bit");
    QTest::newRow("D_bit") << QByteArray("D_bit");
    QTest::newRow("unknown bit name") << QByteArray("Q_bit");
}

void TestConditionRead::bitNamesQueueNothing()
{
    QFETCH(QByteArray, regName);

    DriverFixture fixture;
    ask("D_W", 5, 1);
    QCOMPARE(ask(regName.constData(), 35, 1, -1), 1);
    QCOMPARE(ask(regName.constData(), 35, 2000, -1), 1);
    QCOMPARE(listText(driver.conditionReads), latin("1 D_W 5 x1"));
    QCOMPARE(itemText(driver.lastVar), latin("1 D_W 5 x1"));
}

void TestConditionRead::noPieceNoEntry_data()
{
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<int>("bitFlag");

    QTest::newRow("no limit") << QByteArray("7#0#0#3#0") << 0;
    QTest::newRow("no limit, bits") << QByteArray("7#0#0#3#0") << -1;
    QTest::newRow("negative") << QByteArray("7#0#0#3#-5") << 0;
    QTest::newRow("most negative") << QByteArray("7#0#0#3#-2147483648") << 0;
}

void TestConditionRead::noPieceNoEntry()
{
    QFETCH(QByteArray, props);
    QFETCH(int, bitFlag);

    DriverFixture fixture(props.constData());
    QCOMPARE(ask("D_W", 5, 10, bitFlag), 1);
    QVERIFY(driver.conditionReads.isEmpty());
}

void TestConditionRead::hugeCountsEnd_data()
{
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");

    QTest::newRow("endless") << 0 << INT_MAX;
    QTest::newRow("endless, from the last address on") << INT_MAX << INT_MAX;
    QTest::newRow("just below the wrap") << 2147483600 << 480;
}

void TestConditionRead::hugeCountsEnd()
{
    QFETCH(int, startAddr);
    QFETCH(int, count);

    DriverFixture fixture;
    QCOMPARE(ask("D_W", startAddr, count), 1);
    QVERIFY(!driver.conditionReads.isEmpty());
    QVERIFY(sizeOf(driver.conditionReads) <= 513);
    QCOMPARE(driver.conditionReads.at(0).count, 60);
    QCOMPARE(driver.conditionReads.at(0).startAddr, startAddr);
}

QTEST_APPLESS_MAIN(TestConditionRead)
#include "test_condition_read.moc"
