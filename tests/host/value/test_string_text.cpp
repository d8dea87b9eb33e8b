#include "host/value/string_text.h"

#include "support/rows.h"

using namespace cnet;

class TestStringText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quotes_data();
    void quotes();
    void bringsEveryCharacterBack();
    void unquotes_data();
    void unquotes();
    void refuses_data();
    void refuses();
    void splits_data();
    void splits();
};

namespace {

const Case<const char *, const char *> kQuoted[] = {
    {"plain", "abc", "\"abc\""},
    {"nothing", "", "\"\""},
    {"marks", "a\"b\\c", "\"a\\\"b\\\\c\""},
    {"control characters", "a\nb\x7F", "\"a\\x0Ab\\x7F\""},
};

const Case<const char *, const char *> kUnquoted[] = {
    {"without marks", "abc", "abc"},
    {"a mark within", "a\"b", "a\"b"},
    {"line feed, return, tab", "\"\\n\\r\\t\"", "\n\r\t"},
    {"hexadecimal", "\"\\x41\\x0a\"", "A\n"},
};

const Case<const char *, const char *> kMistakes[] = {
    {"no mark at the end", "\"abc", "one quotation mark at the end"},
    {"a mark only", "\"", "one quotation mark at the end"},
    {"more behind it", "\"abc\"d", "one quotation mark at the end"},
    {"an unknown escape", "\"a\\qb\"", "expected \\\\, \\\""},
    {"a digit that is none", "\"\\x4G\"", "two hexadecimal digits"},
    {"one digit", "\"\\x4\"", "two hexadecimal digits"},
    {"a sign for a digit", "\"\\x+4\"", "two hexadecimal digits"},
    {"nothing behind it", "\"\\", "expected \\\\"},
};

const Case<const char *, const char *> kLists[] = {
    {"one", "1", "1"},
    {"several", "1, 2,3", "1| 2|3"},
    {"empty ones", "1,,", "1||"},
    {"nothing", "", ""},
    {"a comma in a text", "\"a,b\",c", "\"a,b\"|c"},
    {"a mark in a text", "\"a\\\",b\",c", "\"a\\\",b\"|c"},
    {"a blank in front", "1, \"a,b\"", "1| \"a,b\""},
    {"a mark that begins none", "5\",6", "5\"|6"},
};

} // namespace

void TestStringText::quotes_data()
{
    addRows(kQuoted);
}

void TestStringText::quotes()
{
    const auto &row = currentRow(kQuoted);
    QCOMPARE(quotedText(QLatin1String(row.given)), QLatin1String(row.expected));
}

void TestStringText::bringsEveryCharacterBack()
{
    for (ushort code = 0; code <= 0xFF; ++code) {
        const QString text = QString(QChar(code)) + QLatin1String("1");
        QString error;
        const auto back = unquotedText(quotedText(text), error);
        QVERIFY2(back.has_value(), qPrintable(error));
        QCOMPARE(*back, text);
        QCOMPARE(static_cast<int>(splitValues(quotedText(text)).size()), 1);
    }
}

void TestStringText::unquotes_data()
{
    addRows(kUnquoted);
}

void TestStringText::unquotes()
{
    const auto &row = currentRow(kUnquoted);
    QString error;
    QCOMPARE(unquotedText(QLatin1String(row.given), error), QString::fromLatin1(row.expected));
}

void TestStringText::refuses_data()
{
    addRows(kMistakes);
}

void TestStringText::refuses()
{
    const auto &row = currentRow(kMistakes);
    QString error;
    QVERIFY(!unquotedText(QLatin1String(row.given), error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

void TestStringText::splits_data()
{
    addRows(kLists);
}

void TestStringText::splits()
{
    const auto &row = currentRow(kLists);
    QCOMPARE(splitValues(QLatin1String(row.given)).join(QLatin1Char('|')),
             QLatin1String(row.expected));
}

QTEST_APPLESS_MAIN(TestStringText)
#include "test_string_text.moc"
