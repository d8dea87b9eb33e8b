#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "serviceForProtocol/address/address_check.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

static const struct
{
    const char *what, *name, *text;
    int before;
    bool words;
    int count, code, address;
} kAddressIsChecked[] = {
    {"highest word", "D_W", "9999", 77, true, 1, 0, 9999},
    {"highest word, two words", "D_W", "9999", 77, true, 2, 2, 9999},
    {"last two words", "D_W", "9998", 77, true, 2, 0, 9998},
    {"behind the highest word", "D_W", "10000", 77, true, 1, 2, 10000},
    {"behind the highest, no units", "D_W", "10000", 77, true, 0, 0, 10000},
    {"lowest word", "D_W", "0", 77, true, 1, 0, 0},
    {"below the lowest", "D_W", "-1", 77, true, 1, 2, -1},
    {"all words", "D_W", "0", 77, true, 10000, 0, 0},
    {"more than all words", "D_W", "0", 77, true, 10001, 2, 0},
    {"top of the count", "D_W", "9999", 77, true, INT_MAX, 2, 9999},
    {"top of the addresses", "D_W", "2147483647", 77, true, INT_MAX, 2, INT_MAX},
    {"negative count", "D_W", "5", 77, true, -3, 0, 5},
    {"hexadecimal digit", "D_W", "12A", 77, true, 1, 4, 0},
    {"word.bit for a word", "D_W", "12.5", 77, true, 1, 4, 0},
    {"empty text for a word", "D_W", "", 77, true, 1, 4, 0},
    {"word register as bits", "D_W", "0", 77, false, 1, 1, 77},
    {"use is checked before the text", "D_W", "12A", 77, false, 1, 1, 77},
    {"highest bit", "M_bit", "255.15", 77, false, 1, 0, 4095},
    {"highest bit, two bits", "M_bit", "255.15", 77, false, 2, 2, 4095},
    {"all bits of the last word", "M_bit", "255.0", 77, false, 16, 0, 4080},
    {"a bit more than the last word has", "M_bit", "255.0", 77, false, 17, 2, 4080},
    {"lowest bit", "M_bit", "0.0", 77, false, 1, 0, 0},
    {"word behind the highest", "M_bit", "256.0", 77, false, 1, 2, 4096},
    {"negative word", "M_bit", "-1.0", 77, false, 1, 2, -16},
    {"negative bit lowers the address", "M_bit", "3.-1", 77, false, 1, 0, 47},
    {"word beyond 28 bits wraps round", "M_bit", "268435456.5", 77, false, 1, 0, 5},
    {"bit 16", "M_bit", "255.16", 77, false, 1, 4, 77},
    {"word alone for a bit", "M_bit", "0", 77, false, 1, 4, 77},
    {"bit register as words", "M_bit", "0.0", 77, true, 1, 1, 77},
    {"data-register bit", "D_bit", "9999.15", 77, false, 1, 0, 159999},
    {"data-register bit, two bits", "D_bit", "9999.15", 77, false, 2, 2, 159999},
    {"data-register bit as words", "D_bit", "0.0", 77, true, 1, 1, 77},
    {"highest contact", "TX", "255", 77, false, 1, 0, 255},
    {"highest contact, two contacts", "TX", "255", 77, false, 2, 2, 255},
    {"all contacts", "CX", "0", 77, false, 256, 0, 0},
    {"contact as words", "TX", "7", 77, true, 1, 1, 77},
    {"contact as word.bit", "TX", "7.0", 77, false, 1, 4, 0},
    {"unknown name", "Q_W", "0", 0, true, 1, 3, 0},
    {"unknown name, whatever the text", "Q_W", "nonsense", 0, true, 1, 3, 0},
    {"unknown name as bits", "Q_W", "0", 0, false, 1, 3, 0},
    {"unknown name, no units at 1", "Q_W", "0", 1, true, 0, 3, 1},
    {"unknown name, five units", "Q_W", "0", 0, true, 5, 2, 0},
    {"unknown name, one unit at 1", "Q_W", "0", 1, false, 1, 2, 1},
    {"unknown name, negative address", "Q_W", "0", -1, true, 1, 2, -1},
    {"unknown name, top of the numbers", "Q_W", "0", INT_MAX, true, INT_MAX, 2, INT_MAX},
    {"letter case of the name counts", "d_w", "0", 0, true, 1, 3, 0},
};

static const struct
{
    const char *what, *highest, *beyond;
    bool words;
    int address;
} kEveryRegisterTakesItsLimits[] = {
    {"D_W", "9999", "10000", true, 9999},
    {"C_W", "255", "256", true, 255},
    {"T_W", "255", "256", true, 255},
    {"K_W", "31", "32", true, 31},
    {"P_W", "63", "64", true, 63},
    {"F_W", "255", "256", true, 255},
    {"L_W", "255", "256", true, 255},
    {"M_W", "255", "256", true, 255},
    {"P_bit", "255.15", "256.0", false, 4095},
    {"K_bit", "255.15", "256.0", false, 4095},
    {"M_bit", "255.15", "256.0", false, 4095},
    {"L_bit", "255.15", "256.0", false, 4095},
    {"F_bit", "255.15", "256.0", false, 4095},
    {"TX", "255", "256", false, 255},
    {"CX", "255", "256", false, 255},
    {"D_bit", "9999.15", "10000.0", false, 159999},
};

// Widths, accesses and formats that no register has today.
static const char *const byteRow = "DDDD 0 99 8 RW 8";
static const char *const doubleRow = "DDDD 0 99 32 RW 32";
static const char *const readRow = "DDDD 0 99 16 R 16";
static const char *const writeRow = "DDDD 0 99 16 W 16";
static const char *const readDoubleRow = "DDDD 0 99 32 R 32";
static const char *const hexRow = "HHH 10 FF 16 RW 16";
static const struct
{
    const char *what;
    const char *row; // format lowest highest unitBits access wordBits
    const char *text;
    int dataType, count, accessMode, code;
    int address; // was 77 before
} kRowIsChecked[] = {
    {"a word is two bytes", byteRow, "98", 0, 1, 0, 0, 98},
    {"a word at the last byte", byteRow, "99", 0, 1, 0, 2, 99},
    {"byte register as bits", byteRow, "0", -1, 1, 0, 1, 77},
    {"two words are a double word", doubleRow, "99", 1, 2, 0, 0, 99},
    {"three words are more than one", doubleRow, "99", 1, 3, 0, 2, 99},
    {"one word is half of one", doubleRow, "99", 1, 1, 0, 0, 99},
    {"double type 1", doubleRow, "0", 1, 2, 0, 0, 0},
    {"double type 3", doubleRow, "0", 3, 2, 0, 0, 0},
    {"double type 5", doubleRow, "0", 5, 2, 0, 0, 0},
    {"double type 6", doubleRow, "0", 6, 2, 0, 0, 0},
    {"double type 9", doubleRow, "0", 9, 2, 0, 0, 0},
    {"double type 0", doubleRow, "0", 0, 2, 0, 5, 77},
    {"double type 2", doubleRow, "0", 2, 2, 0, 5, 77},
    {"double type 4", doubleRow, "0", 4, 2, 0, 5, 77},
    {"double type 7", doubleRow, "0", 7, 2, 0, 5, 77},
    {"double type 8", doubleRow, "0", 8, 2, 0, 5, 77},
    {"double type 10", doubleRow, "0", 10, 2, 0, 5, 77},
    {"double type 33", doubleRow, "0", 33, 2, 0, 5, 77},
    {"double type -2", doubleRow, "0", -2, 2, 0, 5, 77},
    {"double register as bits", doubleRow, "0", -1, 2, 0, 1, 77},
    {"double type is checked before the text", doubleRow, "x", 0, 2, 0, 5, 77},
    {"writing 1 to read-only", readRow, "0", 0, 1, 1, 6, 77},
    {"writing 2 to read-only", readRow, "0", 0, 1, 2, 6, 77},
    {"reading read-only", readRow, "5", 0, 1, 0, 0, 5},
    {"access mode 3 reads", readRow, "5", 0, 1, 3, 0, 5},
    {"negative access mode reads", readRow, "5", 0, 1, -1, 0, 5},
    {"use is checked before access", readRow, "0", -1, 1, 1, 1, 77},
    {"access is checked before the data type", readDoubleRow, "0", 0, 1, 1, 6, 77},
    {"access is checked before the text", readRow, "x", 0, 1, 1, 6, 77},
    {"writing to write-only", writeRow, "5", 0, 1, 1, 0, 5},
    {"reading write-only", writeRow, "5", 0, 1, 0, 0, 5},
    {"limits in the row's own radix", hexRow, "ff", 0, 1, 0, 0, 255},
    {"beyond a hexadecimal limit", hexRow, "100", 0, 1, 0, 2, 256},
    {"lowest address above 0", hexRow, "10", 0, 1, 0, 0, 16},
    {"below it", hexRow, "F", 0, 1, 0, 2, 15},
};

class TestAddressCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressIsChecked_data() { addRows(kAddressIsChecked); }
    void addressIsChecked()
    {
        const auto &row = currentRow(kAddressIsChecked);
        int addr = row.before;
        QCOMPARE(intf_checkAddrValidity(latin(row.name), latin(row.text), addr, row.count,
                                        row.words ? 1 : 0),
                 row.code);
        QCOMPARE(addr, row.address);
        addr = row.before;
        QCOMPARE(intf_checkAddr(latin(row.name), latin(row.text), addr, row.words ? 0 : -1,
                                row.count, 0),
                 row.code);
        QCOMPARE(addr, row.address);
    }

    void anyWordAccessIsWords()
    {
        const QString word = latin("D_W");
        const QString bit = latin("M_bit");
        const int accesses[] = {1, 2, -1, INT_MAX, INT_MIN};
        for (const int access : accesses) {
            int addr = 0;
            QCOMPARE(intf_checkAddrValidity(word, latin("1"), addr, 1, access), 0);
            QCOMPARE(intf_checkAddrValidity(bit, latin("1.0"), addr, 1, access), 1);
        }
    }

    void anyDataTypeButOneIsWords()
    {
        const QString word = latin("D_W");
        const QString bit = latin("D_bit");
        const int types[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, -2, INT_MAX, INT_MIN};
        for (const int type : types) {
            int addr = 0;
            QCOMPARE(intf_checkAddr(word, latin("1"), addr, type, 1, 0), 0);
            QCOMPARE(intf_checkAddr(bit, latin("1.0"), addr, type, 1, 0), 1);
        }
    }

    void writingIsAllowedEverywhere()
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

    void everyRegisterTakesItsLimits_data() { addRows(kEveryRegisterTakesItsLimits); }
    void everyRegisterTakesItsLimits()
    {
        const auto &row = currentRow(kEveryRegisterTakesItsLimits);
        const QString name = latin(QTest::currentDataTag());
        int addr = -5;
        QCOMPARE(intf_checkAddr(name, latin(row.highest), addr, row.words ? 0 : -1, 1, 1), 0);
        QCOMPARE(addr, row.address);
        QCOMPARE(intf_checkAddr(name, latin(row.beyond), addr, row.words ? 0 : -1, 1, 1), 2);
        QCOMPARE(addr, row.address + 1);
    }

    void rowIsChecked_data() { addRows(kRowIsChecked); }
    void rowIsChecked()
    {
        const auto &row = currentRow(kRowIsChecked);
        const QStringList texts = latin(row.row).split(QLatin1Char(' '));
        QString columns[kColumnCount];
        for (int i = 0; i < kColumnCount; ++i) {
            columns[i] = texts.at(i);
        }
        int addr = 77;
        QCOMPARE(checkAddressInRow(columns, latin("Z"), latin(row.text), addr, row.dataType,
                                   row.count, row.accessMode),
                 row.code);
        QCOMPARE(addr, row.address);
    }
};

QTEST_APPLESS_MAIN(TestAddressCheck)
#include "test_address_check.moc"
