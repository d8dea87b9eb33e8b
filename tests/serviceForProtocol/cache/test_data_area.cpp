#include <climits>

#include <QtTest/QtTest>

#include "support/area_helpers.h"

class TestDataArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newRecordIsEmpty();
    void oneRecordForEachKey_data();
    void oneRecordForEachKey();
    void recordsKeepTheirIndex();
    void lookUpAfterRestart();
    void lookUpInAnotherList();
    void cursorFindsWhatTheLookUpFinds_data();
    void cursorFindsWhatTheLookUpFinds();
    void cursorPassesOtherRegistersBy();
    void cursorAppendsWhatIsMissing();
    void cursorFollowsAGrowingArea();
    void cursorGuessesFromWhereAUnitWas_data();
    void cursorGuessesFromWhereAUnitWas();
    void currentBytesOfRecord_data();
    void currentBytesOfRecord();
    void numberOfUnit_data();
    void numberOfUnit();
    void storingKeepsToTheArea_data();
    void storingKeepsToTheArea();
};

static int find(int stationNo, const char *letter, int unitAddr)
{
    return getIndexOfDataArea(stationNo, latin(letter), unitAddr, driver.dataArea);
}

void TestDataArea::newRecordIsEmpty()
{
    DriverFixture fixture;
    QCOMPARE(find(5, "M", 37), 0);
    const _DATA_ &record = driver.dataArea.at(0);
    QCOMPARE(record.stationNo, 5);
    QCOMPARE(record.regPrefix, latin("M"));
    QCOMPARE(record.unitAddr, 37);
    QCOMPARE(static_cast<int>(record.spareFlag), 0);
    QCOMPARE(static_cast<int>(record.writePending), 0);
    QCOMPARE(record.pendingBits, 0);
    QCOMPARE(record.monitorFlags, 0);
    QCOMPARE(record.bitMonitorFlags, 0);
    QCOMPARE(hexOf(record.readValue, 4), QByteArray("00000000"));
    QCOMPARE(hexOf(record.writeValue, 4), QByteArray("00000000"));
}

void TestDataArea::oneRecordForEachKey_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QByteArray>("letter");
    QTest::addColumn<int>("unitAddr");
    QTest::addColumn<int>("index"); // the area holds (1, M, 3) and (1, D, 3)
    QTest::addColumn<int>("size");

    QTest::newRow("the first") << 1 << QByteArray("M") << 3 << 0 << 2;
    QTest::newRow("the second") << 1 << QByteArray("D") << 3 << 1 << 2;
    QTest::newRow("another station") << 2 << QByteArray("M") << 3 << 2 << 3;
    QTest::newRow("another letter") << 1 << QByteArray("K") << 3 << 2 << 3;
    QTest::newRow("another case") << 1 << QByteArray("m") << 3 << 2 << 3;
    QTest::newRow("a longer letter") << 1 << QByteArray("MX") << 3 << 2 << 3;
    QTest::newRow("another address") << 1 << QByteArray("M") << 4 << 2 << 3;
    QTest::newRow("no letter") << 1 << QByteArray("") << 3 << 2 << 3;
    QTest::newRow("negative address") << 1 << QByteArray("M") << -3 << 2 << 3;
    QTest::newRow("extreme key") << INT_MIN << QByteArray("M") << INT_MAX << 2 << 3;
}

void TestDataArea::oneRecordForEachKey()
{
    QFETCH(int, stationNo);
    QFETCH(QByteArray, letter);
    QFETCH(int, unitAddr);
    QFETCH(int, index);
    QFETCH(int, size);

    DriverFixture fixture;
    find(1, "M", 3);
    find(1, "D", 3);
    QCOMPARE(find(stationNo, letter.constData(), unitAddr), index);
    QCOMPARE(find(stationNo, letter.constData(), unitAddr), index);
    QCOMPARE(sizeOf(driver.dataArea), size);
}

void TestDataArea::recordsKeepTheirIndex()
{
    DriverFixture fixture;
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(find(1, "D", 2 * i), i);
    }
    // Forwards, backwards and in leaps: whatever was asked before, a key leads to its own record.
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(find(1, "D", 2 * i), i);
    }
    for (int i = 49; i >= 0; --i) {
        QCOMPARE(find(1, "D", 2 * i), i);
    }
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(find(1, "D", 2 * (i * 17 % 50)), i * 17 % 50);
    }
    QCOMPARE(sizeOf(driver.dataArea), 50);
}

void TestDataArea::lookUpAfterRestart()
{
    DriverFixture fixture;
    for (int i = 0; i < 20; ++i) {
        find(1, "D", i);
    }
    fixture.start("7#0#0#3#60");
    QCOMPARE(sizeOf(driver.dataArea), 0);
    QCOMPARE(find(1, "D", 19), 0);
    QCOMPARE(find(1, "D", 18), 1);
    QCOMPARE(find(1, "D", 19), 0);
}

void TestDataArea::lookUpInAnotherList()
{
    DriverFixture fixture;
    find(1, "D", 8);
    find(1, "D", 9);
    QList<_DATA_> other;
    QCOMPARE(getIndexOfDataArea(1, latin("D"), 9, other), 0);
    QCOMPARE(sizeOf(other), 1);
    QCOMPARE(sizeOf(driver.dataArea), 2);
    QCOMPARE(find(1, "D", 9), 1);
}

void TestDataArea::cursorFindsWhatTheLookUpFinds_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QString>("letter");

    QTest::newRow("a letter of the register table") << 1 << registerLetter(latin("D_W"));
    QTest::newRow("the same letter, typed by hand") << 1 << latin("D");
    QTest::newRow("another station") << 2 << registerLetter(latin("D_W"));
    QTest::newRow("another letter") << 1 << registerLetter(latin("M_W"));
    QTest::newRow("a letter that no register has") << 1 << latin("Q");
    QTest::newRow("no letter") << 1 << QString();
}

void TestDataArea::cursorFindsWhatTheLookUpFinds()
{
    QFETCH(int, stationNo);
    QFETCH(QString, letter);

    DriverFixture fixture;
    for (int i = 0; i < 10; ++i) {
        getIndexOfDataArea(1, registerLetter(latin("D_W")), i, driver.dataArea);
        getIndexOfDataArea(2, registerLetter(latin("D_W")), i, driver.dataArea);
    }
    for (int i = 0; i < 10; ++i) {
        getIndexOfDataArea(stationNo, letter, i, driver.dataArea);
    }
    const int size = sizeOf(driver.dataArea);
    UnitCursor cursor(stationNo, letter, driver.dataArea);
    const int order[] = {3, 4, 5, 5, 5, 4, 9, 0, 1, 1, 2, 8, 8, 7, 9, 9};
    for (const int unitAddr : order) {
        QCOMPARE(cursor.indexOf(unitAddr),
                 getIndexOfDataArea(stationNo, letter, unitAddr, driver.dataArea));
    }
    QCOMPARE(sizeOf(driver.dataArea), size);
}

// The record beside the last one has the next address, but it is another register's.
void TestDataArea::cursorPassesOtherRegistersBy()
{
    DriverFixture fixture;
    const QString data = registerLetter(latin("D_W"));
    const QString relays = registerLetter(latin("M_W"));
    QCOMPARE(getIndexOfDataArea(1, data, 0, driver.dataArea), 0);
    QCOMPARE(getIndexOfDataArea(1, relays, 1, driver.dataArea), 1);
    QCOMPARE(getIndexOfDataArea(1, data, 1, driver.dataArea), 2);
    QCOMPARE(getIndexOfDataArea(2, data, 2, driver.dataArea), 3);
    QCOMPARE(getIndexOfDataArea(1, data, 2, driver.dataArea), 4);
    UnitCursor cursor(1, data, driver.dataArea);
    QCOMPARE(cursor.indexOf(0), 0);
    QCOMPARE(cursor.indexOf(1), 2);
    QCOMPARE(cursor.indexOf(2), 4);
}

void TestDataArea::cursorAppendsWhatIsMissing()
{
    DriverFixture fixture;
    const QString letter = registerLetter(latin("D_W"));
    UnitCursor cursor(1, letter, driver.dataArea);
    QCOMPARE(cursor.indexOf(7), 0);
    QCOMPARE(cursor.indexOf(8), 1);
    QCOMPARE(cursor.indexOf(7), 0);
    QCOMPARE(cursor.indexOf(-1), 2);
    QCOMPARE(sizeOf(driver.dataArea), 3);
    QCOMPARE(driver.dataArea.at(2).unitAddr, -1);
}

// What a callback appends between two units of an answer does not stand for the next unit.
void TestDataArea::cursorFollowsAGrowingArea()
{
    DriverFixture fixture;
    const QString letter = registerLetter(latin("D_W"));
    UnitCursor cursor(1, letter, driver.dataArea);
    QCOMPARE(cursor.indexOf(1), 0);
    QCOMPARE(find(1, "D", 50), 1);
    QCOMPARE(cursor.indexOf(2), 2);
    for (int i = 0; i < 1000; ++i) {
        find(3, "M", i);
    }
    QCOMPARE(cursor.indexOf(3), 1003);
    QCOMPARE(cursor.indexOf(50), 1);
}

void TestDataArea::cursorGuessesFromWhereAUnitWas_data()
{
    QTest::addColumn<int>("unitAddr"); // where the cursor starts
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("likely");
    QTest::addColumn<int>("found"); // the area holds 10 to 19, then 5 of another station, then 20

    QTest::newRow("where it was") << 10 << 0 << 10 << 0 << 0;
    QTest::newRow("behind it") << 10 << 0 << 17 << 7 << 7;
    QTest::newRow("before it") << 17 << 7 << 11 << 1 << 1;
    QTest::newRow("it was elsewhere") << 10 << 3 << 10 << 3 << 0;
    QTest::newRow("others lie between") << 19 << 9 << 20 << 10 << 15;
    QTest::newRow("the other station's, whose addresses run on") << 19 << 9 << 21 << 11 << 16;
    QTest::newRow("behind the area") << 10 << 16 << 10 << 16 << 0;
    QTest::newRow("before the area") << 10 << -1 << 10 << -1 << 0;
    QTest::newRow("far beyond") << 10 << INT_MAX << 10 << INT_MAX << 0;
    QTest::newRow("a distance that wraps round") << INT_MIN << 1 << INT_MAX << 0 << 16;
    QTest::newRow("an index that wraps round") << 10 << INT_MAX << 12 << INT_MIN + 1 << 2;
}

void TestDataArea::cursorGuessesFromWhereAUnitWas()
{
    QFETCH(int, unitAddr);
    QFETCH(int, index);
    QFETCH(int, asked);
    QFETCH(int, likely);
    QFETCH(int, found);

    DriverFixture fixture;
    const QString letter = registerLetter(latin("D_W"));
    for (int i = 0; i < 16; ++i) {
        const bool isOther = i >= 10 && i < 15;
        getIndexOfDataArea(isOther ? 2 : 1, letter, i < 15 ? 10 + i : 20, driver.dataArea);
    }
    UnitCursor cursor(1, letter, driver.dataArea);
    cursor.startAt(unitAddr, index);
    QCOMPARE(cursor.likelyIndexOf(asked), likely);
    QCOMPARE(cursor.indexOf(asked), found);
    QCOMPARE(cursor.likelyIndexOf(asked), found);
    QCOMPARE(cursor.indexOf(12), 2);
}

void TestDataArea::currentBytesOfRecord_data()
{
    QTest::addColumn<int>("writePending");
    QTest::addColumn<QByteArray>("current");

    QTest::newRow("nothing pending: what the PLC said") << 0 << QByteArray("01020304");
    QTest::newRow("pending: what the panel wrote") << 1 << QByteArray("A1A2A3A4");
    QTest::newRow("only 1 means pending") << 2 << QByteArray("01020304");
}

void TestDataArea::currentBytesOfRecord()
{
    QFETCH(int, writePending);
    QFETCH(QByteArray, current);

    _DATA_ record = _DATA_();
    setBytes(record.readValue, "01020304");
    setBytes(record.writeValue, "A1A2A3A4");
    record.writePending = static_cast<quint8>(writePending);
    QCOMPARE(hexOf(currentBytes(record), 4), current);
}

void TestDataArea::numberOfUnit_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("number");

    QTest::newRow("a byte, and none of what stands behind") << QByteArray("F1020304") << 1 << 0xF1;
    QTest::newRow("a word, low byte first") << QByteArray("34F20304") << 2 << 0xF234;
    QTest::newRow("a double word, low byte first") << QByteArray("78563412") << 4 << 0x12345678;
    QTest::newRow("a double word's highest bit") << QByteArray("00000080") << 4 << INT_MIN;
}

void TestDataArea::numberOfUnit()
{
    QFETCH(QByteArray, hex);
    QFETCH(int, bytes);
    QFETCH(int, number);

    unsigned char value[4];
    setBytes(value, hex.constData());
    QCOMPARE(unitNumber(value, bytes), number);

    unsigned char stored[4] = {0, 0, 0, 0};
    setUnitNumber(stored, bytes, number);
    QCOMPARE(hexOf(stored, 4).left(2 * bytes), hex.left(2 * bytes));
    QCOMPARE(hexOf(stored, 4).mid(2 * bytes), QByteArray(8 - 2 * bytes, '0'));
}

void TestDataArea::storingKeepsToTheArea_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("none") << 0 << QByteArray("EEEEEEEEEE");
    QTest::newRow("one of four") << 1 << QByteArray("78EEEEEEEE");
    QTest::newRow("two of four") << 2 << QByteArray("7856EEEEEE");
    QTest::newRow("four") << 4 << QByteArray("78563412EE");
    QTest::newRow("never more than four") << 5 << QByteArray("78563412EE");
    QTest::newRow("negative") << -1 << QByteArray("EEEEEEEEEE");
}

void TestDataArea::storingKeepsToTheArea()
{
    QFETCH(int, bytes);
    QFETCH(QByteArray, after);

    unsigned char value[5];
    std::memset(value, 0xEE, sizeof value);
    setUnitNumber(value, bytes, 0x12345678);
    QCOMPARE(hexOf(value, 5), after);
}

QTEST_APPLESS_MAIN(TestDataArea)
#include "test_data_area.moc"
