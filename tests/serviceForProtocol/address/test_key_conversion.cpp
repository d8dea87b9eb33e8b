#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_merge.h"
#include "support/key_text.h"
#include "support/rows.h"

static RegisterWidths widthsOf(int unitBits, int wordBits)
{
    const RegisterWidths widths = {unitBits, wordBits, unitBits == 1 && wordBits != 1};
    return widths;
}

static const struct
{
    const char *what, *name;
    int startAddr, count, unitBits, wordBits;
    const char *expected;
} kReadKeyBecomesWords[] = {
    {"bits within a word", "M_bit", 35, 3, 1, 16, "M_W:2*1"},
    {"a whole word of bits", "M_bit", 16, 16, 1, 16, "M_W:1*1"},
    {"one bit more than a word", "M_bit", 0, 17, 1, 16, "M_W:0*2"},
    {"last bit of a word", "M_bit", 15, 1, 1, 16, "M_W:0*1"},
    {"bits across two words", "M_bit", 15, 2, 1, 16, "M_W:0*2"},
    {"up to the end of the second word", "M_bit", 8, 24, 1, 16, "M_W:0*2"},
    {"no bits", "M_bit", 32, 0, 1, 16, "M_W:2*0"},
    {"negative bit, towards zero", "M_bit", -1, 1, 1, 16, "M_W:0*0"},
    {"bits of bytes", "M_bit", 35, 3, 1, 8, "M_B:4*1"},
    {"eight bits are rounded by 16", "M_bit", 16, 8, 1, 8, "M_B:2*2"},
    {"16 bits of bytes", "M_bit", 16, 16, 1, 8, "M_B:2*2"},
    {"bits of double words", "M_bit", 35, 3, 1, 32, "M_D:1*1"},
    {"16 bits of a double word", "M_bit", 0, 16, 1, 32, "M_D:0*0"},
    {"48 bits of double words", "M_bit", 0, 48, 1, 32, "M_D:0*1"},
    {"bits held one by one", "M_bit", 5, 3, 1, 1, "M:5*4"},
    {"bits of no width", "M_bit", 5, 3, 1, 0, "M:5*3"},
    {"words", "D_W", 10, 5, 16, 16, "D_W:10*5"},
    {"words of bytes", "D_W", 10, 5, 8, 8, "D_B:10*10"},
    {"words of double words", "D_W", 10, 5, 32, 32, "D_D:10*2"},
    {"negative count, towards zero", "D_W", 10, -3, 32, 32, "D_D:10*-1"},
    {"the unit width scales, not the word's", "D_W", 10, 5, 8, 16, "D_W:10*10"},
    {"the word width names, not the unit's", "D_W", 10, 5, 16, 8, "D_B:10*5"},
    {"contact", "TX", 7, 3, 1, 1, "TX:7*3"},
    {"name without two parts", "TX", 7, 3, 8, 8, "TX:7*6"},
    {"name of three parts", "A_bit_C", 7, 3, 1, 16, "A_bit_C:7*3"},
    {"count beyond the numbers", "D_W", 0, INT_MAX, 8, 8, "D_B:0*2147483647"},
};

static const struct
{
    const char *what;
    int unitBits, wordBits, count, expected;
} kRecipeKeyBecomesWords[] = {
    {"words", 16, 16, 5, 5},
    {"bytes", 8, 8, 5, 10},
    {"double words", 32, 32, 5, 2},
    {"the word width scales, not the unit's", 32, 8, 5, 10},
    {"bits", 1, 16, 5, 5},
    {"contacts", 1, 1, 5, 5},
    {"negative count, towards zero", 32, 32, -3, -1},
    {"words over single bits", 16, 1, 5, 80},
    {"no width", 16, 0, 5, 5},
};

class TestKeyConversion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readKeyBecomesWords_data() { addRows(kReadKeyBecomesWords); }
    void readKeyBecomesWords()
    {
        const auto &row = currentRow(kReadKeyBecomesWords);
        KEY_ADDRESS key = makeKey(1, row.name, row.startAddr, row.count);
        convertReadKey(key, widthsOf(row.unitBits, row.wordBits));
        QCOMPARE(rangeText(key), latin("1/") + latin(row.expected));
    }

    void recipeKeyBecomesWords_data() { addRows(kRecipeKeyBecomesWords); }
    void recipeKeyBecomesWords()
    {
        const auto &row = currentRow(kRecipeKeyBecomesWords);
        KEY_ADDRESS key = makeKey(1, "M_bit", 35, row.count);
        convertRecipeKey(key, widthsOf(row.unitBits, row.wordBits));
        QCOMPARE(rangeText(key), latin("1/M_bit:35*") + QString::number(row.expected));
    }
};

QTEST_APPLESS_MAIN(TestKeyConversion)
#include "test_key_conversion.moc"
