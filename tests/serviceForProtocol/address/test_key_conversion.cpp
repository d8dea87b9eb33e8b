#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_merge.h"
#include "support/driver_fixture.h"

class TestKeyConversion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readKeyBecomesWords_data();
    void readKeyBecomesWords();
    void recipeKeyBecomesWords_data();
    void recipeKeyBecomesWords();
};

// "D_W:100*5", register:address*count.
static QString described(const KEY_ADDRESS &key)
{
    return key.regName + QLatin1Char(':') + QString::number(key.startAddr) + QLatin1Char('*') +
           QString::number(key.count);
}

static RegisterWidths widthsOf(int unitBits, int wordBits)
{
    const RegisterWidths widths = {unitBits, wordBits, unitBits == 1 && wordBits != 1};
    return widths;
}

void TestKeyConversion::readKeyBecomesWords_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<QString>("expected");

    // clang-format off
    QTest::newRow("bits within a word") << "M_bit" << 35 << 3 << 1 << 16 << "M_W:2*1";
    QTest::newRow("a whole word of bits") << "M_bit" << 16 << 16 << 1 << 16 << "M_W:1*1";
    QTest::newRow("one bit more than a word") << "M_bit" << 0 << 17 << 1 << 16 << "M_W:0*2";
    QTest::newRow("last bit of a word") << "M_bit" << 15 << 1 << 1 << 16 << "M_W:0*1";
    QTest::newRow("bits across two words") << "M_bit" << 15 << 2 << 1 << 16 << "M_W:0*2";
    QTest::newRow("up to the end of the second word") << "M_bit" << 8 << 24 << 1 << 16 << "M_W:0*2";
    QTest::newRow("no bits") << "M_bit" << 32 << 0 << 1 << 16 << "M_W:2*0";
    QTest::newRow("negative bit, towards zero") << "M_bit" << -1 << 1 << 1 << 16 << "M_W:0*0";
    QTest::newRow("bits of bytes") << "M_bit" << 35 << 3 << 1 << 8 << "M_B:4*1";
    QTest::newRow("eight bits are rounded by 16") << "M_bit" << 16 << 8 << 1 << 8 << "M_B:2*2";
    QTest::newRow("16 bits of bytes") << "M_bit" << 16 << 16 << 1 << 8 << "M_B:2*2";
    QTest::newRow("bits of double words") << "M_bit" << 35 << 3 << 1 << 32 << "M_D:1*1";
    QTest::newRow("16 bits of a double word") << "M_bit" << 0 << 16 << 1 << 32 << "M_D:0*0";
    QTest::newRow("48 bits of double words") << "M_bit" << 0 << 48 << 1 << 32 << "M_D:0*1";
    QTest::newRow("bits held one by one") << "M_bit" << 5 << 3 << 1 << 1 << "M:5*4";
    QTest::newRow("bits of no width") << "M_bit" << 5 << 3 << 1 << 0 << "M:5*3";
    QTest::newRow("words") << "D_W" << 10 << 5 << 16 << 16 << "D_W:10*5";
    QTest::newRow("words of bytes") << "D_W" << 10 << 5 << 8 << 8 << "D_B:10*10";
    QTest::newRow("words of double words") << "D_W" << 10 << 5 << 32 << 32 << "D_D:10*2";
    QTest::newRow("negative count, towards zero") << "D_W" << 10 << -3 << 32 << 32 << "D_D:10*-1";
    QTest::newRow("the unit width scales, not the word's") << "D_W" << 10 << 5 << 8 << 16 << "D_W:10*10";
    QTest::newRow("the word width names, not the unit's") << "D_W" << 10 << 5 << 16 << 8 << "D_B:10*5";
    QTest::newRow("contact") << "TX" << 7 << 3 << 1 << 1 << "TX:7*3";
    QTest::newRow("name without two parts") << "TX" << 7 << 3 << 8 << 8 << "TX:7*6";
    QTest::newRow("name of three parts") << "A_bit_C" << 7 << 3 << 1 << 16 << "A_bit_C:7*3";
    QTest::newRow("count beyond the numbers") << "D_W" << 0 << INT_MAX << 8 << 8 << "D_B:0*2147483647";
    // clang-format on
}

void TestKeyConversion::readKeyBecomesWords()
{
    QFETCH(QString, name);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);

    KEY_ADDRESS key = makeKey(1, qPrintable(name), startAddr, count);
    convertReadKey(key, widthsOf(unitBits, wordBits));
    QTEST(described(key), "expected");
}

void TestKeyConversion::recipeKeyBecomesWords_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("expected");

    QTest::newRow("words") << 16 << 16 << 5 << 5;
    QTest::newRow("bytes") << 8 << 8 << 5 << 10;
    QTest::newRow("double words") << 32 << 32 << 5 << 2;
    QTest::newRow("the word width scales, not the unit's") << 32 << 8 << 5 << 10;
    QTest::newRow("bits") << 1 << 16 << 5 << 5;
    QTest::newRow("contacts") << 1 << 1 << 5 << 5;
    QTest::newRow("negative count, towards zero") << 32 << 32 << -3 << -1;
    QTest::newRow("words over single bits") << 16 << 1 << 5 << 80;
    QTest::newRow("no width") << 16 << 0 << 5 << 5;
}

void TestKeyConversion::recipeKeyBecomesWords()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(int, count);
    QFETCH(int, expected);

    KEY_ADDRESS key = makeKey(1, "M_bit", 35, count);
    convertRecipeKey(key, widthsOf(unitBits, wordBits));
    QCOMPARE(described(key), QString::fromLatin1("M_bit:35*") + QString::number(expected));
    QCOMPARE(key.stationNo, 1);
}

QTEST_APPLESS_MAIN(TestKeyConversion)
#include "test_key_conversion.moc"
