#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/cache/value_read.h"
#include "support/area_helpers.h"

class TestValueRead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutOfWidths_data();
    void layoutOfWidths();
    void bitsOfRegisters_data();
    void bitsOfRegisters();
    void unknownUnitsReadAsZero();
    void pendingWriteShowsAtOnce();
    void panelWriteShowsBeforeTheAnswer();
    void neverMoreThanTheValueArea_data();
    void neverMoreThanTheValueArea();
    void nullBuffer();
};

// Unit n of letter M holds the bytes 1n 2n 3n 4n.
static void fillUnits()
{
    for (int n = 0; n < 10; ++n) {
        _DATA_ &record = unitAt(1, "M", n);
        for (int i = 0; i < 4; ++i) {
            record.readValue[i] = static_cast<unsigned char>(0x10 * (i + 1) + n);
        }
    }
}

void TestValueRead::layoutOfWidths_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<bool>("bitName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("hex");

    QTest::newRow("32 over words, low unit first")
        << 32 << 16 << false << 2 << 4 << QByteArray("1222132314241525");
    QTest::newRow("32 over words, odd word dropped")
        << 32 << 16 << false << 2 << 3 << QByteArray("12221323");
    QTest::newRow("32 over words, too few") << 32 << 16 << false << 2 << 1 << QByteArray();
    QTest::newRow("32 over bytes") << 32 << 8 << false << 2 << 2 << QByteArray("12131415");
    QTest::newRow("32 over bytes, two values")
        << 32 << 8 << false << 2 << 4 << QByteArray("1213141516171819");
    QTest::newRow("32 over bytes, too few") << 32 << 8 << false << 2 << 1 << QByteArray();
    QTest::newRow("32 whole") << 32 << 32 << false << 2 << 4 << QByteArray("1222324213233343");
    QTest::newRow("32 whole, too few") << 32 << 32 << false << 2 << 1 << QByteArray();
    QTest::newRow("16 over bytes") << 16 << 8 << false << 2 << 2 << QByteArray("12131415");
    QTest::newRow("16 over words") << 16 << 16 << false << 2 << 2 << QByteArray("12221323");
    QTest::newRow("16 over anything else") << 16 << 32 << false << 2 << 1 << QByteArray("1222");
    QTest::newRow("16, none") << 16 << 16 << false << 2 << 0 << QByteArray();
    QTest::newRow("16, negative") << 16 << 16 << false << 2 << -1 << QByteArray();
    QTest::newRow("8") << 8 << 8 << false << 2 << 3 << QByteArray("121314");
    QTest::newRow("1 without bit name") << 1 << 1 << false << 2 << 3 << QByteArray("121314");
    // Unit 2 is 0x2212: bits 1, 4, 9 and 13.
    QTest::newRow("bits of a word")
        << 1 << 16 << true << 32 << 16 << QByteArray("00010000010000000001000000010000");
    QTest::newRow("bits across words") << 1 << 16 << true << 45 << 5 << QByteArray("0100000101");
    // Units 2 and 3 are 0x12 and 0x13.
    QTest::newRow("bits across bytes") << 1 << 8 << true << 20 << 6 << QByteArray("010000000101");
    QTest::newRow("8 with bit name") << 8 << 16 << true << 41 << 1 << QByteArray("01");
    QTest::newRow("bits of 32: nothing") << 1 << 32 << true << 32 << 4 << QByteArray();
    QTest::newRow("other width: nothing") << 64 << 16 << false << 2 << 4 << QByteArray();
}

void TestValueRead::layoutOfWidths()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(bool, bitName);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QByteArray, hex);

    DriverFixture fixture;
    fillUnits();
    unsigned char buffer[40];
    std::memset(buffer, 0xEE, sizeof buffer);
    readValues(makeWidths(unitBits, wordBits, bitName), 1, latin("M"), startAddr, count, buffer);
    QCOMPARE(hexOf(buffer, 40), hex + QByteArray(80 - sizeOf(hex), 'E'));
}

void TestValueRead::bitsOfRegisters_data()
{
    QTest::addColumn<QString>("regName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("hex");

    QTest::newRow("M_bit 27: bit 3 of the high byte of word 1")
        << latin("M_bit") << 27 << 1 << QByteArray("01");
    QTest::newRow("M_bit 19: bit 3 of the low byte of word 1")
        << latin("M_bit") << 19 << 1 << QByteArray("00");
    QTest::newRow("M_W 1") << latin("M_W") << 1 << 1 << QByteArray("0008");
    QTest::newRow("TX 4") << latin("TX") << 4 << 2 << QByteArray("0100");
    QTest::newRow("the letter of an unknown name, a byte a unit")
        << latin("M_Q") << 1 << 1 << QByteArray("00");
    QTest::newRow("an unknown bit name, a bit of a word")
        << latin("M_bitQ") << 27 << 1 << QByteArray("01");
}

void TestValueRead::bitsOfRegisters()
{
    QFETCH(QString, regName);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QByteArray, hex);

    DriverFixture fixture;
    setBytes(unitAt(1, "M", 1).readValue, "0008");
    setBytes(unitAt(1, "TX", 4).readValue, "01");
    unsigned char buffer[4];
    std::memset(buffer, 0xEE, sizeof buffer);
    QCOMPARE(intf_getData(1, regName, startAddr, count, buffer), 1);
    QCOMPARE(hexOf(buffer, 4), hex + QByteArray(8 - sizeOf(hex), 'E'));
}

void TestValueRead::unknownUnitsReadAsZero()
{
    DriverFixture fixture;
    QString name = latin("D_W");
    unsigned char buffer[6];
    std::memset(buffer, 0xEE, sizeof buffer);
    QCOMPARE(intf_getData(9, name, 300, 2, buffer), 1);
    QCOMPARE(hexOf(buffer, 6), QByteArray("00000000EEEE"));
    QCOMPARE(sizeOf(driver.dataArea), 2);
    QCOMPARE(driver.dataArea.at(1).stationNo, 9);
    QCOMPARE(driver.dataArea.at(1).regPrefix, latin("D"));
    QCOMPARE(driver.dataArea.at(1).unitAddr, 301);
    QCOMPARE(DriverFixture::calls(), QStringList());
}

void TestValueRead::pendingWriteShowsAtOnce()
{
    DriverFixture fixture;
    fillUnits();
    _DATA_ &record = unitAt(1, "M", 3);
    setBytes(record.writeValue, "A1A2A3A4");
    record.writePending = 1;
    unsigned char buffer[6];
    QString name = latin("M_W");
    intf_getData(1, name, 2, 3, buffer);
    QCOMPARE(hexOf(buffer, 6), QByteArray("1222A1A21424"));
    QString bits = latin("M_bit");
    intf_getData(1, bits, 3 * 16 + 5, 3, buffer); // 0xA2A1: bits 5 and 7
    QCOMPARE(hexOf(buffer, 3), QByteArray("010001"));
}

void TestValueRead::panelWriteShowsBeforeTheAnswer()
{
    DriverFixture fixture;
    QString name = latin("D_W");
    unsigned char value[2] = {0x34, 0x12};
    intf_setData(1, name, 5, 1, value, 0);
    unsigned char buffer[2] = {0, 0};
    QCOMPARE(intf_getData(1, name, 5, 1, buffer), 1);
    QCOMPARE(hexOf(buffer, 2), QByteArray("3412"));
    QCOMPARE(hexOf(unitAt(1, "D", 5).readValue, 2), QByteArray("0000"));
}

void TestValueRead::neverMoreThanTheValueArea_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<bool>("bitName");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("written");

    QTest::newRow("512 words") << 16 << 16 << false << 512 << 1024;
    QTest::newRow("513 words") << 16 << 16 << false << 513 << 1024;
    QTest::newRow("endless words") << 16 << 16 << false << INT_MAX << 1024;
    QTest::newRow("endless double words of words") << 32 << 16 << false << INT_MAX << 1024;
    QTest::newRow("endless double words of bytes") << 32 << 8 << false << INT_MAX << 1024;
    QTest::newRow("endless whole double words") << 32 << 32 << false << INT_MAX << 1024;
    QTest::newRow("endless contacts") << 1 << 1 << false << INT_MAX << 1024;
    QTest::newRow("endless bits") << 1 << 16 << true << INT_MAX << 1024;
    QTest::newRow("most negative") << 16 << 16 << false << INT_MIN << 0;
}

void TestValueRead::neverMoreThanTheValueArea()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(bool, bitName);
    QFETCH(int, count);
    QFETCH(int, written);

    DriverFixture fixture;
    QByteArray buffer(1100, '\xEE');
    readValues(makeWidths(unitBits, wordBits, bitName), 1, latin("D"), 0, count,
               DriverFixture::bytes(buffer));
    QCOMPARE(buffer, QByteArray(written, '\0') + QByteArray(1100 - written, '\xEE'));
}

void TestValueRead::nullBuffer()
{
    DriverFixture fixture;
    QString name = latin("D_W");
    QCOMPARE(intf_getData(1, name, 0, 1, nullptr), 1);
}

QTEST_APPLESS_MAIN(TestValueRead)
#include "test_value_read.moc"
