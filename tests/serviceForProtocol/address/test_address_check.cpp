#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "serviceForProtocol/address/address_check.h"
#include "support/driver_fixture.h"

class TestAddressCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressIsChecked_data();
    void addressIsChecked();
    void anyWordAccessIsWords();
    void anyDataTypeButOneIsWords();
    void writingIsAllowedEverywhere();
    void everyRegisterTakesItsLimits_data();
    void everyRegisterTakesItsLimits();
    void rowIsChecked_data();
    void rowIsChecked();
};

void TestAddressCheck::addressIsChecked_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("before");
    QTest::addColumn<bool>("words");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("address");

    // clang-format off
    QTest::newRow("highest word") << "D_W" << "9999" << 77 << true << 1 << 0 << 9999;
    QTest::newRow("highest word, two words") << "D_W" << "9999" << 77 << true << 2 << 2 << 9999;
    QTest::newRow("last two words") << "D_W" << "9998" << 77 << true << 2 << 0 << 9998;
    QTest::newRow("behind the highest word") << "D_W" << "10000" << 77 << true << 1 << 2 << 10000;
    QTest::newRow("behind the highest, no units") << "D_W" << "10000" << 77 << true << 0 << 0 << 10000;
    QTest::newRow("lowest word") << "D_W" << "0" << 77 << true << 1 << 0 << 0;
    QTest::newRow("below the lowest") << "D_W" << "-1" << 77 << true << 1 << 2 << -1;
    QTest::newRow("all words") << "D_W" << "0" << 77 << true << 10000 << 0 << 0;
    QTest::newRow("more than all words") << "D_W" << "0" << 77 << true << 10001 << 2 << 0;
    QTest::newRow("top of the count") << "D_W" << "9999" << 77 << true << INT_MAX << 2 << 9999;
    QTest::newRow("top of the addresses") << "D_W" << "2147483647" << 77 << true << INT_MAX << 2 << INT_MAX;
    QTest::newRow("negative count") << "D_W" << "5" << 77 << true << -3 << 0 << 5;
    QTest::newRow("hexadecimal digit") << "D_W" << "12A" << 77 << true << 1 << 4 << 0;
    QTest::newRow("word.bit for a word") << "D_W" << "12.5" << 77 << true << 1 << 4 << 0;
    QTest::newRow("empty text for a word") << "D_W" << "" << 77 << true << 1 << 4 << 0;
    QTest::newRow("word register as bits") << "D_W" << "0" << 77 << false << 1 << 1 << 77;
    QTest::newRow("use is checked before the text") << "D_W" << "12A" << 77 << false << 1 << 1 << 77;
    QTest::newRow("highest bit") << "M_bit" << "255.15" << 77 << false << 1 << 0 << 4095;
    QTest::newRow("highest bit, two bits") << "M_bit" << "255.15" << 77 << false << 2 << 2 << 4095;
    QTest::newRow("all bits of the last word") << "M_bit" << "255.0" << 77 << false << 16 << 0 << 4080;
    QTest::newRow("a bit more than the last word has") << "M_bit" << "255.0" << 77 << false << 17 << 2 << 4080;
    QTest::newRow("lowest bit") << "M_bit" << "0.0" << 77 << false << 1 << 0 << 0;
    QTest::newRow("word behind the highest") << "M_bit" << "256.0" << 77 << false << 1 << 2 << 4096;
    QTest::newRow("negative word") << "M_bit" << "-1.0" << 77 << false << 1 << 2 << -16;
    QTest::newRow("negative bit lowers the address") << "M_bit" << "3.-1" << 77 << false << 1 << 0 << 47;
    QTest::newRow("word beyond 28 bits wraps round") << "M_bit" << "268435456.5" << 77 << false << 1 << 0 << 5;
    QTest::newRow("bit 16") << "M_bit" << "255.16" << 77 << false << 1 << 4 << 77;
    QTest::newRow("word alone for a bit") << "M_bit" << "0" << 77 << false << 1 << 4 << 77;
    QTest::newRow("bit register as words") << "M_bit" << "0.0" << 77 << true << 1 << 1 << 77;
    QTest::newRow("data-register bit") << "D_bit" << "9999.15" << 77 << false << 1 << 0 << 159999;
    QTest::newRow("data-register bit, two bits") << "D_bit" << "9999.15" << 77 << false << 2 << 2 << 159999;
    QTest::newRow("data-register bit as words") << "D_bit" << "0.0" << 77 << true << 1 << 1 << 77;
    QTest::newRow("highest contact") << "TX" << "255" << 77 << false << 1 << 0 << 255;
    QTest::newRow("highest contact, two contacts") << "TX" << "255" << 77 << false << 2 << 2 << 255;
    QTest::newRow("all contacts") << "CX" << "0" << 77 << false << 256 << 0 << 0;
    QTest::newRow("contact as words") << "TX" << "7" << 77 << true << 1 << 1 << 77;
    QTest::newRow("contact as word.bit") << "TX" << "7.0" << 77 << false << 1 << 4 << 0;
    QTest::newRow("unknown name") << "Q_W" << "0" << 0 << true << 1 << 3 << 0;
    QTest::newRow("unknown name, whatever the text") << "Q_W" << "nonsense" << 0 << true << 1 << 3 << 0;
    QTest::newRow("unknown name as bits") << "Q_W" << "0" << 0 << false << 1 << 3 << 0;
    QTest::newRow("unknown name, no units at 1") << "Q_W" << "0" << 1 << true << 0 << 3 << 1;
    QTest::newRow("unknown name, five units") << "Q_W" << "0" << 0 << true << 5 << 2 << 0;
    QTest::newRow("unknown name, one unit at 1") << "Q_W" << "0" << 1 << false << 1 << 2 << 1;
    QTest::newRow("unknown name, negative address") << "Q_W" << "0" << -1 << true << 1 << 2 << -1;
    QTest::newRow("unknown name, top of the numbers") << "Q_W" << "0" << INT_MAX << true << INT_MAX << 2 << INT_MAX;
    QTest::newRow("letter case of the name counts") << "d_w" << "0" << 0 << true << 1 << 3 << 0;
    // clang-format on
}

void TestAddressCheck::addressIsChecked()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(int, before);
    QFETCH(bool, words);
    QFETCH(int, count);
    QFETCH(int, code);
    QFETCH(int, address);

    int addr = before;
    QCOMPARE(intf_checkAddrValidity(name, text, addr, count, words ? 1 : 0), code);
    QCOMPARE(addr, address);
    addr = before;
    QCOMPARE(intf_checkAddr(name, text, addr, words ? 0 : -1, count, 0), code);
    QCOMPARE(addr, address);
}

void TestAddressCheck::anyWordAccessIsWords()
{
    const QString word = QString::fromLatin1("D_W");
    const QString bit = QString::fromLatin1("M_bit");
    const int accesses[] = {1, 2, -1, INT_MAX, INT_MIN};
    for (const int access : accesses) {
        int addr = 0;
        QCOMPARE(intf_checkAddrValidity(word, QString::fromLatin1("1"), addr, 1, access), 0);
        QCOMPARE(intf_checkAddrValidity(bit, QString::fromLatin1("1.0"), addr, 1, access), 1);
    }
}

void TestAddressCheck::anyDataTypeButOneIsWords()
{
    const QString word = QString::fromLatin1("D_W");
    const QString bit = QString::fromLatin1("D_bit");
    const int types[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, -2, INT_MAX, INT_MIN};
    for (const int type : types) {
        int addr = 0;
        QCOMPARE(intf_checkAddr(word, QString::fromLatin1("1"), addr, type, 1, 0), 0);
        QCOMPARE(intf_checkAddr(bit, QString::fromLatin1("1.0"), addr, type, 1, 0), 1);
    }
}

void TestAddressCheck::writingIsAllowedEverywhere()
{
    for (int i = 0; i < kRegisterCount; ++i) {
        const bool isBit = ADDRESS_RANGE_PRO[i][kUnitWidthColumn] == QLatin1String("1");
        for (int accessMode = -1; accessMode < 4; ++accessMode) {
            int addr = 0;
            QCOMPARE(intf_checkAddr(REG_LIST[i], ADDRESS_RANGE_PRO[i][kHighestColumn], addr,
                                    isBit ? -1 : 0, 1, accessMode),
                     0);
        }
    }
}

void TestAddressCheck::everyRegisterTakesItsLimits_data()
{
    QTest::addColumn<QString>("highest");
    QTest::addColumn<QString>("beyond");
    QTest::addColumn<bool>("words");
    QTest::addColumn<int>("address");

    // clang-format off
    QTest::newRow("D_W") << "9999" << "10000" << true << 9999;
    QTest::newRow("C_W") << "255" << "256" << true << 255;
    QTest::newRow("T_W") << "255" << "256" << true << 255;
    QTest::newRow("K_W") << "31" << "32" << true << 31;
    QTest::newRow("P_W") << "63" << "64" << true << 63;
    QTest::newRow("F_W") << "255" << "256" << true << 255;
    QTest::newRow("L_W") << "255" << "256" << true << 255;
    QTest::newRow("M_W") << "255" << "256" << true << 255;
    QTest::newRow("P_bit") << "255.15" << "256.0" << false << 4095;
    QTest::newRow("K_bit") << "255.15" << "256.0" << false << 4095;
    QTest::newRow("M_bit") << "255.15" << "256.0" << false << 4095;
    QTest::newRow("L_bit") << "255.15" << "256.0" << false << 4095;
    QTest::newRow("F_bit") << "255.15" << "256.0" << false << 4095;
    QTest::newRow("TX") << "255" << "256" << false << 255;
    QTest::newRow("CX") << "255" << "256" << false << 255;
    QTest::newRow("D_bit") << "9999.15" << "10000.0" << false << 159999;
    // clang-format on
}

void TestAddressCheck::everyRegisterTakesItsLimits()
{
    QFETCH(QString, highest);
    QFETCH(QString, beyond);
    QFETCH(bool, words);
    QFETCH(int, address);

    const QString name = QString::fromLatin1(QTest::currentDataTag());
    int addr = -5;
    QCOMPARE(intf_checkAddr(name, highest, addr, words ? 0 : -1, 1, 1), 0);
    QCOMPARE(addr, address);
    QCOMPARE(intf_checkAddr(name, beyond, addr, words ? 0 : -1, 1, 1), 2);
    QCOMPARE(addr, address + 1);
}

// Widths, accesses and formats that no register has today.
void TestAddressCheck::rowIsChecked_data()
{
    QTest::addColumn<QString>("row"); // format lowest highest unitBits access wordBits
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("dataType");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("accessMode");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("address"); // was 77 before

    const char *const byteRow = "DDDD 0 99 8 RW 8";
    const char *const doubleRow = "DDDD 0 99 32 RW 32";
    const char *const readRow = "DDDD 0 99 16 R 16";
    const char *const writeRow = "DDDD 0 99 16 W 16";
    const char *const readDoubleRow = "DDDD 0 99 32 R 32";
    const char *const hexRow = "HHH 10 FF 16 RW 16";
    // clang-format off
    QTest::newRow("a word is two bytes") << byteRow << "98" << 0 << 1 << 0 << 0 << 98;
    QTest::newRow("a word at the last byte") << byteRow << "99" << 0 << 1 << 0 << 2 << 99;
    QTest::newRow("byte register as bits") << byteRow << "0" << -1 << 1 << 0 << 1 << 77;
    QTest::newRow("two words are a double word") << doubleRow << "99" << 1 << 2 << 0 << 0 << 99;
    QTest::newRow("three words are more than one") << doubleRow << "99" << 1 << 3 << 0 << 2 << 99;
    QTest::newRow("one word is half of one") << doubleRow << "99" << 1 << 1 << 0 << 0 << 99;
    QTest::newRow("double type 1") << doubleRow << "0" << 1 << 2 << 0 << 0 << 0;
    QTest::newRow("double type 3") << doubleRow << "0" << 3 << 2 << 0 << 0 << 0;
    QTest::newRow("double type 5") << doubleRow << "0" << 5 << 2 << 0 << 0 << 0;
    QTest::newRow("double type 6") << doubleRow << "0" << 6 << 2 << 0 << 0 << 0;
    QTest::newRow("double type 9") << doubleRow << "0" << 9 << 2 << 0 << 0 << 0;
    QTest::newRow("double type 0") << doubleRow << "0" << 0 << 2 << 0 << 5 << 77;
    QTest::newRow("double type 2") << doubleRow << "0" << 2 << 2 << 0 << 5 << 77;
    QTest::newRow("double type 4") << doubleRow << "0" << 4 << 2 << 0 << 5 << 77;
    QTest::newRow("double type 7") << doubleRow << "0" << 7 << 2 << 0 << 5 << 77;
    QTest::newRow("double type 8") << doubleRow << "0" << 8 << 2 << 0 << 5 << 77;
    QTest::newRow("double type 10") << doubleRow << "0" << 10 << 2 << 0 << 5 << 77;
    QTest::newRow("double type 33") << doubleRow << "0" << 33 << 2 << 0 << 5 << 77;
    QTest::newRow("double type -2") << doubleRow << "0" << -2 << 2 << 0 << 5 << 77;
    QTest::newRow("double register as bits") << doubleRow << "0" << -1 << 2 << 0 << 1 << 77;
    QTest::newRow("double type is checked before the text") << doubleRow << "x" << 0 << 2 << 0 << 5 << 77;
    QTest::newRow("writing 1 to read-only") << readRow << "0" << 0 << 1 << 1 << 6 << 77;
    QTest::newRow("writing 2 to read-only") << readRow << "0" << 0 << 1 << 2 << 6 << 77;
    QTest::newRow("reading read-only") << readRow << "5" << 0 << 1 << 0 << 0 << 5;
    QTest::newRow("access mode 3 reads") << readRow << "5" << 0 << 1 << 3 << 0 << 5;
    QTest::newRow("negative access mode reads") << readRow << "5" << 0 << 1 << -1 << 0 << 5;
    QTest::newRow("use is checked before access") << readRow << "0" << -1 << 1 << 1 << 1 << 77;
    QTest::newRow("access is checked before the data type") << readDoubleRow << "0" << 0 << 1 << 1 << 6 << 77;
    QTest::newRow("access is checked before the text") << readRow << "x" << 0 << 1 << 1 << 6 << 77;
    QTest::newRow("writing to write-only") << writeRow << "5" << 0 << 1 << 1 << 0 << 5;
    QTest::newRow("reading write-only") << writeRow << "5" << 0 << 1 << 0 << 0 << 5;
    QTest::newRow("limits in the row's own radix") << hexRow << "ff" << 0 << 1 << 0 << 0 << 255;
    QTest::newRow("beyond a hexadecimal limit") << hexRow << "100" << 0 << 1 << 0 << 2 << 256;
    QTest::newRow("lowest address above 0") << hexRow << "10" << 0 << 1 << 0 << 0 << 16;
    QTest::newRow("below it") << hexRow << "F" << 0 << 1 << 0 << 2 << 15;
    // clang-format on
}

void TestAddressCheck::rowIsChecked()
{
    QFETCH(QString, row);
    QFETCH(QString, text);
    QFETCH(int, dataType);
    QFETCH(int, count);
    QFETCH(int, accessMode);
    QFETCH(int, code);
    QFETCH(int, address);

    const QStringList texts = row.split(QLatin1Char(' '));
    QString columns[kColumnCount];
    for (int i = 0; i < kColumnCount; ++i) {
        columns[i] = texts.at(i);
    }
    int addr = 77;
    QCOMPARE(checkAddressInRow(columns, QString::fromLatin1("Z"), text, addr, dataType, count,
                               accessMode),
             code);
    QCOMPARE(addr, address);
}

QTEST_APPLESS_MAIN(TestAddressCheck)
#include "test_address_check.moc"
