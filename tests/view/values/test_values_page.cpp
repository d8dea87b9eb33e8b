#include "values_fixture.h"
#include "view/values/list/group_tree.h"
#include "view/values/list/mistake_list.h"
#include "view/values/list/tag_entry.h"
#include "view/values/table/values_view.h"
#include "view/values/values_page.h"

#include "host/tag/typed_item.h"
#include "support/rows.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCompleter>
#include <QJsonDocument>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QUndoStack>

using namespace cnet;
using namespace cnet::view;

/** The page of values: putting tags together, their files, and what a project keeps. */
class TestValuesPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void addsWhatIsTyped();
    void addsWithAName();
    void saysWhatIsWrongWithAnEntry_data();
    void saysWhatIsWrongWithAnEntry();
    void completesNames();
    void findsWhatIsThere();
    void undoesAndRedoes();
    void forgetsToUndoWhatOthersChanged();
    void keepsTheSelection();
    void opensAFile();
    void listsMistakes();
    void takesNoMoreThanItCanHold();
    void saysThatAFileIsNotThere();
    void savesWhatPeopleWrote();
    void overwritesNothingOfOthers();
    void namesWhatHasNoName();
    void savesIntoTheRightFileAfterUndo();
    void restoresItself();
    void leavesWhatItDoesNotUnderstand_data();
    void leavesWhatItDoesNotUnderstand();
    void copiesRows();
    void wantsATrend();
    void choosesGroups();
    void namesWhatOneCanReach();

private:
    static const Given<const char *> kWrong[];
    static const Given<const char *> kStates[];

    ValuesView *view() const { return m_page->findChild<ValuesView *>(); }
    TagEntry *entry() const { return m_page->findChild<TagEntry *>(); }
    MistakeList *mistakes() const { return m_page->findChild<MistakeList *>(); }
    QStringList names() const
    {
        QStringList names;
        for (const Tag &tag : m_plant->tags().tags().all()) {
            names.append(tagText(tag));
        }
        return names;
    }
    void type(const char *text)
    {
        entry()->field().clear();
        QTest::keyClicks(&entry()->field(), latin(text));
        QTest::keyClick(&entry()->field(), Qt::Key_Return);
    }
    QString write(const char *name, const QByteArray &content) const
    {
        QFile file(m_folder.filePath(latin(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("no file");
        }
        return file.fileName();
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<ValuesFixture> m_plant;
    std::unique_ptr<ValuesPage> m_page;
};

void TestValuesPage::init()
{
    m_plant = std::make_unique<ValuesFixture>();
    m_page = std::make_unique<ValuesPage>(m_plant->tags());
    m_page->resize(1000, 500);
    m_page->show();
    m_page->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get(), kPatienceMs));
}

void TestValuesPage::cleanup()
{
    m_page.reset();
    m_plant.reset();
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

void TestValuesPage::opensAFile()
{
    QSignalSpy told(m_page.get(), &Page::told);
    QVERIFY(m_page->openFile(write("good.csv", kTags)));
    QCOMPARE(names().size(), 6);
    QCOMPARE(told.at(0).at(0).toString().contains(latin("good.csv")), true);
    m_page->undoStack().undo();
    QVERIFY(names().isEmpty());
}

void TestValuesPage::listsMistakes()
{
    QVERIFY(m_page->openFile(write("good.csv", kTags)));
    const QString path = write("bad.csv", "name,register,address\na,D_W,1\nb,Q_W,2\nc,D_W,x\n");
    QVERIFY(!m_page->openFile(path));
    QCOMPARE(names().size(), 6); // nothing has changed
    QVERIFY(mistakes()->isVisible());
    QVERIFY(mistakes()->heading().contains(latin("bad.csv")));
    QCOMPARE(mistakes()->rows().topLevelItemCount(), 2);
    const QTreeWidgetItem *const first = mistakes()->rows().topLevelItem(0);
    QCOMPARE(first->text(0), latin("3"));
    QCOMPARE(first->text(1), latin("3"));
    QCOMPARE(first->text(2), latin("register"));
    QVERIFY(first->text(3).contains(latin("Q_W")));
    QVERIFY(m_page->openFile(write("good.csv", kTags)));
    QVERIFY(!mistakes()->isVisible());
}

void TestValuesPage::takesNoMoreThanItCanHold()
{
    QByteArray content("name,register,address,count\n");
    for (int i = 0; i < 30; ++i) {
        content += "a" + QByteArray::number(i) + ",D_W,0,10000\n";
    }
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QVERIFY(!m_page->openFile(write("huge.csv", content)));
    QCOMPARE(troubled.count(), 1);
    QVERIFY(names().isEmpty());
    m_page->restore({{latin("tags"), QString::fromLatin1(content)}});
    QCOMPARE(troubled.count(), 2);
    QVERIFY(names().isEmpty());
}

void TestValuesPage::saysThatAFileIsNotThere()
{
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QVERIFY(!m_page->openFile(m_folder.filePath(latin("none.csv"))));
    QVERIFY(!m_page->saveFile(m_folder.filePath(latin("none/none.csv"))));
    QCOMPARE(troubled.count(), 2);
    QVERIFY(!troubled.at(0).at(1).toString().isEmpty());
}

void TestValuesPage::savesWhatPeopleWrote()
{
    const QByteArray content("# made by hand\n"
                             "address;name;register;#note\n"
                             "1;a;D_W;first\n"
                             "2;b;D_W;second\n");
    const QString path = write("own.csv", content);
    QVERIFY(m_page->openFile(path));
    QVERIFY(m_page->saveFile(path));
    QCOMPARE(read(path), content);
    type("c=D_W:3");
    QVERIFY(m_page->saveFile(path));
    QVERIFY(read(path).startsWith("# made by hand\naddress;name;register;#note"));
    QVERIFY(read(path).contains("1;a;D_W;first\n2;b;D_W;second\n3;c;D_W"));
    // Also where another project saves into it.
    m_page->setTags(m_plant->tags().tags());
    QVERIFY(m_page->saveFile(path));
    QVERIFY(read(path).startsWith("# made by hand"));
}

void TestValuesPage::overwritesNothingOfOthers()
{
    const QString path = write("shared.csv", kTags);
    QVERIFY(m_page->openFile(path));
    const QByteArray others = QByteArray(kTags) + "more,D_W,5,u16,1,,,,,read,,,\n";
    write("shared.csv", others);
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QVERIFY(!m_page->saveFile(path));
    QCOMPARE(troubled.count(), 1);
    QCOMPARE(read(path), others);
    QVERIFY(m_page->saveFile(m_folder.filePath(latin("mine.csv"))));
}

void TestValuesPage::namesWhatHasNoName()
{
    type("D_W:100@u16");
    type("D_W:100@i16");
    QSignalSpy told(m_page.get(), &Page::told);
    const QString path = m_folder.filePath(latin("named.csv"));
    QVERIFY(m_page->saveFile(path));
    QCOMPARE(names(), (QStringList{latin("D_W_100"), latin("D_W_100_2")}));
    QVERIFY(told.at(0).at(0).toString().contains(latin("got one: 2")));
    m_page->setTags(TagSet());
    QVERIFY(m_page->openFile(path));
    QCOMPARE(names().size(), 2);
}

void TestValuesPage::savesIntoTheRightFileAfterUndo()
{
    const QString first = write("first.csv", "name,register,address\na,D_W,1\n");
    const QString second = write("second.csv", "name,register,address\nb,D_W,2\n");
    const QByteArray before = read(second);
    QVERIFY(m_page->openFile(first));
    QVERIFY(m_page->openFile(second));
    m_page->undoStack().undo();
    type("c=D_W:3");
    const auto actions = m_page->findChildren<QAction *>();
    for (QAction *const action : actions) {
        if (action->text() == latin("&Save tags")) {
            action->trigger();
        }
    }
    QCOMPARE(read(second), before);
    QVERIFY(read(first).contains("c,D_W,3"));
}

void TestValuesPage::restoresItself()
{
    m_page->setTags(m_plant->read(kTags));
    type("D_W:100@u16*0.1");
    m_page->findChild<GroupTree *>()->choose(latin("oil"));
    m_page->findChild<QLineEdit *>()->setText(latin("speed"));
    view()->setColumnWidth(1, 123);
    view()->sortByColumn(3, Qt::DescendingOrder);
    const QJsonObject state = m_page->saved();
    QVERIFY(QJsonDocument::fromJson(QJsonDocument(state).toJson()).object() == state);

    ValuesFixture other;
    ValuesPage page(other.tags());
    page.restore(state);
    QCOMPARE(other.tags().tags().names(), m_plant->tags().tags().names());
    QVERIFY(tagDiff(other.tags().tags(), m_plant->tags().tags()).isEmpty());
    QVERIFY(page.saved() == state);
    auto *const table = page.findChild<ValuesView *>();
    QCOMPARE(table->model()->rowCount(), 1);
    QCOMPARE(table->columnWidth(1), 123);
    QVERIFY(!page.undoStack().canUndo());
    // An empty table, too.
    m_page->setTags(TagSet());
    page.restore(m_page->saved());
    QVERIFY(other.tags().tags().isEmpty());
}

const Given<const char *> TestValuesPage::kStates[] = {
    {"nothing", "{}"},
    {"other kinds", R"({"tags":7,"nameless":{},"columns":[],"filter":{},"sort":1,"group":[]})"},
    {"no tag file", R"({"tags":"\u0000\u0001 what"})"},
    {"a mistake", R"({"tags":"name,register,address\nx,D_W,99999\n"})"},
    {"columns of nowhere", R"({"columns":{"value":-5,"name":1e300,"what":3},"sort":"what"})"},
};

void TestValuesPage::leavesWhatItDoesNotUnderstand_data()
{
    addRows(kStates);
}

void TestValuesPage::leavesWhatItDoesNotUnderstand()
{
    m_page->setTags(m_plant->read(kTags));
    const auto state = QJsonDocument::fromJson(currentRow(kStates).given);
    QVERIFY(state.isObject());
    m_page->restore(state.object());
    QCOMPARE(names().size(), 6);
    QVERIFY(view()->columnWidth(1) > 0);
    const QString tags = state.object().value(QLatin1String("tags")).toString();
    QCOMPARE(mistakes()->isVisible(), !tags.isEmpty());
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
    const auto widgets = m_page->findChildren<QWidget *>();
    int named = 0;
    for (const QWidget *const widget : widgets) {
        const bool isInput = qobject_cast<const QLineEdit *>(widget) != nullptr ||
                             qobject_cast<const QAbstractItemView *>(widget) != nullptr;
        const bool isPartOfOther = qobject_cast<const QHeaderView *>(widget) != nullptr;
        if (isInput && !isPartOfOther) {
            QVERIFY2(!widget->accessibleName().isEmpty(), widget->metaObject()->className());
            ++named;
        }
    }
    QVERIFY(named >= 5);
}

QTEST_MAIN(TestValuesPage)
#include "test_values_page.moc"
