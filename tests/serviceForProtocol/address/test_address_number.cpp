#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_number.h"
#include "shared/protocol.h"

class TestAddressNumber : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameLeadsToItsIndex_data();
    void nameLeadsToItsIndex();
    void plainTextIsRead_data();
    void plainTextIsRead();
    void wordBitTextIsRead_data();
    void wordBitTextIsRead();
    void patternTellsTheForm_data();
    void patternTellsTheForm();
    void numberIsWrittenByItsPattern_data();
    void numberIsWrittenByItsPattern();
    void weightOrdersAddresses_data();
    void weightOrdersAddresses();
};

void TestAddressNumber::nameLeadsToItsIndex_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index");

    QTest::newRow("first") << "D_W" << 0;
    QTest::newRow("last") << "D_bit" << 15;
    QTest::newRow("letter case counts") << "d_bit" << -1;
    QTest::newRow("trailing blank") << "D_bit " << -1;
    QTest::newRow("empty") << "" << -1;
}

void TestAddressNumber::nameLeadsToItsIndex()
{
    QFETCH(QString, name);

    QTEST(getIndexFromRegName(name), "index");
}

// Reads one row of the two tables below.
static void checkReading()
{
    QFETCH(QString, text);
    QFETCH(QString, format);
    QFETCH(QString, name);
    QFETCH(int, value);

    int number = 77;
    QTEST(a2i(text, number, format, name), "result");
    QCOMPARE(number, value);
}

void TestAddressNumber::plainTextIsRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("value"); // was 77 before

    // clang-format off
    QTest::newRow("decimal") << "0100" << "DDDD" << "D_W" << 1 << 100;
    QTest::newRow("hexadecimal") << "0100" << "HHHH" << "D_W" << 1 << 256;
    QTest::newRow("octal") << "0100" << "OOOO" << "D_W" << 1 << 64;
    QTest::newRow("hexadecimal letters") << "1f" << "HH" << "D_W" << 1 << 31;
    QTest::newRow("one letter of pattern") << "17" << "O" << "D_W" << 1 << 15;
    QTest::newRow("unknown pattern is decimal") << "0100" << "XXXX" << "D_W" << 1 << 100;
    QTest::newRow("lower-case pattern is decimal") << "0100" << "hhhh" << "D_W" << 1 << 100;
    QTest::newRow("empty pattern is decimal") << "0100" << "" << "D_W" << 1 << 100;
    QTest::newRow("digits are not counted") << "1234567" << "DD" << "D_W" << 1 << 1234567;
    QTest::newRow("negative") << "-5" << "DDDD" << "D_W" << 1 << -5;
    QTest::newRow("plain pattern of a bit name") << "12" << "DDD" << "M_bit" << 1 << 12;
    QTest::newRow("no number") << "abc" << "DDDD" << "D_W" << -1 << 0;
    QTest::newRow("number with a tail") << "12A" << "DDDD" << "D_W" << -1 << 0;
    QTest::newRow("digit outside the radix") << "18" << "OOOO" << "D_W" << -1 << 0;
    QTest::newRow("word.bit under a plain pattern") << "12.5" << "DDDD" << "D_W" << -1 << 0;
    QTest::newRow("empty text") << "" << "DDDD" << "D_W" << -1 << 0;
    QTest::newRow("beyond 32 bits") << "2147483648" << "DDDD" << "D_W" << -1 << 0;
    QTest::newRow("top of the numbers") << "2147483647" << "DDDD" << "D_W" << 1 << INT_MAX;
    // clang-format on
}

void TestAddressNumber::plainTextIsRead()
{
    checkReading();
}

void TestAddressNumber::wordBitTextIsRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("value"); // was 77 before

    // clang-format off
    QTest::newRow("word.bit") << "12.5" << "DDD.dd" << "M_bit" << 1 << 197;
    QTest::newRow("word.bit, leading zero") << "12.05" << "DDD.dd" << "M_bit" << 1 << 197;
    QTest::newRow("word.bit, negative bit") << "3.-1" << "DDD.dd" << "M_bit" << 1 << 47;
    QTest::newRow("bit too high") << "12.16" << "DDD.dd" << "M_bit" << -1 << 77;
    QTest::newRow("word alone") << "12" << "DDD.dd" << "M_bit" << -1 << 77;
    QTest::newRow("three parts") << "1.2.3" << "DDD.dd" << "M_bit" << -1 << 77;
    QTest::newRow("number that is the fault's mark") << "0.-1" << "DDD.dd" << "M_bit" << -1 << 77;
    QTest::newRow("word.bit of a word register") << "12.5" << "DDD.dd" << "D_W" << 1 << 0;
    QTest::newRow("differing letters are word.bit") << "12.5" << "DH" << "M_bit" << 1 << 197;
    // clang-format on
}

void TestAddressNumber::wordBitTextIsRead()
{
    checkReading();
}

void TestAddressNumber::patternTellsTheForm_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("wordBit");

    QTest::newRow("equal letters") << "DDDD" << false;
    QTest::newRow("one letter") << "D" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("word.bit") << "DDD.dd" << true;
    QTest::newRow("first letter differs") << "HDDD" << true;
    QTest::newRow("last letter differs") << "DDDH" << true;
    QTest::newRow("letter case differs") << "Dd" << true;
}

void TestAddressNumber::patternTellsTheForm()
{
    QFETCH(QString, format);

    QTEST(isWordBitFormat(format), "wordBit");
}

void TestAddressNumber::numberIsWrittenByItsPattern_data()
{
    QTest::addColumn<int>("address");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("text");

    // clang-format off
    QTest::newRow("decimal without padding") << 12 << "DDDD" << "12";
    QTest::newRow("hexadecimal in lower case") << 0xAB << "HHHH" << "ab";
    QTest::newRow("octal") << 64 << "OOOO" << "100";
    QTest::newRow("zero") << 0 << "HHHH" << "0";
    QTest::newRow("negative decimal is unsigned") << -1 << "DDDD" << "4294967295";
    QTest::newRow("negative hexadecimal is unsigned") << -1 << "HHHH" << "ffffffff";
    QTest::newRow("negative octal is unsigned") << -1 << "OOOO" << "37777777777";
    // clang-format on
}

void TestAddressNumber::numberIsWrittenByItsPattern()
{
    QFETCH(int, address);
    QFETCH(QString, format);

    QTEST(plainAddressText(address, format), "text");
}

void TestAddressNumber::weightOrdersAddresses_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("address");
    QTest::addColumn<quint32>("weight");

    QTest::newRow("address") << 0 << "D_W" << 10 << 10U;
    QTest::newRow("register and station") << 1 << "C_W" << 0 << 1114095U;
    QTest::newRow("next register") << 0 << "C_W" << 0 << 65535U;
    QTest::newRow("last register") << 0 << "D_bit" << 3 << 983028U;
    QTest::newRow("next station") << 1 << "D_W" << 0 << 1048560U;
    QTest::newRow("one register's end is the next one's start") << 0 << "D_W" << 65535 << 65535U;
    QTest::newRow("unknown name sorts last") << 0 << "Q_W" << 5 << 4294901766U;
    QTest::newRow("unknown name of station 1 is before it") << 1 << "Q_W" << 0 << 983025U;
    QTest::newRow("negative address sorts last") << 0 << "D_W" << -1 << 4294967295U;
    QTest::newRow("negative station wraps") << -1 << "D_W" << 0 << 4293918736U;
    QTest::newRow("station beyond 32 bits wraps") << INT_MAX << "D_W" << 0 << 4293918736U;
    QTest::newRow("top of the addresses") << 0 << "C_W" << INT_MAX << 2147549182U;
}

void TestAddressNumber::weightOrdersAddresses()
{
    QFETCH(int, stationNo);
    QFETCH(QString, name);
    QFETCH(int, address);

    QTEST(getRegAddressWeight(stationNo, name, address), "weight");
}

QTEST_APPLESS_MAIN(TestAddressNumber)
#include "test_address_number.moc"
