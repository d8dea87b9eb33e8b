#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"

class TestRegisterRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameLeadsToItsRow_data();
    void nameLeadsToItsRow();
    void widthsAreThoseOfTheRow_data();
    void widthsAreThoseOfTheRow();
    void bitNameIsRecognised_data();
    void bitNameIsRecognised();
    void letterEndsAtTheUnderscore_data();
    void letterEndsAtTheUnderscore();
};

void TestRegisterRow::nameLeadsToItsRow_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("row");

    QTest::newRow("D_W") << "D_W" << 0 << 0;
    QTest::newRow("C_W") << "C_W" << 1 << 1;
    QTest::newRow("T_W") << "T_W" << 2 << 2;
    QTest::newRow("K_W") << "K_W" << 3 << 3;
    QTest::newRow("P_W") << "P_W" << 4 << 4;
    QTest::newRow("F_W") << "F_W" << 5 << 5;
    QTest::newRow("L_W") << "L_W" << 6 << 6;
    QTest::newRow("M_W") << "M_W" << 7 << 7;
    QTest::newRow("P_bit") << "P_bit" << 8 << 8;
    QTest::newRow("K_bit") << "K_bit" << 9 << 9;
    QTest::newRow("M_bit") << "M_bit" << 10 << 10;
    QTest::newRow("L_bit") << "L_bit" << 11 << 11;
    QTest::newRow("F_bit") << "F_bit" << 12 << 12;
    QTest::newRow("TX") << "TX" << 13 << 13;
    QTest::newRow("CX") << "CX" << 14 << 14;
    QTest::newRow("D_bit") << "D_bit" << 15 << 15;
    QTest::newRow("letter case counts") << "d_w" << -1 << 16;
    QTest::newRow("letter case of the suffix counts") << "M_BIT" << -1 << 16;
    QTest::newRow("trailing blank") << "D_W " << -1 << 16;
    QTest::newRow("leading blank") << " D_W" << -1 << 16;
    QTest::newRow("beginning of a name") << "D" << -1 << 16;
    QTest::newRow("name with a tail") << "D_WW" << -1 << 16;
    QTest::newRow("unknown letter") << "X_bit" << -1 << 16;
    QTest::newRow("empty") << "" << -1 << 16;
}

void TestRegisterRow::nameLeadsToItsRow()
{
    QFETCH(QString, name);

    QTEST(registerIndex(name), "index");
    QTEST(registerRow(name), "row");
}

void TestRegisterRow::widthsAreThoseOfTheRow_data()
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

void TestRegisterRow::widthsAreThoseOfTheRow()
{
    QFETCH(QString, name);

    const RegisterWidths widths = registerWidths(name);
    QTEST(widths.unitBits, "unitBits");
    QTEST(widths.wordBits, "wordBits");
    QTEST(widths.bitName, "bitName");
}

void TestRegisterRow::bitNameIsRecognised_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");

    QTest::newRow("relay bit") << "M_bit" << true;
    QTest::newRow("data-register bit") << "D_bit" << true;
    QTest::newRow("word") << "M_W" << false;
    QTest::newRow("timer contact") << "TX" << false;
    QTest::newRow("counter contact") << "CX" << false;
    QTest::newRow("anywhere in the name") << "M_bits" << true;
    QTest::newRow("letter case counts") << "M_BIT" << false;
    QTest::newRow("without the underscore") << "Mbit" << false;
    QTest::newRow("empty") << "" << false;
}

void TestRegisterRow::bitNameIsRecognised()
{
    QFETCH(QString, name);

    QTEST(isBitName(name), "expected");
}

void TestRegisterRow::letterEndsAtTheUnderscore_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("letter");

    // clang-format off
    QTest::newRow("word") << "D_W" << "D";
    QTest::newRow("bit") << "M_bit" << "M";
    QTest::newRow("name without one") << "TX" << "TX";
    QTest::newRow("at the first of two") << "AB_C_D" << "AB";
    QTest::newRow("nothing before it") << "_bit" << "";
    QTest::newRow("empty") << "" << "";
    // clang-format on
}

void TestRegisterRow::letterEndsAtTheUnderscore()
{
    QFETCH(QString, name);

    QTEST(registerLetter(name), "letter");
}

QTEST_APPLESS_MAIN(TestRegisterRow)
#include "test_register_row.moc"
