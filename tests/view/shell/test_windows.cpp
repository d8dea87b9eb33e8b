#include "opened_windows.h"
#include "view/support/child_called.h"
#include "view/support/files.h"
#include "view/support/unnamed_fields.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QToolButton>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr int kPatienceMs = 60000;

} // namespace

/** The windows of the program, without a screen. */
class TestWindows : public QObject, private OpenedWindows
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepare("test_view_windows"); }
    void init() { open(); }
    void cleanup() { close(); }
    void showsThePressLine();
    void leavesThePressLine();
    void keepsAProject();
    void aBareProjectHasNothingOfTheOneBefore();
    void keepsWhatABrokenProjectWouldReplace();
    void opensTags();
    void saysWhenAFileCannotBeSaved();
    void asksBeforeItCloses();
    void offersWhatWasNotSaved();
    void opensOneMore();
    void survivesTheEndOfALine();
    void everythingHasAName();
    void everythingHasAKey();
};

void TestWindows::showsThePressLine()
{
    MainWindow &window = begin(demo());
    QCOMPARE(window.pages().currentWidget(), static_cast<QWidget *>(&window.pages().values()));
    QTRY_VERIFY_WITH_TIMEOUT(window.pages().line().isOpen(), kPatienceMs);
    const auto *state = window.statusBar()->findChild<QToolButton *>();
    QVERIFY(state != nullptr);
    QCOMPARE(state->text(), QLatin1String("simulated press line: connected"));
    QCOMPARE(window.bar().text(), QString());
    // Nothing that one would want to keep.
    QVERIFY(!window.document().isChanged());
    window.resize(window.width() + 100, window.height() + 50);
    QCoreApplication::processEvents();
    QVERIFY(!window.document().isChanged());
    Q_EMIT window.pages().values().trendWanted({QLatin1String("press.load")});
    QCOMPARE(window.pages().currentWidget(), static_cast<QWidget *>(&window.pages().trend()));
    QVERIFY(window.document().isChanged());
    window.pages().line().close();
    QCOMPARE(state->text(), QLatin1String("not connected"));
}

// Its names would mislead on a PLC that has other values there.
void TestWindows::leavesThePressLine()
{
    Connection other;
    other.kind = Connection::Kind::Tcp;
    other.address.host = QLatin1String("127.0.0.1");
    other.address.port = 1;
    const auto tags = [](MainWindow &window) {
        return window.pages().values().saved().value(QLatin1String("tags")).toString();
    };
    MainWindow &window = begin(demo());
    QVERIFY(window.pages().trend().traces().count() > 0);
    window.pages().connectPage().connectTo(Connection());
    QVERIFY(tags(window).contains(QLatin1String("press.load")));
    window.pages().connectPage().connectTo(other);
    QCOMPARE(tags(window), QString());
    QCOMPARE(window.pages().trend().traces().count(), 0);
    // What somebody has put together stays.
    MainWindow &own = begin(nothing());
    own.openFile(QLatin1String(PRESS_TAGS));
    own.pages().connectPage().connectTo(other);
    QVERIFY(tags(own).contains(QLatin1String("press.load")));
    MainWindow &opened = begin(demo());
    opened.openFile(QLatin1String(PRESS_TAGS));
    opened.pages().connectPage().connectTo(other);
    QVERIFY(tags(opened).contains(QLatin1String("press.load")));
}

void TestWindows::keepsAProject()
{
    MainWindow &window = begin(demo());
    window.pages().setCurrentWidget(&window.pages().trend());
    QCOMPARE(window.document().save(path("press.cnet-view")), QString());
    const Project saved = window.document().project();
    QVERIFY(saved.pages.contains(QLatin1String("values")));
    MainWindow &other = begin(nothing());
    other.openFile(path("press.cnet-view"));
    QCOMPARE(other.bar().text(), QString());
    QCOMPARE(other.pages().currentIndex(), window.pages().currentIndex());
    QTRY_VERIFY_WITH_TIMEOUT(other.pages().line().isOpen(), kPatienceMs);
    QVERIFY(!other.document().isChanged());
    QCOMPARE(QString::fromUtf8(toBytes(other.document().project())),
             QString::fromUtf8(toBytes(saved)));
    QCOMPARE(m_recent->projects(), QStringList(path("press.cnet-view")));
    QVERIFY(other.windowTitle().startsWith(QLatin1String("press")));
}

void TestWindows::aBareProjectHasNothingOfTheOneBefore()
{
    MainWindow &window = begin(demo());
    QTRY_VERIFY_WITH_TIMEOUT(window.pages().line().isOpen(), kPatienceMs);
    const auto tags = [&window] {
        return window.pages().values().saved().value(QLatin1String("tags")).toString();
    };
    QVERIFY(!tags().isEmpty());
    Project bare = window.document().project();
    bare.pages.clear();
    put(path("bare.cnet-view"), toBytes(bare));
    window.openFile(path("bare.cnet-view"));
    QCOMPARE(window.document().path(), path("bare.cnet-view"));
    QCOMPARE(tags(), QString());
    QCOMPARE(window.pages().trend().traces().count(), 0);
    QVERIFY(!window.document().isChanged());
}

void TestWindows::keepsWhatABrokenProjectWouldReplace()
{
    MainWindow &window = begin(demo());
    const QByteArray before = toBytes(window.document().project());
    QFile file(path("broken.cnet-view"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\n  \"format\": \"cnet-view project\",\n  \"version\": }\n");
    file.close();
    window.openFile(file.fileName());
    QVERIFY(window.bar().text().contains(QLatin1String("broken.cnet-view")));
    QCOMPARE(toBytes(window.document().project()), before);
    QVERIFY(window.pages().line().session() != nullptr);
    window.openFile(path("missing.cnet-view"));
    QVERIFY(window.bar().text().contains(QLatin1String("missing.cnet-view")));
    QCOMPARE(m_recent->projects(), QStringList());
}

void TestWindows::opensTags()
{
    MainWindow &window = begin(nothing());
    window.openFile(QLatin1String(PRESS_TAGS));
    QVERIFY(toBytes(window.document().project()).contains("press.speed_actual"));
    QCOMPARE(window.pages().currentWidget(), static_cast<QWidget *>(&window.pages().values()));
}

void TestWindows::saysWhenAFileCannotBeSaved()
{
    MainWindow &window = begin(demo());
    QVERIFY(!window.document().save(path("no/such/folder/a.cnet-view")).isEmpty());
    QCOMPARE(window.document().path(), QString());
}

void TestWindows::asksBeforeItCloses()
{
    QPointer<MainWindow> window = &begin(nothing());
    window->openFile(QLatin1String(PRESS_TAGS));
    QVERIFY(window->document().isChanged());
    window->close();
    QVERIFY(window->isVisible());
    QCOMPARE(int(window->bar().buttons().size()), 2);
    QTest::mouseClick(window->bar().buttons().at(1), Qt::LeftButton); // close without saving
    QTRY_VERIFY_WITH_TIMEOUT(window.isNull(), kPatienceMs);
    QCOMPARE(int(m_windows->all().size()), 0);
}

void TestWindows::offersWhatWasNotSaved()
{
    {
        // A program that was killed: its lock goes, and its work stays.
        const Project left = begin(demo()).document().project();
        restart();
        QVERIFY(QDir().mkpath(Recovery::usualFolder()));
        Recovery recovery([&left] { return Unsaved{QLatin1String("/tmp/oven.cnet-view"), left}; });
        recovery.noteChange();
        QVERIFY(recovery.writeNow());
    }
    MainWindow &window = begin(nothing());
    QCOMPARE(int(window.bar().buttons().size()), 1);
    QVERIFY(!toBytes(window.document().project()).contains("press.speed_actual"));
    QTest::mouseClick(window.bar().buttons().first(), Qt::LeftButton);
    QCOMPARE(window.bar().text(), QString());
    QVERIFY(toBytes(window.document().project()).contains("press.speed_actual"));
    QCOMPARE(window.document().path(), QLatin1String("/tmp/oven.cnet-view"));
    QVERIFY(window.document().isChanged());
    // Nobody else gets it.
    QCOMPARE(int(begin(nothing()).bar().buttons().size()), 0);
}

void TestWindows::opensOneMore()
{
    MainWindow &window = begin(demo());
    QAction *another = childCalled<QAction>(window, "New window");
    QVERIFY(another != nullptr);
    another->trigger();
    QCOMPARE(int(m_windows->all().size()), 2);
    // Each has a line of its own.
    MainWindow &other = *m_windows->all().at(1);
    QVERIFY(other.pages().line().session() == nullptr);
    other.pages().openDemo();
    QTRY_VERIFY_WITH_TIMEOUT(other.pages().line().isOpen() && window.pages().line().isOpen(),
                             kPatienceMs);
    delete &window;
    QVERIFY(other.pages().line().isOpen());
}

void TestWindows::survivesTheEndOfALine()
{
    MainWindow &window = begin(demo());
    for (int i = 0; i < window.pages().count(); ++i) {
        window.pages().setCurrentIndex(i);
        window.pages().line().close();
        QCoreApplication::processEvents();
        window.pages().connectPage().connectTo(Connection());
        QTRY_VERIFY_WITH_TIMEOUT(window.pages().line().isOpen(), kPatienceMs);
    }
}

void TestWindows::everythingHasAName()
{
    MainWindow &window = begin(demo());
    int count = 0;
    QCOMPARE(unnamedFields(window, count).join(QLatin1String("\n")), QString());
    QVERIFY(count > 50);
}

void TestWindows::everythingHasAKey()
{
    MainWindow &window = begin(demo());
    QStringList without;
    const auto menus = window.menuBar()->findChildren<QMenu *>();
    for (const QMenu *menu : menus) {
        for (const QAction *action : menu->actions()) {
            if (!action->isSeparator() && action->isEnabled() &&
                !action->text().contains(QLatin1Char('&'))) {
                without.append(action->text());
            }
        }
    }
    QCOMPARE(without.join(QLatin1String("; ")), QString());
    for (int i = 0; i < window.pages().count(); ++i) {
        // No letter of its own, which a menu or a field could have, too.
        QVERIFY2(!window.pages().tabText(i).contains(QLatin1Char('&')),
                 qPrintable(window.pages().tabText(i)));
        QCOMPARE(window.pages().tabToolTip(i), QString::fromLatin1("Ctrl+%1").arg(i + 1));
    }
}

QTEST_MAIN(TestWindows)
#include "test_windows.moc"
