#include "support/rows.h"

#include <host/text/csv_field.h>

#include <QtTest>

#include <ctime>

using namespace cnet;

class TestCsvField : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void divides_data();
    void divides();
    void takesNoQuoteWhereNoneIsMeant();
    void writesWhatItReads_data();
    void writesWhatItReads();
    void isQuickWithQuotesInDisorder();
};

namespace {

struct Division
{
    const char *what;
    const char *record;
    char divider;
    const char *fields; // "line:column=text", with ! behind it for a trouble, by "|"
};

const Division kDivisions[] = {
    {"nothing", "", ',', "7:1="},
    {"one", "a", ',', "7:1=a"},
    {"several", "a,bc,,d", ',', "7:1=a|7:3=bc|7:6=|7:7=d"},
    {"blanks around them", " a , b c ,", ',', "7:2=a|7:6=b c|7:11="},
    {"semicolons", "a,b;c", ';', "7:1=a,b|7:5=c"},
    {"tabs", "a\t b\t", '\t', "7:1=a|7:4=b|7:6="},
    {"characters of several bytes", "\xC3\xA4\xE2\x82\xAC,b", ',',
     "7:1=\xC3\xA4\xE2\x82\xAC|7:4=b"},
    {"quotes", "\"a,b\",\"\" , \"c\" ,d", ',', "7:1=a,b|7:7=|7:12=c|7:17=d"},
    {"blanks within quotes", "\" a \"", ',', "7:1= a "},
    {"quotes within quotes", "\"a \"\"b\"\"\",c", ',', "7:1=a \"b\"|7:11=c"},
    {"a quote within a text", "3\",5\" pipe", ',', "7:1=3\"|7:4=5\" pipe"},
    {"lines within quotes", "\"a\nb\",c", ',', "7:1=a\nb|8:4=c"},
    {"no closing quote", "a,\"b,c", ',', "7:1=a|7:3=\"b,c!"},
    {"text behind the closing quote", "\"a\"b,c", ',', "7:1=\"a\"b!|7:6=c"},
    {"bytes that are no text", "a,\xFF\xFE,b", ',', "7:1=a|7:3=\xEF\xBF\xBD\xEF\xBF\xBD!|7:6=b"},
};

QByteArray shown(const CsvFields &fields)
{
    QList<QByteArray> all;
    for (const CsvField &field : fields.all) {
        all.append(QByteArray::number(field.line) + ':' + QByteArray::number(field.column) + '=' +
                   field.text.toUtf8() + (field.trouble == CsvTrouble::None ? "" : "!"));
    }
    return all.join('|');
}

} // namespace

void TestCsvField::divides_data()
{
    addRows(kDivisions);
}

void TestCsvField::divides()
{
    const auto &row = currentRow(kDivisions);
    const CsvFields fields = splitCsv(row.record, 7, {row.divider, CsvQuotes::Understood});
    QCOMPARE(shown(fields), QByteArray(row.fields));
    QCOMPARE(fields.at(100).text, QString());
    QCOMPARE(fields.at(100).begin, int(qstrlen(row.record)));
}

void TestCsvField::takesNoQuoteWhereNoneIsMeant()
{
    QCOMPARE(shown(splitCsv("\"a,b\"", 1, {',', CsvQuotes::Literal})),
             QByteArray("1:1=\"a|1:4=b\""));
    QCOMPARE(csvField(QLatin1String("a,\"b"), {',', CsvQuotes::Literal}), QByteArray("a,\"b"));
}

void TestCsvField::writesWhatItReads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("nothing") << QString() << QByteArray();
    QTest::newRow("plain") << QString::fromLatin1("a b") << QByteArray("a b");
    QTest::newRow("divider") << QString::fromLatin1("a;b") << QByteArray("\"a;b\"");
    QTest::newRow("another divider") << QString::fromLatin1("a,b") << QByteArray("a,b");
    QTest::newRow("quote") << QString::fromLatin1("a\"b") << QByteArray("\"a\"\"b\"");
    QTest::newRow("line feed") << QString::fromLatin1("a\nb") << QByteArray("\"a\nb\"");
    QTest::newRow("blanks") << QString::fromLatin1(" a") << QByteArray("\" a\"");
    QTest::newRow("no comment") << QString::fromLatin1("#a") << QByteArray("\"#a\"");
}

void TestCsvField::writesWhatItReads()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, field);
    const CsvDialect dialect{';', CsvQuotes::Understood};
    QCOMPARE(csvField(text, dialect), field);
    QCOMPARE(splitCsv(field, 1, dialect).at(0).text, text);
    QCOMPARE(csvRecord({text, QLatin1String("x")}, dialect), field + ";x");
}

// Each of them could go on to the end of the file.
void TestCsvField::isQuickWithQuotesInDisorder()
{
    const QByteArray record = QByteArray("\"x\"\"\n").repeated(200000);
    const std::clock_t begin = std::clock();
    CsvTrouble trouble = CsvTrouble::None;
    for (int at = 0; at < record.size(); ++at) {
        at = endOfCsvField(record, at, {}, trouble);
        QCOMPARE(trouble, CsvTrouble::OpenQuote);
    }
    QVERIFY(std::clock() - begin < 20 * CLOCKS_PER_SEC);
}

QTEST_APPLESS_MAIN(TestCsvField)
#include "test_csv_field.moc"
