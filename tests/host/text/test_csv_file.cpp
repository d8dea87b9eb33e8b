#include "support/rows.h"

#include <host/text/csv_file.h>

#include <QtTest>

using namespace cnet;

class TestCsvFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsRecords_data();
    void knowsRecords();
    void detectsTheDivider_data();
    void detectsTheDivider();
    void losesNothing();
    void setsFields_data();
    void setsFields();
    void addsAndRemoves();
};

namespace {

CsvFile fileOf(const QByteArray &content)
{
    return CsvFile::read(content, CsvDivider::Detected, CsvQuotes::Understood);
}

// "1F" is a record with fields in line 1, "2#" a comment, "3" a blank one.
const Case<const char *, const char *> kRecords[] = {
    {"nothing", "", "1"},
    {"no last line end", "a,b", "1F"},
    {"lines", "a\nb\n", "1F 2F 3"},
    {"lines of Windows", "a\r\n\r\nb\r\n", "1F 2 3F 4"},
    {"byte order mark", "\xEF\xBB\xBF# a\nb", "1# 2F"},
    {"comments", " # a\n\t#\n\"# quoted, by a spreadsheet\",,\n#\"\nb", "1# 2# 3# 4# 5F"},
    {"blanks of all kinds", " \t\n\xC2\xA0\n\xC2\xA0#\n\xC2\xA0z", "1 2 3# 4F"},
    {"a field of several lines", "a,\"b\nc\"\nd", "1F 3F"},
    {"a quote that is not closed costs its line", "a,\"b\nc,d\ne\n", "1F 2F 3F 4"},
    {"the next quote does not close it", "a,\"b\nc,\"d\"\n", "1F 2F 3"},
    {"only dividers", ",,\n", "1F 2"},
};

const Case<const char *, char> kDividers[] = {
    {"commas", "name,register\n", ','},       {"semicolons", "# a,b,c\n\nname;register;a,b\n", ';'},
    {"tabs", "name\tregister\n", '\t'},       {"none", "name\n", ','},
    {"as many of both", "a,b;c\n1;2\n", ','}, {"nothing at all", "", ','},
};

} // namespace

void TestCsvFile::knowsRecords_data()
{
    addRows(kRecords);
}

void TestCsvFile::knowsRecords()
{
    const auto &row = currentRow(kRecords);
    QStringList records;
    const CsvFile file = fileOf(row.given);
    for (const CsvRecord &record : file.records()) {
        records.append(QString::number(record.line) +
                       QLatin1String(record.kind == CsvKind::Fields    ? "F"
                                     : record.kind == CsvKind::Comment ? "#"
                                                                       : ""));
    }
    QCOMPARE(records.join(QLatin1Char(' ')), QLatin1String(row.expected));
    QCOMPARE(file.content(), QByteArray(row.given));
}

void TestCsvFile::detectsTheDivider_data()
{
    addRows(kDividers);
}

void TestCsvFile::detectsTheDivider()
{
    const auto &row = currentRow(kDividers);
    QCOMPARE(fileOf(row.given).dialect().divider, row.expected);
    QCOMPARE(CsvFile::read(row.given, CsvDivider::Comma, CsvQuotes::Literal).dialect().divider,
             ',');
}

void TestCsvFile::losesNothing()
{
    QByteArray every;
    for (int byte = 0; byte < 256; ++byte) {
        every.append(static_cast<char>(byte)).append("\"\n,");
    }
    for (const QByteArray &content : {every, "\xEF\xBB\xBF" + every, every.repeated(3)}) {
        QCOMPARE(fileOf(content).content(), content);
        QCOMPARE(CsvFile::read(content, CsvDivider::Comma, CsvQuotes::Literal).content(), content);
    }
}

void TestCsvFile::setsFields_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("first");
    QTest::addColumn<QStringList>("texts"); // "-": left alone
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const char *before, int first, const char *texts,
                        const char *after) {
        QTest::newRow(name) << QByteArray(before) << first
                            << QString::fromLatin1(texts).split(QLatin1Char('|'))
                            << QByteArray(after);
    };
    row("one", "a,b,c\r\n", 1, "x", "a,x,c\r\n");
    row("several", "a,b,c,d", 1, "x|-|y", "a,x,c,y");
    row("blanks stay", "a,  b ,\tc", 1, "x|y", "a,  x ,\ty");
    row("of an empty one, too", "a,   ,c", 1, "x", "a,   x,c");
    row("quotes stay", "a, \"b\" ,c", 1, "x", "a, \"x\" ,c");
    row("quotes where they are needed", "a,b", 1, "x,y", "a,\"x,y\"");
    row("the next one", "a,b", 2, "x", "a,b,x");
    row("far behind", "a", 3, "x|y", "a,,,x,y");
    row("some there, some not", "a,b", 1, "x|y", "a,x,y");
}

void TestCsvFile::setsFields()
{
    QFETCH(QByteArray, before);
    QFETCH(int, first);
    QFETCH(QStringList, texts);
    for (QString &text : texts) {
        text = text == QLatin1String("-") ? QString() : text;
    }
    CsvFile file = fileOf(before);
    file.setFields(0, first, texts);
    QTEST(file.content(), "after");
}

void TestCsvFile::addsAndRemoves()
{
    CsvFile file = fileOf("# a\r\nb;c\r\nd;e");
    file.append({QLatin1String("f"), QLatin1String("g;h")});
    QCOMPARE(file.content(), QByteArray("# a\r\nb;c\r\nd;e\r\nf;\"g;h\"\r\n"));
    file.remove(1);
    file.remove(3);
    QCOMPARE(file.content(), QByteArray("# a\r\nd;e\r\n"));
    CsvFile ended = fileOf("a,b\n");
    ended.append({QLatin1String("c")});
    QCOMPARE(ended.content(), QByteArray("a,b\nc\n"));
    CsvFile fresh((CsvDialect()));
    fresh.append({QLatin1String("a"), QLatin1String("b")});
    QCOMPARE(fresh.content(), QByteArray("a,b\n"));
}

QTEST_APPLESS_MAIN(TestCsvFile)
#include "test_csv_file.moc"
