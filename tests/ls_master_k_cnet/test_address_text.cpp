#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/address_text.h"

class TestAddressText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameLeadsToItsIndex_data();
    void nameLeadsToItsIndex();
    void wordBitTextIsRead_data();
    void wordBitTextIsRead();
    void wordBitTextIsWritten_data();
    void wordBitTextIsWritten();
    void textAndNumberAgree();
    void addressIsStoredAsItIs_data();
    void addressIsStoredAsItIs();
};

void TestAddressText::nameLeadsToItsIndex_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index");

    QTest::newRow("first") << "D_W" << 0;
    QTest::newRow("relay bit") << "M_bit" << 10;
    QTest::newRow("timer contact") << "TX" << 13;
    QTest::newRow("last") << "D_bit" << 15;
    QTest::newRow("letter case counts") << "tx" << -1;
    QTest::newRow("trailing blank") << "TX " << -1;
    QTest::newRow("unknown") << "Q_W" << -1;
    QTest::newRow("empty") << "" << -1;
}

void TestAddressText::nameLeadsToItsIndex()
{
    QFETCH(QString, name);

    QTEST(getIndexFromReg(name), "index");
}

void TestAddressText::wordBitTextIsRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("expected");

    // clang-format off
    QTest::newRow("word and bit") << "12.5" << "M_bit" << 197;
    QTest::newRow("highest relay bit") << "255.15" << "M_bit" << 4095;
    QTest::newRow("highest data-register bit") << "9999.15" << "D_bit" << 159999;
    QTest::newRow("lowest") << "0.0" << "D_bit" << 0;
    QTest::newRow("leading zeros of the bit") << "12.05" << "M_bit" << 197;
    QTest::newRow("leading zeros of the word") << "0012.5" << "M_bit" << 197;
    QTest::newRow("bit 15") << "0.15" << "P_bit" << 15;
    QTest::newRow("bit 16") << "12.16" << "M_bit" << -1;
    QTest::newRow("bit far too high") << "0.2147483647" << "M_bit" << -1;
    QTest::newRow("negative bit lowers the number") << "3.-1" << "M_bit" << 47;
    QTest::newRow("word alone") << "12" << "M_bit" << -1;
    QTest::newRow("three parts") << "1.2.3" << "M_bit" << -1;
    QTest::newRow("no word") << ".5" << "M_bit" << -1;
    QTest::newRow("no bit") << "12." << "M_bit" << -1;
    QTest::newRow("point alone") << "." << "M_bit" << -1;
    QTest::newRow("empty text") << "" << "M_bit" << -1;
    QTest::newRow("word is no number") << "a.5" << "M_bit" << -1;
    QTest::newRow("bit is hexadecimal") << "12.A" << "M_bit" << -1;
    QTest::newRow("comma for the point") << "12,5" << "M_bit" << -1;
    QTest::newRow("word beyond 32 bits") << "2147483648.0" << "M_bit" << -1;
    QTest::newRow("word register") << "12.5" << "D_W" << 0;
    QTest::newRow("word register, whatever the text") << "nonsense" << "D_W" << 0;
    QTest::newRow("contact") << "7" << "TX" << 0;
    QTest::newRow("unknown bit name is a bit name") << "12.5" << "Q_bit" << 197;
    QTest::newRow("letter case of the bit name counts") << "12.5" << "M_BIT" << 0;
    // clang-format on
}

void TestAddressText::wordBitTextIsRead()
{
    QFETCH(QString, text);
    QFETCH(QString, name);

    QTEST(addr_str2int(text, name), "expected");
}

void TestAddressText::wordBitTextIsWritten_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    // clang-format off
    QTest::newRow("word and bit") << 197 << "M_bit" << "12.5";
    QTest::newRow("highest relay bit") << 4095 << "M_bit" << "255.15";
    QTest::newRow("first bit of a word") << 16 << "M_bit" << "1.0";
    QTest::newRow("within the first word") << 5 << "M_bit" << "0.5";
    QTest::newRow("lowest") << 0 << "D_bit" << "0.0";
    QTest::newRow("negative, towards zero") << -21 << "M_bit" << "-1.-5";
    QTest::newRow("top of the numbers") << INT_MAX << "D_bit" << "134217727.15";
    QTest::newRow("bottom of the numbers") << INT_MIN << "D_bit" << "-134217728.0";
    QTest::newRow("word register") << 197 << "D_W" << "";
    QTest::newRow("contact") << 197 << "TX" << "";
    QTest::newRow("empty name") << 197 << "" << "";
    // clang-format on
}

void TestAddressText::wordBitTextIsWritten()
{
    QFETCH(int, value);
    QFETCH(QString, name);

    QTEST(addr_int2str(value, name), "expected");
}

void TestAddressText::textAndNumberAgree()
{
    const QString name = QString::fromLatin1("P_bit");
    for (int address = 0; address < 4096; ++address) {
        QCOMPARE(addr_str2int(addr_int2str(address, name), name), address);
    }
}

void TestAddressText::addressIsStoredAsItIs_data()
{
    QTest::addColumn<int>("address");

    QTest::newRow("lowest") << 0;
    QTest::newRow("any") << 4095;
    QTest::newRow("negative") << -1;
    QTest::newRow("top of the numbers") << INT_MAX;
}

void TestAddressText::addressIsStoredAsItIs()
{
    QFETCH(int, address);

    QCOMPARE(addrOffset(QString::fromLatin1("D_W"), address), address);
    QCOMPARE(addrOffset(QString::fromLatin1("M_bit"), address), address);
    QCOMPARE(addrOffset(QString(), address), address);
}

QTEST_APPLESS_MAIN(TestAddressText)
#include "test_address_text.moc"
