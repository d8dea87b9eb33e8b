#include "shown_values.h"
#include "view/values/list/group_tree.h"
#include "view/values/list/mistake_list.h"

#include "support/rows.h"
#include "view/support/child_called.h"
#include "view/support/files.h"

#include <QAction>
#include <QHeaderView>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QUndoStack>

#include <sys/stat.h>

using namespace cnet;
using namespace cnet::view;

/** The page of values: its tag files, and what a project keeps of it. */
class TestValuesFiles : public QObject, private ShownValues
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }

    void opensAFile();
    void watchesManyInTheNextTurn();
    void listsMistakes();
    void takesNoMoreThanItCanHold();
    void saysThatAFileIsNotThere();
    void opensAndReplacesNoPipe();
    void savesWhatPeopleWrote();
    void overwritesNothingOfOthers();
    void namesWhatHasNoName();
    void savesIntoTheRightFileAfterUndo();
    void restoresItself();
    void leavesWhatItDoesNotUnderstand_data();
    void leavesWhatItDoesNotUnderstand();

private:
    static const Given<const char *> kStates[];

    MistakeList *mistakes() const { return m_page->findChild<MistakeList *>(); }
    QString write(const char *name, const QByteArray &content) const
    {
        QString path = m_folder.filePath(latin(name));
        put(path, content);
        return path;
    }

    QTemporaryDir m_folder;
};

void TestValuesFiles::opensAFile()
{
    QSignalSpy told(m_page.get(), &Page::told);
    QVERIFY(m_page->openFile(write("good.csv", kTags)));
    QCOMPARE(names().size(), 6);
    QCOMPARE(told.at(0).at(0).toString().contains(latin("good.csv")), true);
    m_page->undoStack().undo();
    QVERIFY(names().isEmpty());
}

void TestValuesFiles::watchesManyInTheNextTurn()
{
    QByteArray content("name,register,address\n");
    for (int i = 0; i < 5000; ++i) {
        content += "a" + QByteArray::number(i) + ",D_W," + QByteArray::number(i) + "\n";
    }
    const QString path = write("many.csv", content);
    QVERIFY(m_page->openFile(path));
    QVERIFY(names().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(int(names().size()), 5000, kPatienceMs);
    m_page->undoStack().undo();
    QVERIFY(names().isEmpty());
    // What comes in between is later, and stays.
    QVERIFY(m_page->openFile(path));
    m_page->setTags(m_plant->read(kTags));
    QTest::qWait(50);
    QCOMPARE(names().size(), 6);
}

void TestValuesFiles::listsMistakes()
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

void TestValuesFiles::takesNoMoreThanItCanHold()
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

void TestValuesFiles::saysThatAFileIsNotThere()
{
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QVERIFY(!m_page->openFile(m_folder.filePath(latin("none.csv"))));
    QVERIFY(!m_page->saveFile(m_folder.filePath(latin("none/none.csv"))));
    QCOMPARE(troubled.count(), 2);
    QVERIFY(!troubled.at(0).at(1).toString().isEmpty());
}

// Nobody reads or writes its other end, and to open it would wait for ever.
void TestValuesFiles::opensAndReplacesNoPipe()
{
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    const QString pipe = m_folder.filePath(latin("pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!m_page->openFile(pipe));
    QVERIFY(!m_page->saveFile(pipe));
    QCOMPARE(troubled.at(0).at(0).toString(),
             pipe + QLatin1String(" cannot be opened: it is no file"));
    QCOMPARE(troubled.at(1).at(0).toString(),
             pipe + QLatin1String(" was not saved: it is no file"));
}

void TestValuesFiles::savesWhatPeopleWrote()
{
    const QByteArray content("# made by hand\n"
                             "address;name;register;#note\n"
                             "1;a;D_W;first\n"
                             "2;b;D_W;second\n");
    const QString path = write("own.csv", content);
    QVERIFY(m_page->openFile(path));
    QVERIFY(m_page->saveFile(path));
    QCOMPARE(bytesOf(path), content);
    type("c=D_W:3");
    QVERIFY(m_page->saveFile(path));
    QVERIFY(bytesOf(path).startsWith("# made by hand\naddress;name;register;#note"));
    QVERIFY(bytesOf(path).contains("1;a;D_W;first\n2;b;D_W;second\n3;c;D_W"));
    // Also where another project saves into it.
    m_page->setTags(m_plant->tags().tags());
    QVERIFY(m_page->saveFile(path));
    QVERIFY(bytesOf(path).startsWith("# made by hand"));
}

void TestValuesFiles::overwritesNothingOfOthers()
{
    const QString path = write("shared.csv", kTags);
    QVERIFY(m_page->openFile(path));
    const QByteArray others = QByteArray(kTags) + "more,D_W,5,u16,1,,,,,read,,,\n";
    write("shared.csv", others);
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QVERIFY(!m_page->saveFile(path));
    QCOMPARE(troubled.count(), 1);
    QCOMPARE(bytesOf(path), others);
    QVERIFY(m_page->saveFile(m_folder.filePath(latin("mine.csv"))));
}

void TestValuesFiles::namesWhatHasNoName()
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

void TestValuesFiles::savesIntoTheRightFileAfterUndo()
{
    const QString first = write("first.csv", "name,register,address\na,D_W,1\n");
    const QString second = write("second.csv", "name,register,address\nb,D_W,2\n");
    const QByteArray before = bytesOf(second);
    QVERIFY(m_page->openFile(first));
    QVERIFY(m_page->openFile(second));
    m_page->undoStack().undo();
    type("c=D_W:3");
    auto *const save = childCalled<QAction>(*m_page, "Save tags");
    QVERIFY(save != nullptr);
    save->trigger();
    QCOMPARE(bytesOf(second), before);
    QVERIFY(bytesOf(first).contains("c,D_W,3"));
}

void TestValuesFiles::restoresItself()
{
    m_page->setTags(m_plant->read(kTags));
    type("D_W:100@u16*0.1");
    m_page->findChild<GroupTree *>()->choose(latin("oil"));
    m_page->findChild<QLineEdit *>()->setText(latin("speed"));
    view()->setColumnWidth(1, 123);
    view()->horizontalHeader()->moveSection(9, 1);
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
    QCOMPARE(table->order().mid(0, 3),
             QStringList({latin("name"), latin("description"), latin("value")}));
    QVERIFY(!page.undoStack().canUndo());
    // A version that knew no order has none, and a later one may know more columns.
    QJsonObject others = state;
    others.remove(latin("order"));
    page.restore(others);
    QCOMPARE(table->order().mid(0, 2), QStringList({latin("name"), latin("value")}));
    others.insert(latin("order"), QJsonArray({latin("max"), latin("colour"), 7, latin("max")}));
    page.restore(others);
    QCOMPARE(table->order().mid(0, 2), QStringList({latin("max"), latin("name")}));
    QCOMPARE(table->order().size(), kValueColumns);
    // An empty table, too.
    m_page->setTags(TagSet());
    page.restore(m_page->saved());
    QVERIFY(other.tags().tags().isEmpty());
}

const Given<const char *> TestValuesFiles::kStates[] = {
    {"nothing", "{}"},
    {"other kinds", R"({"tags":7,"nameless":{},"columns":[],"filter":{},"sort":1,"group":[]})"},
    {"no tag file", R"({"tags":"\u0000\u0001 what"})"},
    {"a mistake", R"({"tags":"name,register,address\nx,D_W,99999\n"})"},
    {"columns of nowhere", R"({"columns":{"value":-5,"name":1e300,"what":3},"sort":"what"})"},
};

void TestValuesFiles::leavesWhatItDoesNotUnderstand_data()
{
    addRows(kStates);
}

void TestValuesFiles::leavesWhatItDoesNotUnderstand()
{
    m_page->setTags(m_plant->read(kTags));
    const auto state = QJsonDocument::fromJson(currentRow(kStates).given);
    QVERIFY(state.isObject());
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    m_page->restore(state.object());
    QVERIFY(view()->columnWidth(1) > 0);
    const QJsonValue tags = state.object().value(QLatin1String("tags"));
    const bool areRefused = !tags.isUndefined();
    QCOMPARE(mistakes()->isVisible(), tags.isString());
    // Those of another project are not read from this one's PLC.
    QCOMPARE(names().size(), 0);
    QCOMPARE(troubled.size(), areRefused ? 1 : 0);
    // The project keeps them until others take their place.
    QCOMPARE(m_page->saved().value(QLatin1String("tags")),
             areRefused ? tags : QJsonValue(QString()));
    m_page->setTags(m_plant->read(kTags));
    QVERIFY(m_page->saved().value(QLatin1String("tags")).toString().contains(latin("oil.speed")));
}

QTEST_MAIN(TestValuesFiles)
#include "test_values_files.moc"
