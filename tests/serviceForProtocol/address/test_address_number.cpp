#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_number.h"
#include "shared/protocol.h"
#include "support/rows.h"

static const Case<const char *, int> kNameLeadsToItsIndex[] = {
    {"first", "D_W", 0},
    {"last", "D_bit", 15},
    {"letter case counts", "d_bit", -1},
    {"trailing blank", "D_bit ", -1},
    {"empty", "", -1},
};

static const struct
{
    const char *what, *text, *format, *name;
    int result, value; // was 77 before
} kTextIsRead[] = {
    {"decimal", "0100", "DDDD", "D_W", 1, 100},
    {"hexadecimal", "0100", "HHHH", "D_W", 1, 256},
    {"octal", "0100", "OOOO", "D_W", 1, 64},
    {"hexadecimal letters", "1f", "HH", "D_W", 1, 31},
    {"one letter of pattern", "17", "O", "D_W", 1, 15},
    {"unknown pattern is decimal", "0100", "XXXX", "D_W", 1, 100},
    {"lower-case pattern is decimal", "0100", "hhhh", "D_W", 1, 100},
    {"empty pattern is decimal", "0100", "", "D_W", 1, 100},
    {"digits are not counted", "1234567", "DD", "D_W", 1, 1234567},
    {"negative", "-5", "DDDD", "D_W", 1, -5},
    {"plain pattern of a bit name", "12", "DDD", "M_bit", 1, 12},
    {"no number", "abc", "DDDD", "D_W", -1, 0},
    {"number with a tail", "12A", "DDDD", "D_W", -1, 0},
    {"digit outside the radix", "18", "OOOO", "D_W", -1, 0},
    {"word.bit under a plain pattern", "12.5", "DDDD", "D_W", -1, 0},
    {"empty text", "", "DDDD", "D_W", -1, 0},
    {"beyond 32 bits", "2147483648", "DDDD", "D_W", -1, 0},
    {"top of the numbers", "2147483647", "DDDD", "D_W", 1, INT_MAX},
    {"word.bit", "12.5", "DDD.dd", "M_bit", 1, 197},
    {"word.bit, leading zero", "12.05", "DDD.dd", "M_bit", 1, 197},
    {"word.bit, negative bit", "3.-1", "DDD.dd", "M_bit", 1, 47},
    {"bit too high", "12.16", "DDD.dd", "M_bit", -1, 77},
    {"word alone", "12", "DDD.dd", "M_bit", -1, 77},
    {"three parts", "1.2.3", "DDD.dd", "M_bit", -1, 77},
    {"number that is the fault's mark", "0.-1", "DDD.dd", "M_bit", -1, 77},
    {"word.bit of a word register", "12.5", "DDD.dd", "D_W", 1, 0},
    {"differing letters are word.bit", "12.5", "DH", "M_bit", 1, 197},
};

static const Case<const char *, bool> kPatternTellsTheForm[] = {
    {"equal letters", "DDDD", false},
    {"one letter", "D", false},
    {"empty", "", false},
    {"word.bit", "DDD.dd", true},
    {"first letter differs", "HDDD", true},
    {"last letter differs", "DDDH", true},
    {"letter case differs", "Dd", true},
};

static const struct
{
    const char *what;
    int address;
    const char *format, *text;
} kNumberIsWrittenByItsPattern[] = {
    {"decimal without padding", 12, "DDDD", "12"},
    {"hexadecimal in lower case", 0xAB, "HHHH", "ab"},
    {"octal", 64, "OOOO", "100"},
    {"zero", 0, "HHHH", "0"},
    {"negative decimal is unsigned", -1, "DDDD", "4294967295"},
    {"negative hexadecimal is unsigned", -1, "HHHH", "ffffffff"},
    {"negative octal is unsigned", -1, "OOOO", "37777777777"},
};

static const struct
{
    const char *what;
    int stationNo;
    const char *name;
    int address;
    quint32 weight;
} kWeightOrdersAddresses[] = {
    {"address", 0, "D_W", 10, 10U},
    {"register and station", 1, "C_W", 0, 1114095U},
    {"next register", 0, "C_W", 0, 65535U},
    {"last register", 0, "D_bit", 3, 983028U},
    {"next station", 1, "D_W", 0, 1048560U},
    {"one register's end is the next one's start", 0, "D_W", 65535, 65535U},
    {"unknown name sorts last", 0, "Q_W", 5, 4294901766U},
    {"unknown name of station 1 is before it", 1, "Q_W", 0, 983025U},
    {"negative address sorts last", 0, "D_W", -1, 4294967295U},
    {"negative station wraps", -1, "D_W", 0, 4293918736U},
    {"station beyond 32 bits wraps", INT_MAX, "D_W", 0, 4293918736U},
    {"top of the addresses", 0, "C_W", INT_MAX, 2147549182U},
};

class TestAddressNumber : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameLeadsToItsIndex_data() { addRows(kNameLeadsToItsIndex); }
    void nameLeadsToItsIndex()
    {
        const auto &row = currentRow(kNameLeadsToItsIndex);
        QCOMPARE(getIndexFromRegName(latin(row.given)), row.expected);
    }

    void textIsRead_data() { addRows(kTextIsRead); }
    void textIsRead()
    {
        const auto &row = currentRow(kTextIsRead);
        int number = 77;
        QCOMPARE(a2i(latin(row.text), number, latin(row.format), latin(row.name)), row.result);
        QCOMPARE(number, row.value);
    }

    void patternTellsTheForm_data() { addRows(kPatternTellsTheForm); }
    void patternTellsTheForm()
    {
        const auto &row = currentRow(kPatternTellsTheForm);
        QCOMPARE(isWordBitFormat(latin(row.given)), row.expected);
    }

    void numberIsWrittenByItsPattern_data() { addRows(kNumberIsWrittenByItsPattern); }
    void numberIsWrittenByItsPattern()
    {
        const auto &row = currentRow(kNumberIsWrittenByItsPattern);
        QCOMPARE(plainAddressText(row.address, latin(row.format)), latin(row.text));
    }

    void weightOrdersAddresses_data() { addRows(kWeightOrdersAddresses); }
    void weightOrdersAddresses()
    {
        const auto &row = currentRow(kWeightOrdersAddresses);
        QCOMPARE(getRegAddressWeight(row.stationNo, latin(row.name), row.address), row.weight);
    }
};

QTEST_APPLESS_MAIN(TestAddressNumber)
#include "test_address_number.moc"
