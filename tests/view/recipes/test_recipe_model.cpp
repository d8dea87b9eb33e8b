#include "read_sheets.h"
#include "view/recipes/recipe_delegate.h"
#include "view/recipes/sheet/differences_filter.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QTableView>

#include <memory>

namespace cnet::view {

/** A recipe as a table: editing it, and how it differs from a PLC. */
class TestRecipeModel : public QObject, private ReadSheets
{
    Q_OBJECT

private:
    QString at(int row, int column) const { return m_model->index(row, column).data().toString(); }

    std::unique_ptr<RecipeModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;

private Q_SLOTS:
    void initTestCase() { prepare(); }
    void init()
    {
        m_tester.reset();
        m_model = std::make_unique<RecipeModel>();
        m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
        m_model->setSheet(sheetOf(kTwo));
    }

    void editsAndUndoes()
    {
        QSignalSpy edited(m_model.get(), &RecipeModel::edited);
        QCOMPARE(m_model->rowCount(), 5);
        QCOMPARE(at(1, RecipeModel::kValue), QLatin1String("0x00B4"));
        QCOMPARE(at(2, RecipeModel::kState), QLatin1String("no value"));
        QVERIFY(m_model->setData(m_model->index(1, RecipeModel::kValue), QLatin1String("258")));
        QCOMPARE(at(1, RecipeModel::kValue), QLatin1String("0x0102"));
        QVERIFY(m_model->setData(m_model->index(2, RecipeModel::kValue), QLatin1String(" -1 ")));
        QCOMPARE(at(2, RecipeModel::kValue), QLatin1String("65535"));
        QCOMPARE(m_model->edits().size(), 2);
        QVERIFY(m_model->index(1, RecipeModel::kValue).data(Qt::FontRole).value<QFont>().bold());
        m_model->undo().undo();
        QCOMPARE(at(2, RecipeModel::kValue), QString());
        m_model->undo().undo();
        QVERIFY(m_model->edits().isEmpty());
        QVERIFY(!m_model->undo().canUndo());
        m_model->undo().redo();
        QCOMPARE(at(1, RecipeModel::kValue), QLatin1String("0x0102"));
        QCOMPARE(edited.count(), 5);
    }

    void takesNothingElse()
    {
        const QModelIndex value = m_model->index(0, RecipeModel::kValue);
        for (const char *text : {"", "65536", "-32769", "0x10000", "1.5", "ten", "1 2"}) {
            QVERIFY2(!m_model->setData(value, QLatin1String(text)), text);
        }
        QVERIFY(!m_model->setData(m_model->index(0, RecipeModel::kAddress), QLatin1String("1")));
        QVERIFY(!m_model->setData(QModelIndex(), QLatin1String("1")));
        m_model->setEditing(RecipeModel::Editing::Locked);
        QVERIFY(!m_model->setData(value, QLatin1String("1")));
        QVERIFY(!m_model->undo().canUndo());
        m_model->setEditing(RecipeModel::Editing::Allowed);
        QVERIFY(m_model->setData(value, QLatin1String("300"))); // what it has already
        QVERIFY(!m_model->undo().canUndo());
    }

    void pastesAllOrNothing()
    {
        QString error;
        const QStringList texts{QLatin1String("1"), QLatin1String("0x2")};
        QVERIFY(!m_model->paste({4}, texts, error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!m_model->paste({0, 1}, {QLatin1String("1"), QLatin1String("x")}, error));
        QVERIFY2(error.contains(QLatin1String("'x'")), qPrintable(error));
        QVERIFY(!m_model->undo().canUndo());
        QVERIFY(m_model->paste({0, 4}, texts, error));
        QCOMPARE(at(0, RecipeModel::kValue), QLatin1String("1"));
        QCOMPARE(at(4, RecipeModel::kValue), QLatin1String("2"));
        m_model->undo().undo();
        QVERIFY(m_model->edits().isEmpty());
    }

    void showsWhatDiffers()
    {
        DifferencesFilter rows(*m_model);
        const QAbstractItemModelTester tester(&rows);
        m_model->setSheet(sheetOf(kTwo));
        rows.setShown(DifferencesFilter::Shown::Differences);
        QCOMPARE(rows.rowCount(), 5); // nothing is known
        QVector<WordOutcome> words(5);
        words[0] = {WordFate::Read, static_cast<quint16>(300), QString()};
        words[1] = {WordFate::Read, static_cast<quint16>(7), QString()};
        words[2] = {WordFate::Read, static_cast<quint16>(8), QString()};
        words[3] = {WordFate::NotRead, std::nullopt, QLatin1String("no answer")};
        words[4] = {WordFate::Read, static_cast<quint16>(0xFFFB), QString()};
        m_model->setWords(words);
        QCOMPARE(at(0, RecipeModel::kState), QLatin1String("same"));
        QCOMPARE(at(1, RecipeModel::kState), QLatin1String("differs"));
        QCOMPARE(at(1, RecipeModel::kPlc), QLatin1String("0x0007"));
        QVERIFY(!m_model->index(1, RecipeModel::kState).data(Qt::DecorationRole).isNull());
        QCOMPARE(at(2, RecipeModel::kState), QLatin1String("no value in the recipe; differs"));
        QCOMPARE(at(3, RecipeModel::kState),
                 QLatin1String("no value in the recipe; not read: no answer"));
        QCOMPARE(at(4, RecipeModel::kPlc), QLatin1String("-5"));
        QCOMPARE(rows.rowCount(), 3);
        const RowCounts counts = m_model->counts();
        QCOMPARE(counts.same, 2);
        QCOMPARE(counts.different, 2);
        QCOMPARE(counts.unknown, 1);
        QCOMPARE(counts.missing, 2);
        QVERIFY(m_model->setData(m_model->index(1, RecipeModel::kValue), QLatin1String("7")));
        QCOMPARE(rows.rowCount(), 2);
        m_model->undo().undo();
        QCOMPARE(rows.rowCount(), 3);
        rows.setShown(DifferencesFilter::Shown::All);
        QCOMPARE(rows.rowCount(), 5);
    }

    void anEditForgetsWhatWasWritten()
    {
        QVector<WordOutcome> words(5);
        words[0] = {WordFate::Verified, static_cast<quint16>(300), QString()};
        words[1] = {WordFate::Unconfirmed, std::nullopt, QLatin1String("the line is down")};
        m_model->setWords(words);
        QCOMPARE(at(0, RecipeModel::kState), QLatin1String("verified"));
        QCOMPARE(at(1, RecipeModel::kState), QLatin1String("not confirmed: the line is down"));
        QVERIFY(m_model->setData(m_model->index(0, RecipeModel::kValue), QLatin1String("9")));
        QVERIFY(m_model->setData(m_model->index(1, RecipeModel::kValue), QLatin1String("9")));
        QCOMPARE(at(0, RecipeModel::kState), QLatin1String("differs"));
        QCOMPARE(at(1, RecipeModel::kState), QString());
    }

    void takesWhatThePlcHas()
    {
        QCOMPARE(m_model->takeFromPlc(), 0);
        m_model->setWords(
            QVector<WordOutcome>(5, {WordFate::Read, static_cast<quint16>(300), QString()}));
        QCOMPARE(m_model->takeFromPlc(), 4);
        QCOMPARE(m_model->counts().same, 5);
        QCOMPARE(m_model->undo().count(), 1);
        m_model->undo().undo();
        QCOMPARE(m_model->counts().same, 1);
        m_model->setWords(QVector<WordOutcome>(3)); // of another file
        QCOMPARE(m_model->counts().same, 1);
    }

    void namesRowsByTheirTags()
    {
        m_model->setTagNames({{QLatin1String("1/D_W:200"), QLatin1String("press.speed")},
                              {QLatin1String("1/D_W:220"), QLatin1String("press.tilt")}});
        QCOMPARE(at(0, RecipeModel::kNote), QLatin1String("speed")); // the file knows best
        QCOMPARE(at(4, RecipeModel::kNote), QLatin1String("press.tilt"));
    }

    void checksWhileTyping()
    {
        QTableView view;
        view.setModel(m_model.get());
        RecipeDelegate delegate;
        view.setItemDelegate(&delegate);
        QSignalSpy typed(&delegate, &RecipeDelegate::typed);
        view.show();
        const QModelIndex value = m_model->index(0, RecipeModel::kValue);
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
        QCOMPARE(at(0, RecipeModel::kValue), QLatin1String("300"));
        field->selectAll();
        QTest::keyClicks(field, QLatin1String("0x1F"));
        QCOMPARE(typed.last().first().toString(), QString());
        QCOMPARE(field->palette().color(QPalette::Base), usual);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(at(0, RecipeModel::kValue), QLatin1String("31"), 60000);
        QCOMPARE(m_model->undo().count(), 1);
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipeModel)
#include "test_recipe_model.moc"
