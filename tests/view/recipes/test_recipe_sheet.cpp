#include "read_sheets.h"

#include "support/random.h"
#include "support/rows.h"
#include "view/support/files.h"

namespace cnet::view {

namespace {

struct Wrong
{
    const char *what;
    const char *content;
    const char *places; ///< "line:column" of each mistake
    const char *part;   ///< of the first one's text
};

const Wrong kWrong[] = {
    {"nothing", "", "1:1", "has no items"},
    {"comments only", "# a\n# b\n", "3:1", "has no items"},
    {"an unknown column", "register,adress,value\nD_W,1,1\n", "1:10", "unknown column 'adress'"},
    {"a missing column", "register,value\n", "1:1", "a column is missing"},
    {"semicolons", "register;address;value\nD_W;1;1\n", "1:1", "not by semicolons"},
    {"a value too large", "register,address,count,value\nD_W,200,2,1,70000\n", "2:13",
     "'70000' is no value"},
    {"a value in words", "register,address,value\nD_W,200,fast\n", "2:9", "'fast' is no value"},
    {"an unknown register", "station,register,address,value\n1, Q_W,1,1\n", "2:4",
     "no register 'Q_W'"},
    {"an address too high", "station,register,address,value\n1,D_W,99999,1\n", "2:7", "99999"},
    {"too few values", "station,register,address,count,value\n1,D_W,200,3,1,2\n", "2:11",
     "expected 3 values, found 2"},
    {"bits", "register,address,value\nM_bit,0.1,1\n", "2:7", "a recipe holds words"},
    {"an overlap", "register,address,value\nD_W,1,1,2\nD_W,2,5\n", "3:5", "overlaps"},
    {"several", "register,address,value\nD_W,1,x\nD_W,2,5\n\nD_W,y,5\nD_W,z,5\n", "2:7 5:5 6:5",
     "'x' is no value"},
    {"all of them", "register,address,value\nD_W,1,x\nD_W,y,1\n", "2:7 3:5", "'x' is no value"},
    {"the file ends without a line end", "register,address,value\nD_W,1,x", "2:7",
     "'x' is no value"},
    {"a mark in front", "\xEF\xBB\xBFregister,address,value\r\nD_W,1,x\r\n", "2:7",
     "'x' is no value"},
};

} // namespace

/** Recipes as they stand in their files. */
class TestRecipeSheet : public QObject, private ReadSheets
{
    Q_OBJECT

private:
    static QVector<std::optional<quint16>> valuesOf(const RecipeSheet &sheet)
    {
        QVector<std::optional<quint16>> values;
        for (const SheetRow &row : sheet.rows()) {
            values.append(row.value);
        }
        return values;
    }

private Q_SLOTS:
    void initTestCase() { prepare(); }

    void hasEachWordWithItsName()
    {
        const RecipeSheet sheet = sheetOf(bytesOf(latin(EXAMPLES "/bracket.csv")));
        QCOMPARE(sheet.rows().size(), 11);
        QCOMPARE(sheet.rows().at(1).address, QLatin1String("1/D_W:201"));
        QCOMPARE(sheet.rows().at(1).note, QLatin1String("speed"));
        QCOMPARE(sheet.rows().at(1).written, QLatin1String("300"));
        QCOMPARE(sheet.rows().at(5).note, QLatin1String("dwell"));
        QCOMPARE(sheet.rows().at(9).note, QLatin1String("four zones"));
        QCOMPARE(sheet.rows().at(10).written, QLatin1String("0x0100"));
        QCOMPARE(sheet.rows().at(10).value.value_or(0), static_cast<quint16>(0x100));
    }

    void keepsTheFileAsItIs_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("an example") << bytesOf(latin(EXAMPLES "/cover.csv"));
        QTest::newRow("values missing") << QByteArray(kTwo);
        QTest::newRow("no column for values") << QByteArray("register,address,count\nD_W,1,3\n");
        QTest::newRow("a spreadsheet's")
            << QByteArray("\xEF\xBB\xBF\"x\",\r\n")
                   .replace("\"x\",\r\n", "register,address,value,,\r\nD_W,7,1,,"
                                          "\r\n\r\n# end,,,,\r\n");
        QTest::newRow("no line end") << QByteArray("register,address,value\n D_W , 7 , 001 ");
    }
    void keepsTheFileAsItIs()
    {
        QFETCH(QByteArray, content);
        const RecipeSheet sheet = sheetOf(content);
        QCOMPARE(sheet.contentWith(valuesOf(sheet)), content);
    }

    void changesWhatWasChangedOnly()
    {
        const RecipeSheet sheet = sheetOf(kTwo);
        auto values = valuesOf(sheet);
        values[0] = 301;
        values[1] = 0xFFFF;
        values[4] = 0xFFFE;
        QByteArray expected = kTwo;
        expected.replace("300,0x00B4", "301,0xFFFF").replace("-5", "-2");
        QCOMPARE(sheet.contentWith(values), expected);
        QCOMPARE(sheet.firstHalfFilled(values), -1);
        values[3] = 1;
        QCOMPARE(sheet.firstHalfFilled(values), 2);
        QCOMPARE(sheet.contentWith(values), expected);
        values[2] = 0;
        QCOMPARE(sheet.contentWith(values), expected.replace("210,2,,", "210,2,0,1"));
    }

    void linesWithoutStationBelongToTheConnection()
    {
        QVector<Finding> mistakes;
        const auto sheet = RecipeSheet::read(kTwo, reading(7), mistakes);
        QVERIFY(sheet);
        QCOMPARE(sheet->rows().first().address, QLatin1String("7/D_W:200"));
        QCOMPARE(sheet->items().first().item.station, 7);
    }

    void tellsMistakesWithTheirPlaces_data() { addRows(kWrong); }
    void tellsMistakesWithTheirPlaces()
    {
        const auto &row = currentRow(kWrong);
        QVector<Finding> mistakes;
        QVERIFY(!RecipeSheet::read(row.content, reading(), mistakes));
        QStringList places;
        for (const Finding &mistake : mistakes) {
            places.append(QString::fromLatin1("%1:%2").arg(mistake.line).arg(mistake.column));
        }
        QVERIFY2(mistakes.first().text.contains(QLatin1String(row.part)),
                 qPrintable(mistakes.first().text));
        QCOMPARE(places.join(QLatin1Char(' ')), QLatin1String(row.places));
    }

    void tellsNoMoreMistakesThanAnybodyReads()
    {
        QByteArray content = "register,address,value\n";
        for (int i = 0; i < 100; ++i) {
            content += "D_W,1,x\n";
        }
        QVector<Finding> mistakes;
        QVERIFY(!RecipeSheet::read(content, reading(), mistakes));
        QCOMPARE(mistakes.size(), kMostMistakes);
    }

    void standsAnyFile()
    {
        const QByteArray whole = bytesOf(latin(EXAMPLES "/bracket.csv"));
        const auto size = static_cast<int>(whole.size());
        Random random(31);
        int read = 0;
        for (int round = 0; round < 1500; ++round) {
            QByteArray content = random.chance(50) ? whole.left(random.below(size)) : whole;
            for (int i = random.below(4); i > 0 && !content.isEmpty(); --i) {
                content[random.below(static_cast<int>(content.size()))] =
                    static_cast<char>(random.below(256));
            }
            QVector<Finding> mistakes;
            const auto sheet = RecipeSheet::read(content, reading(), mistakes);
            QCOMPARE(sheet.has_value(), mistakes.isEmpty());
            if (sheet) {
                ++read;
                QCOMPARE(sheet->contentWith(valuesOf(*sheet)), content);
            }
            const auto lines = content.count('\n') + 1;
            for (const Finding &mistake : mistakes) {
                QVERIFY(mistake.line >= 1 && mistake.line <= lines && mistake.column >= 1);
            }
        }
        QVERIFY(read > 20);
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipeSheet)
#include "test_recipe_sheet.moc"
