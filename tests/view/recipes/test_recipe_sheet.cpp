#include "support/random.h"
#include "support/rows.h"
#include "view/connect/line.h"
#include "view/recipes/recipe_delegate.h"
#include "view/recipes/sheet/differences_filter.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QTableView>

namespace cnet::view {

namespace {

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const char kTwo[] = "register,address,count,value\n"
                    "# speed, pressure\n"
                    "D_W,200,2,300,0x00B4\n"
                    "D_W,210,2,,\n"
                    "D_W,220,1,-5\n";

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

class TestRecipeSheet : public QObject
{
    Q_OBJECT

private:
    Line m_line;

    RecipeReading reading(int station = 1)
    {
        return {station, m_line.registers(), [this](const Item &item, QString &why) {
                    return m_line.driver().check(item, Access::Read, why);
                }};
    }
    RecipeSheet sheetOf(const QByteArray &content)
    {
        QVector<Finding> mistakes;
        auto sheet = RecipeSheet::read(content, reading(), mistakes);
        if (!sheet) {
            qFatal("%s", qPrintable(mistakes.first().placed()));
        }
        return *sheet;
    }
    static QVector<std::optional<quint16>> valuesOf(const RecipeSheet &sheet)
    {
        QVector<std::optional<quint16>> values;
        for (const SheetRow &row : sheet.rows()) {
            values.append(row.value);
        }
        return values;
    }
    static QString at(const QAbstractItemModel &model, int row, int column)
    {
        return model.index(row, column).data().toString();
    }

private Q_SLOTS:
    void initTestCase() { QCOMPARE(m_line.prepare(), QString()); }

    void hasEachWordWithItsName()
    {
        const RecipeSheet sheet = sheetOf(bytesOf(QLatin1String(EXAMPLES "/bracket.csv")));
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
        QTest::newRow("an example") << bytesOf(QLatin1String(EXAMPLES "/cover.csv"));
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
        const QByteArray whole = bytesOf(QLatin1String(EXAMPLES "/bracket.csv"));
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

    void editsAndUndoes()
    {
        RecipeModel model;
        const QAbstractItemModelTester tester(&model);
        model.setSheet(sheetOf(kTwo));
        QSignalSpy edited(&model, &RecipeModel::edited);
        QCOMPARE(model.rowCount(), 5);
        QCOMPARE(at(model, 1, RecipeModel::kValue), QLatin1String("0x00B4"));
        QCOMPARE(at(model, 2, RecipeModel::kState), QLatin1String("no value"));
        QVERIFY(model.setData(model.index(1, RecipeModel::kValue), QLatin1String("258")));
        QCOMPARE(at(model, 1, RecipeModel::kValue), QLatin1String("0x0102"));
        QVERIFY(model.setData(model.index(2, RecipeModel::kValue), QLatin1String(" -1 ")));
        QCOMPARE(at(model, 2, RecipeModel::kValue), QLatin1String("65535"));
        QCOMPARE(model.edits().size(), 2);
        QVERIFY(model.index(1, RecipeModel::kValue).data(Qt::FontRole).value<QFont>().bold());
        model.undo().undo();
        QCOMPARE(at(model, 2, RecipeModel::kValue), QString());
        model.undo().undo();
        QVERIFY(model.edits().isEmpty());
        QVERIFY(!model.undo().canUndo());
        model.undo().redo();
        QCOMPARE(at(model, 1, RecipeModel::kValue), QLatin1String("0x0102"));
        QCOMPARE(edited.count(), 5);
    }

    void takesNothingElse()
    {
        RecipeModel model;
        model.setSheet(sheetOf(kTwo));
        const QModelIndex value = model.index(0, RecipeModel::kValue);
        for (const char *text : {"", "65536", "-32769", "0x10000", "1.5", "ten", "1 2"}) {
            QVERIFY2(!model.setData(value, QLatin1String(text)), text);
        }
        QVERIFY(!model.setData(model.index(0, RecipeModel::kAddress), QLatin1String("1")));
        QVERIFY(!model.setData(QModelIndex(), QLatin1String("1")));
        model.setEditing(RecipeModel::Editing::Locked);
        QVERIFY(!model.setData(value, QLatin1String("1")));
        QVERIFY(!model.undo().canUndo());
        model.setEditing(RecipeModel::Editing::Allowed);
        QVERIFY(model.setData(value, QLatin1String("300"))); // what it has already
        QVERIFY(!model.undo().canUndo());
    }

    void pastesAllOrNothing()
    {
        RecipeModel model;
        model.setSheet(sheetOf(kTwo));
        QString error;
        const QStringList texts{QLatin1String("1"), QLatin1String("0x2")};
        QVERIFY(!model.paste({4}, texts, error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!model.paste({0, 1}, {QLatin1String("1"), QLatin1String("x")}, error));
        QVERIFY2(error.contains(QLatin1String("'x'")), qPrintable(error));
        QVERIFY(!model.undo().canUndo());
        QVERIFY(model.paste({0, 4}, texts, error));
        QCOMPARE(at(model, 0, RecipeModel::kValue), QLatin1String("1"));
        QCOMPARE(at(model, 4, RecipeModel::kValue), QLatin1String("2"));
        model.undo().undo();
        QVERIFY(model.edits().isEmpty());
    }

    void showsWhatDiffers()
    {
        RecipeModel model;
        DifferencesFilter rows(model);
        const QAbstractItemModelTester tester(&rows);
        model.setSheet(sheetOf(kTwo));
        rows.setShown(DifferencesFilter::Shown::Differences);
        QCOMPARE(rows.rowCount(), 5); // nothing is known
        QVector<WordOutcome> words(5);
        words[0] = {WordFate::Read, static_cast<quint16>(300), QString()};
        words[1] = {WordFate::Read, static_cast<quint16>(7), QString()};
        words[2] = {WordFate::Read, static_cast<quint16>(8), QString()};
        words[3] = {WordFate::NotRead, std::nullopt, QLatin1String("no answer")};
        words[4] = {WordFate::Read, static_cast<quint16>(0xFFFB), QString()};
        model.setWords(words);
        QCOMPARE(at(model, 0, RecipeModel::kState), QLatin1String("same"));
        QCOMPARE(at(model, 1, RecipeModel::kState), QLatin1String("differs"));
        QCOMPARE(at(model, 1, RecipeModel::kPlc), QLatin1String("0x0007"));
        QVERIFY(!model.index(1, RecipeModel::kState).data(Qt::DecorationRole).isNull());
        QCOMPARE(at(model, 2, RecipeModel::kState),
                 QLatin1String("no value in the recipe; differs"));
        QCOMPARE(at(model, 3, RecipeModel::kState),
                 QLatin1String("no value in the recipe; not read: no answer"));
        QCOMPARE(at(model, 4, RecipeModel::kPlc), QLatin1String("-5"));
        QCOMPARE(rows.rowCount(), 3);
        const RowCounts counts = model.counts();
        QCOMPARE(counts.same, 2);
        QCOMPARE(counts.different, 2);
        QCOMPARE(counts.unknown, 1);
        QCOMPARE(counts.missing, 2);
        QVERIFY(model.setData(model.index(1, RecipeModel::kValue), QLatin1String("7")));
        QCOMPARE(rows.rowCount(), 2);
        model.undo().undo();
        QCOMPARE(rows.rowCount(), 3);
        rows.setShown(DifferencesFilter::Shown::All);
        QCOMPARE(rows.rowCount(), 5);
    }

    void anEditForgetsWhatWasWritten()
    {
        RecipeModel model;
        model.setSheet(sheetOf(kTwo));
        QVector<WordOutcome> words(5);
        words[0] = {WordFate::Verified, static_cast<quint16>(300), QString()};
        words[1] = {WordFate::Unconfirmed, std::nullopt, QLatin1String("the line is down")};
        model.setWords(words);
        QCOMPARE(at(model, 0, RecipeModel::kState), QLatin1String("verified"));
        QCOMPARE(at(model, 1, RecipeModel::kState),
                 QLatin1String("not confirmed: the line is down"));
        QVERIFY(model.setData(model.index(0, RecipeModel::kValue), QLatin1String("9")));
        QVERIFY(model.setData(model.index(1, RecipeModel::kValue), QLatin1String("9")));
        QCOMPARE(at(model, 0, RecipeModel::kState), QLatin1String("differs"));
        QCOMPARE(at(model, 1, RecipeModel::kState), QString());
    }

    void takesWhatThePlcHas()
    {
        RecipeModel model;
        model.setSheet(sheetOf(kTwo));
        QCOMPARE(model.takeFromPlc(), 0);
        model.setWords(
            QVector<WordOutcome>(5, {WordFate::Read, static_cast<quint16>(300), QString()}));
        QCOMPARE(model.takeFromPlc(), 4);
        QCOMPARE(model.counts().same, 5);
        QCOMPARE(model.undo().count(), 1);
        model.undo().undo();
        QCOMPARE(model.counts().same, 1);
        model.setWords(QVector<WordOutcome>(3)); // of another file
        QCOMPARE(model.counts().same, 1);
    }

    void namesRowsByTheirTags()
    {
        RecipeModel model;
        model.setSheet(sheetOf(kTwo));
        model.setTagNames({{QLatin1String("1/D_W:200"), QLatin1String("press.speed")},
                           {QLatin1String("1/D_W:220"), QLatin1String("press.tilt")}});
        QCOMPARE(at(model, 0, RecipeModel::kNote), QLatin1String("speed")); // the file knows best
        QCOMPARE(at(model, 4, RecipeModel::kNote), QLatin1String("press.tilt"));
    }

    void checksWhileTyping()
    {
        RecipeModel model;
        model.setSheet(sheetOf(kTwo));
        QTableView view;
        view.setModel(&model);
        RecipeDelegate delegate;
        view.setItemDelegate(&delegate);
        QSignalSpy typed(&delegate, &RecipeDelegate::typed);
        view.show();
        const QModelIndex value = model.index(0, RecipeModel::kValue);
        view.setCurrentIndex(value);
        view.edit(value);
        auto *field = view.viewport()->findChild<QLineEdit *>();
        QVERIFY(field != nullptr);
        QVERIFY(field->accessibleName().contains(QLatin1String("1/D_W:200")));
        const QColor usual = field->palette().color(QPalette::Base);
        field->selectAll();
        QTest::keyClicks(field, QLatin1String("70000"));
        QVERIFY(typed.last().first().toString().startsWith(
            QLatin1String("'70000' is no value; expected -32768")));
        QVERIFY(field->palette().color(QPalette::Base) != usual);
        QTest::keyClick(field, Qt::Key_Return);
        QCoreApplication::processEvents();
        QVERIFY(view.viewport()->findChild<QLineEdit *>() == field);
        QCOMPARE(at(model, 0, RecipeModel::kValue), QLatin1String("300"));
        field->selectAll();
        QTest::keyClicks(field, QLatin1String("0x1F"));
        QCOMPARE(typed.last().first().toString(), QString());
        QCOMPARE(field->palette().color(QPalette::Base), usual);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(at(model, 0, RecipeModel::kValue), QLatin1String("31"), 60000);
        QCOMPARE(model.undo().count(), 1);
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipeSheet)
#include "test_recipe_sheet.moc"
