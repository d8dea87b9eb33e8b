#include "shown_values.h"
#include "view/values/list/group_tree.h"

#include "support/rows.h"
#include "view/support/unnamed_fields.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCompleter>
#include <QUndoStack>

using namespace cnet;
using namespace cnet::view;

/** The page of values: putting tags together, and what one does with them. */
class TestValuesPage : public QObject, private ShownValues
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }
    void cleanupTestCase();

    void addsWhatIsTyped();
    void addsWithAName();
    void saysWhatIsWrongWithAnEntry_data();
    void saysWhatIsWrongWithAnEntry();
    void completesNames();
    void findsWhatIsThere();
    void undoesAndRedoes();
    void forgetsToUndoWhatOthersChanged();
    void keepsTheSelection();
    void copiesRows();
    void wantsATrend();
    void choosesGroups();
    void namesWhatOneCanReach();

private:
    static const Given<const char *> kWrong[];
};

// The button that clears a field fades, and what fades it goes by itself when it has ended.
void TestValuesPage::cleanupTestCase()
{
    QTest::qWait(1000);
}

void TestValuesPage::addsWhatIsTyped()
{
    QSignalSpy changed(m_page.get(), &Page::changed);
    type("D_W:100@u16*0.1");
    QCOMPARE(names(), QStringList{latin("1/D_W:100@u16*0.1")});
    QVERIFY(entry()->field().text().isEmpty());
    QVERIFY(changed.count() > 0);
    QCOMPARE(view()->currentIndex().row(), 0);
}

void TestValuesPage::addsWithAName()
{
    type("oil.level = D_W:100@i16");
    QCOMPARE(names(), QStringList{latin("oil.level")});
    type("oil.level=D_W:101");
    QCOMPARE(names().size(), 1);
    QVERIFY(entry()->error().contains(latin("oil.level")));
}

const Given<const char *> TestValuesPage::kWrong[] = {
    {"no address there is", "D_W:99999"},
    {"no type", "D_W:100@u17"},
    {"no name", "1x=D_W:100"},
    {"nothing of all", "what is this"},
    {"a name without an item", "oil="},
};

void TestValuesPage::saysWhatIsWrongWithAnEntry_data()
{
    addRows(kWrong);
}

void TestValuesPage::saysWhatIsWrongWithAnEntry()
{
    QTest::keyClicks(&entry()->field(), latin(currentRow(kWrong).given));
    QVERIFY(!entry()->error().isEmpty());
    QCOMPARE(entry()->field().accessibleDescription(), entry()->error());
    QTest::keyClick(&entry()->field(), Qt::Key_Return);
    QVERIFY(names().isEmpty());
    QCOMPARE(entry()->field().text(), latin(currentRow(kWrong).given)); // to be mended
    entry()->field().clear();
    QVERIFY(entry()->error().isEmpty());
}

void TestValuesPage::completesNames()
{
    m_page->setTags(m_plant->read(kTags));
    QCompleter &completer = *entry()->field().completer();
    completer.setCompletionPrefix(latin("D_"));
    QVERIFY(completer.completionCount() > 0);
    QCOMPARE(completer.currentCompletion(), latin("D_W:"));
    completer.setCompletionPrefix(latin("speed"));
    QCOMPARE(completer.currentCompletion(), latin("oil.speed"));
    // Nobody is told off for what is only begun.
    QTest::keyClicks(&entry()->field(), latin("D_W"));
    QVERIFY(entry()->error().isEmpty());
}

void TestValuesPage::findsWhatIsThere()
{
    m_page->setTags(m_plant->read(kTags));
    type("oil.mode");
    QCOMPARE(names().size(), 6);
    QCOMPARE(view()->currentIndex().row(), 2);
    // One of the file that was taken away comes back as it was.
    view()->selectRow(2);
    view()->setFocus();
    QTest::keyClick(view(), Qt::Key_Delete);
    QVERIFY(!names().contains(latin("oil.mode")));
    type("oil.mode");
    QCOMPARE(names().size(), 6);
    QCOMPARE(m_plant->tags().tags().find(latin("oil.mode"))->texts.size(), 3);
}

void TestValuesPage::undoesAndRedoes()
{
    m_page->setTags(m_plant->read(kTags));
    const QStringList all = names();
    QUndoStack &stack = m_page->undoStack();
    QVERIFY(!stack.canUndo());
    type("D_W:7");
    view()->clearSelection();
    view()->selectRow(0);
    view()->selectionModel()->select(view()->model()->index(4, 0), // zones[1]: its tag goes
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    view()->setFocus();
    QTest::keyClick(view(), Qt::Key_Delete);
    QCOMPARE(names(), (QStringList{all.at(1), all.at(2), all.at(4), all.at(5), latin("1/D_W:7")}));
    QCOMPARE(stack.undoText(), latin("remove 2 tags"));
    QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(names(), all + QStringList{latin("1/D_W:7")});
    stack.undo();
    QCOMPARE(names(), all);
    QVERIFY(!stack.canUndo());
    stack.redo();
    stack.redo();
    QCOMPARE(names().size(), 5);
}

void TestValuesPage::forgetsToUndoWhatOthersChanged()
{
    type("D_W:7");
    QVERIFY(m_page->undoStack().canUndo());
    m_plant->tags().setTags(m_plant->read(kTags));
    QVERIFY(!m_page->undoStack().canUndo());
}

void TestValuesPage::keepsTheSelection()
{
    m_page->setTags(m_plant->read(kTags));
    view()->setCurrentIndex(view()->model()->index(16, 0));
    QCOMPARE(view()->selectedNames(), QStringList{latin("name")});
    QVector<Tag> tags = m_plant->tags().tags().all();
    tags.removeAt(3);
    m_plant->tags().setTags(TagSet(tags));
    QCOMPARE(view()->selectedNames(), QStringList{latin("name")});
    QCOMPARE(view()->currentIndex().row(), 4);
}

void TestValuesPage::copiesRows()
{
    m_page->setTags(m_plant->read(kTags));
    view()->selectRow(0);
    view()->setFocus();
    QTest::keyClick(view(), Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 3); // the last one is empty
    QVERIFY(lines.at(0).startsWith(latin("Name\tValue\tQuality")));
    QVERIFY(lines.at(1).startsWith(latin("oil.speed\t-\tnot read yet\t")));
    QVERIFY(lines.at(1).endsWith(latin("strokes wanted")));
}

void TestValuesPage::wantsATrend()
{
    QStringList wanted;
    connect(m_page.get(), &ValuesPage::trendWanted, this,
            [&wanted](const QStringList &names) { wanted = names; });
    view()->setFocus();
    QTest::keyClick(view(), Qt::Key_T); // nothing is there
    QVERIFY(wanted.isEmpty());
    m_page->setTags(m_plant->read(kTags));
    view()->selectRow(5);
    view()->selectionModel()->select(view()->model()->index(0, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::keyClick(view(), Qt::Key_T);
    QCOMPARE(wanted, (QStringList{latin("oil.speed"), latin("zones[2]")}));
    // In a field it is a letter.
    wanted.clear();
    QTest::keyClick(m_page->findChild<QLineEdit *>(), Qt::Key_T);
    QVERIFY(wanted.isEmpty());
    QCOMPARE(m_page->findChild<QLineEdit *>()->text(), latin("t"));
}

void TestValuesPage::choosesGroups()
{
    m_page->setTags(m_plant->read(kTags));
    auto *const groups = m_page->findChild<GroupTree *>();
    QCOMPARE(groups->topLevelItemCount(), 1);
    QCOMPARE(groups->topLevelItem(0)->text(0), latin("All tags (6)"));
    groups->choose(latin("oil/pump"));
    QCOMPARE(groups->currentItem()->text(0), latin("pump (1)"));
    QCOMPARE(groups->currentItem()->parent()->text(0), latin("oil (3)"));
    QCOMPARE(view()->model()->rowCount(), 1);
    // The group goes with its last tag, and all tags are seen again.
    view()->selectRow(0);
    view()->setFocus();
    QTest::keyClick(view(), Qt::Key_Delete);
    QCOMPARE(groups->chosen(), QString());
    QCOMPARE(view()->model()->rowCount(), 16);
}

void TestValuesPage::namesWhatOneCanReach()
{
    int count = 0;
    QCOMPARE(unnamedFields(*m_page, count), QStringList());
    QVERIFY(count >= 5);
}

QTEST_MAIN(TestValuesPage)
#include "test_values_page.moc"
