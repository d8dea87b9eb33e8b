#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/address_text.h"
#include "support/rows.h"

static const Case<const char *, int> kNameLeadsToItsIndex[] = {
    {"first", "D_W", 0},
    {"relay bit", "M_bit", 10},
    {"timer contact", "TX", 13},
    {"last", "D_bit", 15},
    {"letter case counts", "tx", -1},
    {"trailing blank", "TX ", -1},
    {"unknown", "Q_W", -1},
    {"empty", "", -1},
};

static const struct
{
    const char *what, *text, *name;
    int expected;
} kWordBitTextIsRead[] = {
    {"word and bit", "12.5", "M_bit", 197},
    {"highest relay bit", "255.15", "M_bit", 4095},
    {"highest data-register bit", "9999.15", "D_bit", 159999},
    {"lowest", "0.0", "D_bit", 0},
    {"leading zeros of the bit", "12.05", "M_bit", 197},
    {"leading zeros of the word", "0012.5", "M_bit", 197},
    {"bit 15", "0.15", "P_bit", 15},
    {"bit 16", "12.16", "M_bit", -1},
    {"bit far too high", "0.2147483647", "M_bit", -1},
    {"negative bit lowers the number", "3.-1", "M_bit", 47},
    {"word alone", "12", "M_bit", -1},
    {"three parts", "1.2.3", "M_bit", -1},
    {"no word", ".5", "M_bit", -1},
    {"no bit", "12.", "M_bit", -1},
    {"point alone", ".", "M_bit", -1},
    {"empty text", "", "M_bit", -1},
    {"word is no number", "a.5", "M_bit", -1},
    {"bit is hexadecimal", "12.A", "M_bit", -1},
    {"comma for the point", "12,5", "M_bit", -1},
    {"word beyond 32 bits", "2147483648.0", "M_bit", -1},
    {"word register", "12.5", "D_W", 0},
    {"word register, whatever the text", "nonsense", "D_W", 0},
    {"contact", "7", "TX", 0},
    {"unknown bit name is a bit name", "12.5", "Q_bit", 197},
    {"letter case of the bit name counts", "12.5", "M_BIT", 0},
};

static const struct
{
    const char *what;
    int value;
    const char *name, *expected;
} kWordBitTextIsWritten[] = {
    {"word and bit", 197, "M_bit", "12.5"},
    {"highest relay bit", 4095, "M_bit", "255.15"},
    {"first bit of a word", 16, "M_bit", "1.0"},
    {"within the first word", 5, "M_bit", "0.5"},
    {"lowest", 0, "D_bit", "0.0"},
    {"negative, towards zero", -21, "M_bit", "-1.-5"},
    {"top of the numbers", INT_MAX, "D_bit", "134217727.15"},
    {"bottom of the numbers", INT_MIN, "D_bit", "-134217728.0"},
    {"word register", 197, "D_W", ""},
    {"contact", 197, "TX", ""},
    {"empty name", 197, "", ""},
};

static const Given<int> kAddressIsStoredAsItIs[] = {
    {"lowest", 0},
    {"any", 4095},
    {"negative", -1},
    {"top of the numbers", INT_MAX},
};

class TestAddressText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameLeadsToItsIndex_data() { addRows(kNameLeadsToItsIndex); }
    void nameLeadsToItsIndex()
    {
        const auto &row = currentRow(kNameLeadsToItsIndex);
        QCOMPARE(getIndexFromReg(latin(row.given)), row.expected);
    }

    void wordBitTextIsRead_data() { addRows(kWordBitTextIsRead); }
    void wordBitTextIsRead()
    {
        const auto &row = currentRow(kWordBitTextIsRead);
        QCOMPARE(addr_str2int(latin(row.text), latin(row.name)), row.expected);
    }

    void wordBitTextIsWritten_data() { addRows(kWordBitTextIsWritten); }
    void wordBitTextIsWritten()
    {
        const auto &row = currentRow(kWordBitTextIsWritten);
        QCOMPARE(addr_int2str(row.value, latin(row.name)), latin(row.expected));
    }

    void textAndNumberAgree()
    {
        const QString name = latin("P_bit");
        for (int address = 0; address < 4096; ++address) {
            QCOMPARE(addr_str2int(addr_int2str(address, name), name), address);
        }
    }

    void addressIsStoredAsItIs_data() { addRows(kAddressIsStoredAsItIs); }
    void addressIsStoredAsItIs()
    {
        const auto &row = currentRow(kAddressIsStoredAsItIs);
        QCOMPARE(addrOffset(latin("D_W"), row.given), row.given);
        QCOMPARE(addrOffset(latin("M_bit"), row.given), row.given);
        QCOMPARE(addrOffset(QString(), row.given), row.given);
    }
};

QTEST_APPLESS_MAIN(TestAddressText)
#include "test_address_text.moc"
