#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "support/rows.h"

static const struct
{
    const char *what, *name;
    int index, row;
} kNameLeadsToItsRow[] = {
    {"D_W", "D_W", 0, 0},
    {"C_W", "C_W", 1, 1},
    {"T_W", "T_W", 2, 2},
    {"K_W", "K_W", 3, 3},
    {"P_W", "P_W", 4, 4},
    {"F_W", "F_W", 5, 5},
    {"L_W", "L_W", 6, 6},
    {"M_W", "M_W", 7, 7},
    {"P_bit", "P_bit", 8, 8},
    {"K_bit", "K_bit", 9, 9},
    {"M_bit", "M_bit", 10, 10},
    {"L_bit", "L_bit", 11, 11},
    {"F_bit", "F_bit", 12, 12},
    {"TX", "TX", 13, 13},
    {"CX", "CX", 14, 14},
    {"D_bit", "D_bit", 15, 15},
    {"letter case counts", "d_w", -1, 16},
    {"letter case of the suffix counts", "M_BIT", -1, 16},
    {"trailing blank", "D_W ", -1, 16},
    {"leading blank", " D_W", -1, 16},
    {"beginning of a name", "D", -1, 16},
    {"name with a tail", "D_WW", -1, 16},
    {"unknown letter", "X_bit", -1, 16},
    {"empty", "", -1, 16},
};

static const Case<const char *, bool> kBitNameIsRecognised[] = {
    {"relay bit", "M_bit", true},
    {"data-register bit", "D_bit", true},
    {"word", "M_W", false},
    {"timer contact", "TX", false},
    {"counter contact", "CX", false},
    {"anywhere in the name", "M_bits", true},
    {"letter case counts", "M_BIT", false},
    {"without the underscore", "Mbit", false},
    {"empty", "", false},
};

static const Case<const char *, const char *> kLetterEndsAtTheUnderscore[] = {
    {"word", "D_W", "D"},
    {"bit", "M_bit", "M"},
    {"name without one", "TX", "TX"},
    {"at the first of two", "AB_C_D", "AB"},
    {"nothing before it", "_bit", ""},
    {"empty", "", ""},
};

class TestRegisterRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameLeadsToItsRow_data() { addRows(kNameLeadsToItsRow); }
    void nameLeadsToItsRow()
    {
        const auto &row = currentRow(kNameLeadsToItsRow);
        QCOMPARE(registerIndex(latin(row.name)), row.index);
        QCOMPARE(registerRow(latin(row.name)), row.row);
    }

    void widthsAreThoseOfTheRow_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("unitBits");
        QTest::addColumn<int>("wordBits");
        QTest::addColumn<bool>("bitName");

        for (int i = 0; i < 8; ++i) {
            QTest::newRow(qPrintable(REG_LIST[i])) << REG_LIST[i] << 16 << 16 << false;
        }
        for (int i = 8; i < 13; ++i) {
            QTest::newRow(qPrintable(REG_LIST[i])) << REG_LIST[i] << 1 << 16 << true;
        }
        QTest::newRow("TX") << "TX" << 1 << 1 << false;
        QTest::newRow("CX") << "CX" << 1 << 1 << false;
        QTest::newRow("D_bit") << "D_bit" << 1 << 16 << true;
        QTest::newRow("unknown word name reads the spare row") << "Q_W" << 1 << 16 << false;
        QTest::newRow("unknown bit name reads the spare row") << "Q_bit" << 1 << 16 << true;
    }

    void widthsAreThoseOfTheRow()
    {
        QFETCH(QString, name);

        const RegisterWidths widths = registerWidths(name);
        QTEST(widths.unitBits, "unitBits");
        QTEST(widths.wordBits, "wordBits");
        QTEST(widths.bitName, "bitName");
    }

    void bitNameIsRecognised_data() { addRows(kBitNameIsRecognised); }
    void bitNameIsRecognised()
    {
        const auto &row = currentRow(kBitNameIsRecognised);
        QCOMPARE(isBitName(latin(row.given)), row.expected);
    }

    void letterEndsAtTheUnderscore_data() { addRows(kLetterEndsAtTheUnderscore); }
    void letterEndsAtTheUnderscore()
    {
        const auto &row = currentRow(kLetterEndsAtTheUnderscore);
        QCOMPARE(registerLetter(latin(row.given)), latin(row.expected));
    }
};

QTEST_APPLESS_MAIN(TestRegisterRow)
#include "test_register_row.moc"
