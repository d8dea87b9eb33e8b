#include "plc/wire.h"

#include "wire_text.h"

#include <QtTest>

using namespace plc;

class TestWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blockCheck_data();
    void blockCheck();
    void hex_data();
    void hex();
    void caseDecidesOnBlockCheck_data();
    void caseDecidesOnBlockCheck();
    void readerStaysInside();
    void readerTakesHex_data();
    void readerTakesHex();
};

void TestWire::blockCheck_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("check");
    QTest::newRow("nothing") << QByteArray() << QByteArray("00");
    QTest::newRow("one byte") << wire("[05]") << QByteArray("05");
    // 05+30+31+72+53+53+04 = 182
    QTest::newRow("low byte of the sum") << wire("[ENQ]01rSS[EOT]") << QByteArray("82");
    QTest::newRow("upper-case digits") << wire("[AF]") << QByteArray("AF");
    QTest::newRow("bytes are unsigned") << wire("[FF][FF]") << QByteArray("FE");
}

void TestWire::blockCheck()
{
    QFETCH(QByteArray, bytes);
    QTEST(plc::blockCheck(bytes), "check");
}

void TestWire::hex_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<int>("digits");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("filled with zeros") << 0xAU << 4 << QByteArray("000A");
    QTest::newRow("upper case") << 0xBEEFU << 4 << QByteArray("BEEF");
    QTest::newRow("high digits cut") << 0x1234U << 2 << QByteArray("34");
}

void TestWire::hex()
{
    QFETCH(uint, value);
    QFETCH(int, digits);
    QTEST(plc::hex(value, digits), "text");
}

void TestWire::caseDecidesOnBlockCheck_data()
{
    QTest::addColumn<char>("command");
    QTest::addColumn<bool>("wanted");
    QTest::newRow("r") << 'r' << true;
    QTest::newRow("w") << 'w' << true;
    QTest::newRow("R") << 'R' << false;
    QTest::newRow("W") << 'W' << false;
    QTest::newRow("no letter") << '1' << false;
}

void TestWire::caseDecidesOnBlockCheck()
{
    QFETCH(char, command);
    QTEST(wantsBlockCheck(command), "wanted");
}

void TestWire::readerStaysInside()
{
    FieldReader reader("0AXY");
    QCOMPARE(reader.take(5).has_value(), false);
    QCOMPARE(reader.take(-1).has_value(), false);
    QCOMPARE(reader.left(), 4);
    QCOMPARE(reader.takeHex(2).value_or(-1), 10);
    QCOMPARE(reader.takeHex(2).has_value(), false);
    QCOMPARE(reader.left(), 2);
    QCOMPARE(reader.take(2).value_or(QByteArray()), QByteArray("XY"));
    QVERIFY(reader.atEnd());
    QCOMPARE(reader.take(1).has_value(), false);
    QCOMPARE(reader.takeHex(1).has_value(), false);
}

void TestWire::readerTakesHex_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("FFFF") << QByteArray("FFFF") << 0xFFFF;
    QTest::newRow("either case") << QByteArray("aBcD") << 0xABCD;
    QTest::newRow("no sign") << QByteArray("-001") << -1;
    QTest::newRow("no blank") << QByteArray(" 001") << -1;
    QTest::newRow("no 0x") << QByteArray("0x12") << -1;
    QTest::newRow("G is no digit") << QByteArray("000G") << -1;
    QTest::newRow("too short") << QByteArray("000") << -1;
}

void TestWire::readerTakesHex()
{
    QFETCH(QByteArray, text);
    QTEST(FieldReader(text).takeHex(4).value_or(-1), "value");
}

QTEST_APPLESS_MAIN(TestWire)
#include "test_wire.moc"
