#include "host/support/test_registers.h"

#include "host/address/address.h"

#include <QtTest>

using namespace cnet;

class TestAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void writesWhatItReads_data() { reads_data(); }
    void writesWhatItReads();
    void hints_data();
    void hints();
};

void TestAddress::reads_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number"); // -1: not an address
    const auto row = [](const char *reg, const char *text, int number) {
        QTest::addRow("%s %s", reg, text)
            << QString::fromLatin1(reg) << QString::fromLatin1(text) << number;
    };
    row("D_W", "0", 0);
    row("D_W", "9999", 9999);
    row("D_W", "10000", 10000); // limits are another matter
    row("D_W", "", -1);
    row("D_W", "-1", -1);
    row("D_W", "+1", -1);
    row("D_W", " 1", -1);
    row("D_W", "1 ", -1);
    row("D_W", "0x1", -1);
    row("D_W", "1a", -1);
    row("D_W", "1.5", -1);
    row("D_W", "99999999999", -1);
    row("OCT", "17", 15);
    row("OCT", "18", -1);
    row("HEX", "FF", 255);
    row("HEX", "0xFF", -1);
    row("HEX", "G", -1);
    row("M_bit", "3.5", 53);
    row("M_bit", "0.0", 0);
    row("M_bit", "255.15", 4095);
    row("M_bit", "3.16", -1);
    row("M_bit", "3", -1);
    row("M_bit", "3.", -1);
    row("M_bit", ".3", -1);
    row("M_bit", "3.5.1", -1);
    row("M_bit", "3.-1", -1);
    row("M_bit", "-3.1", -1);
    row("M_bit", "3.A", -1);
    row("M_bit", "999999999.1", -1); // would overflow
    row("TX", "12", 12);
}

void TestAddress::reads()
{
    QFETCH(QString, reg);
    QFETCH(QString, text);
    QFETCH(int, number);
    QCOMPARE(readAddress(testRegister(reg.toLatin1().constData()), text).value_or(-1), number);
}

void TestAddress::writesWhatItReads()
{
    QFETCH(QString, reg);
    QFETCH(QString, text);
    QFETCH(int, number);
    if (number >= 0) {
        QCOMPARE(addressText(testRegister(reg.toLatin1().constData()), number), text);
    }
}

void TestAddress::hints_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<QString>("hint");
    QTest::newRow("decimal") << "D_W"
                             << "a number from 0 to 9999";
    QTest::newRow("octal") << "OCT"
                           << "an octal number from 10 to 77";
    QTest::newRow("hexadecimal") << "HEX"
                                 << "a hexadecimal number from 0 to FFF";
    QTest::newRow("bit of a word") << "M_bit"
                                   << "WORD.BIT from 0.0 to 255.15";
}

void TestAddress::hints()
{
    QFETCH(QString, reg);
    QFETCH(QString, hint);
    QCOMPARE(addressHint(testRegister(reg.toLatin1().constData())), hint);
}

QTEST_APPLESS_MAIN(TestAddress)
#include "test_address.moc"
