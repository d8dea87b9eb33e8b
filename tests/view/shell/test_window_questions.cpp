#include "opened_windows.h"
#include "view/support/child_called.h"
#include "view/support/files.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QTabBar>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr int kPatienceMs = 30000;

} // namespace

/** What the windows ask before work is replaced, and what they do where nobody asks. */
class TestWindowQuestions : public QObject, private OpenedWindows
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepare("test_view_window_questions"); }
    void init() { open(); }
    void cleanup() { close(); }
    void asksBeforeARecentProject();
    void thePressLineIsANewProject();
    void anotherConnectionIsNoneOfBefore_data();
    void anotherConnectionIsNoneOfBefore();
    void tagsAreOfTheStationOfTheirProject();
    void asksBeforeItReplacesWhatOthersStored();
    void offersWorkBesideAFile();
    void takesWorkUpBesideChanges();
    void aPageOpensUnderADrag();

private:
    /** A window that has changes, and the project it was saved as before. */
    MainWindow &changed()
    {
        MainWindow &window = begin(demo());
        window.document().save(path("press.cnet-view"));
        window.pages().trend().addTraces({QLatin1String("press.load")});
        return window;
    }
    void leaveWork(const QString &file) const
    {
        const Project work = m_windows->all().first()->document().project();
        Recovery recovery([&] { return Unsaved{file, work}; });
        recovery.noteChange();
        QVERIFY(recovery.writeNow());
    }
    static void answer(MainWindow &window, int button)
    {
        QVERIFY(window.bar().buttons().size() > button);
        QTest::mouseClick(window.bar().buttons().at(button), Qt::LeftButton);
    }
};

void TestWindowQuestions::asksBeforeARecentProject()
{
    MainWindow &window = changed();
    QVERIFY(window.document().isChanged());
    const QByteArray before = toBytes(window.document().project());
    m_recent->addProject(path("press.cnet-view"));
    Q_EMIT childCalled<QAction>(*window.menuBar(), "Open recent")->menu()->aboutToShow();
    QAction *recent = childCalled<QAction>(*window.menuBar(), "press.cnet-view");
    QVERIFY(recent != nullptr);
    recent->trigger();
    QCOMPARE(toBytes(window.document().project()), before);
    answer(window, 1);
    QVERIFY(toBytes(window.document().project()) != before);
    QVERIFY(!window.document().isChanged());
}

// Saving it must not replace the project that was open before.
void TestWindowQuestions::thePressLineIsANewProject()
{
    MainWindow &window = begin(nothing());
    QCOMPARE(window.document().save(path("own.cnet-view")), QString());
    childCalled<QAction>(*window.menuBar(), "Simulated press line")->trigger();
    QCOMPARE(window.document().path(), QString());
    QVERIFY(!window.document().isChanged());
    QVERIFY(toBytes(window.document().project()).contains("press.speed_actual"));
}

void TestWindowQuestions::anotherConnectionIsNoneOfBefore_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::newRow("missing") << QByteArray("\"connection\"") << QByteArray("\"else\"");
    QTest::newRow("a station that is none")
        << QByteArray("\"station\": 1") << QByteArray("\"station\": 32");
}

void TestWindowQuestions::anotherConnectionIsNoneOfBefore()
{
    QFETCH(const QByteArray, from);
    QFETCH(const QByteArray, to);
    MainWindow &window = begin(demo());
    QByteArray bytes = toBytes(window.document().project());
    QVERIFY(bytes.contains(from));
    put(path("other.cnet-view"), bytes.replace(from, to));
    QVERIFY(window.pages().line().session() != nullptr);
    window.openFile(path("other.cnet-view"));
    QVERIFY(window.pages().line().session() == nullptr);
    QVERIFY(window.bar().text().startsWith(
        QLatin1String("The connection of the project cannot be used.")));
}

// Tags that name no station are of the project's, not of the one that was connected before.
void TestWindowQuestions::tagsAreOfTheStationOfTheirProject()
{
    MainWindow &window = begin(demo());
    const QByteArray project =
        "{\"format\": \"cnet-view project\", \"version\": 1,"
        " \"connection\": {\"link\": \"simulator\", \"station\": 5},"
        " \"pages\": {\"values\": {\"tags\": \"name,register,address\\nspeed,D_W,100\\n\"}}}";
    put(path("five.cnet-view"), project);
    window.openFile(path("five.cnet-view"));
    QCOMPARE(window.bar().text(), QString());
    const QByteArray kept = toBytes(window.document().project());
    QVERIFY(kept.contains("speed,D_W,100,5"));
}

void TestWindowQuestions::asksBeforeItReplacesWhatOthersStored()
{
    MainWindow &window = changed();
    const QString file = path("press.cnet-view");
    window.save();
    QVERIFY(!window.document().isChanged());
    put(file, "of another");
    window.save();
    QCOMPARE(bytesOf(file), QByteArray("of another"));
    answer(window, 1);
    QCOMPARE(bytesOf(file), toBytes(window.document().project()));
    window.save(); // its own
    QVERIFY(window.bar().buttons().isEmpty());
}

void TestWindowQuestions::offersWorkBesideAFile()
{
    QCOMPARE(begin(demo()).document().save(path("press.cnet-view")), QString());
    leaveWork(QString());
    Start start = nothing();
    start.file = path("press.cnet-view");
    MainWindow &window = begin(start);
    QCOMPARE(int(window.bar().buttons().size()), 1);
    // Trouble is told of beside the question, not in its place.
    window.bar().tell(QLatin1String("no room"), QLatin1String("make some"));
    QCOMPARE(int(window.bar().buttons().size()), 1);
    QCOMPARE(window.bar().text().section(QLatin1Char('\n'), 0, 1),
             QLatin1String("no room\nmake some"));
    QVERIFY(window.bar().text().contains(QLatin1String("still there")));
}

void TestWindowQuestions::takesWorkUpBesideChanges()
{
    begin(demo());
    leaveWork(path("oven.cnet-view"));
    MainWindow &window = begin(nothing());
    window.openFile(QLatin1String(PRESS_TAGS));
    QVERIFY(window.document().isChanged());
    const QByteArray own = toBytes(window.document().project());
    window.offerLeftWork();
    answer(window, 0);
    QCOMPARE(toBytes(window.document().project()), own);
    const MainWindow &taker = *m_windows->all().last();
    QVERIFY(&taker != &window);
    QTRY_COMPARE_WITH_TIMEOUT(const_cast<MainWindow &>(taker).document().path(),
                              path("oven.cnet-view"), kPatienceMs);
}

void TestWindowQuestions::aPageOpensUnderADrag()
{
    MainWindow &window = begin(demo());
    QTabBar &tabs = *window.pages().tabBar();
    const int trend = window.pages().indexOf(&window.pages().trend());
    QVERIFY(window.pages().currentIndex() != trend);
    QMimeData tags;
    tags.setText(QLatin1String("press.load"));
    const QPoint place = tabs.tabRect(trend).center();
    QDragEnterEvent enter(place, Qt::CopyAction, &tags, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&tabs, &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &tags, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&tabs, &move);
    QTRY_COMPARE_WITH_TIMEOUT(window.pages().currentIndex(), trend, kPatienceMs);
}

QTEST_MAIN(TestWindowQuestions)
#include "test_window_questions.moc"
