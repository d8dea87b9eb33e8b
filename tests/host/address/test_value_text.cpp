#include "host/address/value_text.h"

#include <QtTest>

using namespace cnet;

class TestValueText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWords_data();
    void readsWords();
    void readsBits_data();
    void readsBits();
    void keepsTheWayOfWriting_data();
    void keepsTheWayOfWriting();
    void makesTextFitForALine_data();
    void makesTextFitForALine();
    void counts_data();
    void counts();
};

namespace {

const int kNone = -1;

} // namespace

void TestValueText::readsWords_data()
{
    QTest::addColumn<int>("value"); // negative: refused
    const auto row = [](const char *text, int value) { QTest::newRow(text) << value; };
    row("0", 0);
    row("65535", 65535);
    row("65536", kNone);
    row("-1", 0xFFFF);
    row("-32768", 0x8000);
    row("-32769", kNone);
    row("-0", 0);
    row("007", 7);
    row("0000000000000007", 7);
    row(" 12 ", 12);
    row("0x0", 0);
    row("0xFFFF", 0xFFFF);
    row("0Xbeef", 0xBEEF);
    row("0x0001F", 0x1F);
    row("0x10000", kNone);
    row("0x", kNone);
    row("0xG", kNone);
    row("-0x1", kNone);
    row("", kNone);
    row(" ", kNone);
    row("+1", kNone);
    row("--1", kNone);
    row("1 2", kNone);
    row("1.0", kNone);
    row("1e3", kNone);
    row("99999999999999999999", kNone);
    row("abc", kNone);
    row("0b1", kNone);
}

void TestValueText::readsWords()
{
    QFETCH(int, value);
    const auto read = parseValue(QLatin1String(QTest::currentDataTag()), false);
    QCOMPARE(read ? static_cast<int>(*read) : kNone, value);
}

void TestValueText::readsBits_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("0") << 0;
    QTest::newRow("1") << 1;
    QTest::newRow(" 1 ") << 1;
    for (const char *text : {"2", "-1", "01", "0x1", "", "on", "true"}) {
        QTest::newRow(text) << kNone;
    }
}

void TestValueText::readsBits()
{
    QFETCH(int, value);
    const auto read = parseValue(QLatin1String(QTest::currentDataTag()), true);
    QCOMPARE(read ? static_cast<int>(*read) : kNone, value);
}

void TestValueText::keepsTheWayOfWriting_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("like");
    QTest::addColumn<QString>("text");
    QTest::newRow("same decimal") << 7 << " 007"
                                  << " 007";
    QTest::newRow("same hexadecimal") << 0xBEEF << "0xbeef"
                                      << "0xbeef";
    QTest::newRow("same negative") << 0xFFFF << "-1"
                                   << "-1";
    QTest::newRow("another decimal") << 8 << " 007"
                                     << "8";
    QTest::newRow("another hexadecimal") << 0x1F << "0xbeef"
                                         << "0x001F";
    QTest::newRow("another negative") << 0xFFFE << "-1"
                                      << "-2";
    QTest::newRow("a negative turned positive") << 5 << "-1"
                                                << "5";
    QTest::newRow("nothing before") << 40000 << ""
                                    << "40000";
    QTest::newRow("no value before") << 40000 << "?"
                                     << "40000";
}

void TestValueText::keepsTheWayOfWriting()
{
    QFETCH(int, value);
    QFETCH(QString, like);
    QTEST(valueTextLike(static_cast<quint16>(value), like), "text");
}

void TestValueText::makesTextFitForALine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("plain") << "D_W:1"
                           << "D_W:1";
    QTest::newRow("control characters") << QString::fromLatin1("a\nb\tc\x1b[2J") << "a?b?c?[2J";
    QTest::newRow("no character") << QString(QChar(0xFFFD)) << "?";
    QTest::newRow("zero") << QString(QChar(0)) << "?";
    QTest::newRow("letters of other scripts") << QString(QChar(0xE4)) << QString(QChar(0xE4));
    QTest::newRow("long") << QString(61, QLatin1Char('x'))
                          << QString(60, QLatin1Char('x')) + QLatin1String("...");
}

void TestValueText::makesTextFitForALine()
{
    QFETCH(QString, text);
    QTEST(quotable(text), "quoted");
}

void TestValueText::counts_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("0 words") << 0;
    QTest::newRow("1 word") << 1;
    QTest::newRow("2 words") << 2;
}

void TestValueText::counts()
{
    QFETCH(int, count);
    QCOMPARE(counted(count, "word"), QLatin1String(QTest::currentDataTag()));
}

QTEST_APPLESS_MAIN(TestValueText)
#include "test_value_text.moc"
