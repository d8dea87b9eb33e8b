#include "shown_trend.h"

#include "view/support/unnamed_fields.h"
#include "view/tags/tag_drag.h"
#include "view/trend/side_panel.h"

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSplitter>
#include <QTableView>

using namespace cnet;
using namespace cnet::view;

/** The page by keys and drops, and what a project keeps of it. */
class TestTrendPage : public QObject, private ShownTrend
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }
    void saysWhatToDo();
    void takesDrops();
    void reachesAllByKeys();
    void notesAreEditedInPlace();
    void savesAndRestores();
    void keepsHeightsAndCursors();
    void restoresAnything();
    void fitsASmallWindow();
    void everyFieldHasAName();

private:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&m_page->plot(), key, modifiers);
    }
};

void TestTrendPage::saysWhatToDo()
{
    QVERIFY(!m_page->plot().isVisible());
    bool isSaid = false;
    for (const QLabel *label : m_page->findChildren<QLabel *>()) {
        isSaid = isSaid || (label->isVisible() && label->text().contains(QLatin1String("Drag")));
    }
    QVERIFY(isSaid);
    m_page->addTraces(names("speed"));
    QVERIFY(m_page->plot().isVisible());
}

void TestTrendPage::takesDrops()
{
    m_page->addTraces(names("speed"));
    m_page->view().setPanes(2);
    QCoreApplication::processEvents();
    Pane *second = m_page->plot().pane(1);
    const auto data = mimeOfTags(names("level lamp"));
    const QPoint place = second->mapTo(m_page.get(), second->rect().center());
    QDragEnterEvent enter(place, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_page.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_page.get(), &drop);
    QCOMPARE(m_page->traces().count(), 3);
    QCOMPARE(m_page->traces().at(1).choice.pane, 1);
    QMimeData other;
    other.setText(QLatin1String("speed"));
    QDragEnterEvent no(place, Qt::CopyAction, &other, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_page.get(), &no);
    QVERIFY(!no.isAccepted());
}

void TestTrendPage::reachesAllByKeys()
{
    m_page->addTraces(names("speed"));
    m_page->activateWindow();
    m_page->plot().setFocus();
    const TrendView &view = m_page->view();
    const double length = view.sight().time.length();
    press(Qt::Key_Plus);
    QCOMPARE(view.sight().time.length(), length / 2);
    QVERIFY(view.isFollowing());
    press(Qt::Key_Minus);
    QCOMPARE(view.sight().time.length(), length);
    press(Qt::Key_Left);
    QVERIFY(!view.isFollowing());
    QVERIFY(!m_page->actions().follow->isChecked());
    press(Qt::Key_Backspace);
    QVERIFY(view.isFollowing());
    press(Qt::Key_Left);
    press(Qt::Key_End);
    QVERIFY(view.isFollowing());
    press(Qt::Key_End); // it does not switch it off
    QVERIFY(view.isFollowing());
    QVERIFY(m_page->actions().follow->isChecked());
    press(Qt::Key_1);
    press(Qt::Key_2);
    QVERIFY(m_page->cursors().between().has_value());
    QVERIFY(m_page->cursors().active() == Cursor::B);
    QCOMPARE(m_page->cursorTable().rowCount(), 1);
    press(Qt::Key_1);
    QVERIFY(m_page->cursors().active() == Cursor::A);
    press(Qt::Key_0);
    QVERIFY(!m_page->cursors().isShown(Cursor::A));
    press(Qt::Key_P);
    QCOMPARE(view.panes(), 2);
    press(Qt::Key_PageDown);
    press(Qt::Key_L);
    QVERIFY(view.sight().panes[1].left.scaling == Scaling::Fixed);
    press(Qt::Key_R);
    QVERIFY(view.sight().panes[1].right.scaling == Scaling::Fixed);
    press(Qt::Key_L);
    QVERIFY(view.sight().panes[1].left.scaling == Scaling::Auto);
    press(Qt::Key_P, Qt::ShiftModifier);
    QCOMPARE(view.panes(), 1);
    press(Qt::Key_Space);
    QVERIFY(m_page->plot().isPaused());
    press(Qt::Key_Space);
    QVERIFY(!m_page->plot().isPaused());
    const auto all = m_page->plot().actions();
    QVERIFY(all.size() >= 17);
    for (const QAction *action : all) {
        QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->text()));
    }
}

void TestTrendPage::notesAreEditedInPlace()
{
    m_page->addTraces(names("speed"));
    m_page->activateWindow();
    m_page->plot().setFocus();
    m_page->cursors().place(Cursor::A, 1700000000000.0);
    press(Qt::Key_M);
    QCOMPARE(int(m_page->markers().all().size()), 1);
    QCOMPARE(m_page->markers().all().front().atMs, qint64(1700000000000));
    auto *list = m_page->findChild<SidePanel *>()->noteList();
    auto *editor = list->findChild<QLineEdit *>();
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, QLatin1String("1 valve open")); // a letter, no cursor
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_page->markers().all().front().note, QLatin1String("1 valve open"),
                              kPatienceMs);
    QCOMPARE(*m_page->cursors().at(Cursor::A), 1700000000000.0);
    list->setFocus();
    list->selectRow(0);
    QTest::keyClick(list, Qt::Key_G);
    QVERIFY(m_page->view().sight().time.holds(1700000000000.0));
    QTest::keyClick(list, Qt::Key_Delete);
    QVERIFY(m_page->markers().all().empty());
    auto *traces = m_page->findChild<SidePanel *>()->traceList();
    traces->setFocus();
    traces->selectRow(0);
    QTest::keyClick(traces, Qt::Key_H);
    QCOMPARE(m_page->traces().highlighted(), 0);
    QTest::keyClick(traces, Qt::Key_Delete);
    QCOMPARE(m_page->traces().count(), 0);
}

void TestTrendPage::savesAndRestores()
{
    m_page->addTraces(names("speed level lamp"));
    m_page->view().setPanes(2);
    m_page->traces().setPane(1, 1);
    m_page->traces().setVisible(0, false);
    m_page->view().setScale(1, Side::Right, {-5, 5});
    m_page->markers().add({1700000000000, QLatin1String("here")});
    m_page->view().setTime({1700000000000.0, 1700000030000.0});
    m_page->setRecordBound(7);
    const QJsonObject state = m_page->saved();

    TrendPage other(tags());
    QSignalSpy changed(&other, &Page::changed);
    other.addTraces(names("zones")); // which goes
    QVERIFY(changed.count() > 0);
    changed.clear();
    other.restore(state);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(other.saved(), state);
    QCOMPARE(other.traces().count(), 3);
    QCOMPARE(other.traces().at(1).choice.pane, 1);
    QCOMPARE(other.traces().at(0).kind.unit, QLatin1String("1/min"));
    QVERIFY(other.traces().at(2).kind.isBit);
    QCOMPARE(other.view().sight().time.length(), 30000.0);
    QCOMPARE(other.recordBound(), 7);
}

void TestTrendPage::keepsHeightsAndCursors()
{
    m_page->addTraces(names("speed level"));
    m_page->view().setPanes(2);
    QCoreApplication::processEvents();
    const QJsonObject old = m_page->saved();
    QSignalSpy changed(m_page.get(), &Page::changed);
    const auto *splitter = qobject_cast<QSplitter *>(m_page->plot().pane(1)->parentWidget());
    QSplitterHandle *handle = splitter->handle(1);
    const QPoint to = handle->rect().center() + QPoint(0, 60);
    QTest::mousePress(handle, Qt::LeftButton);
    QMouseEvent move(QEvent::MouseMove, to, handle->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(handle, &move);
    QTest::mouseRelease(handle, Qt::LeftButton);
    QVERIFY(changed.count() > 0);
    const auto part = [](TrendPage &page) {
        const double both = page.plot().pane(0)->height() + page.plot().pane(1)->height();
        return page.plot().pane(0)->height() / both;
    };
    QVERIFY(part(*m_page) > 0.55);
    m_page->cursors().place(Cursor::B, 1700000000000.0);
    const QJsonObject state = m_page->saved();

    TrendPage other(tags());
    other.resize(800, 1000);
    other.restore(QJsonDocument::fromJson(QJsonDocument(state).toJson()).object());
    QCOMPARE(other.saved(), state);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other, 60000));
    QVERIFY(qAbs(part(other) - part(*m_page)) < 0.05);
    QVERIFY(!other.cursors().isShown(Cursor::A));
    QCOMPARE(*other.cursors().at(Cursor::B), 1700000000000.0);
    // One of before them has neither.
    QJsonObject before = old;
    before.remove(QLatin1String("heights"));
    before.remove(QLatin1String("cursors"));
    other.restore(before);
    QCoreApplication::processEvents();
    QCOMPARE(other.saved(), old);
    QVERIFY(qAbs(part(other) - 0.5) < 0.05);
    QVERIFY(!other.cursors().isShown(Cursor::B));
}

void TestTrendPage::restoresAnything()
{
    m_page->addTraces(names("speed"));
    QJsonArray many;
    for (int i = 0; i < 1000; ++i) {
        many.append(QJsonObject{{QLatin1String("name"), QString::number(i / 2)},
                                {QLatin1String("pane"), i * 1000000},
                                {QLatin1String("colour"), 2147483647}});
    }
    m_page->restore({{QLatin1String("traces"), many},
                     {QLatin1String("panes"), many},
                     {QLatin1String("recordMegabytes"), -5}});
    QCOMPARE(m_page->traces().count(), TraceSet::kMostTraces);
    QCOMPARE(m_page->view().panes(), TrendView::kMostPanes);
    QVERIFY(m_page->recordBound() >= 1);
    m_page->refresh();
    m_page->restore({});
    QCOMPARE(m_page->traces().count(), 0);
    QCOMPARE(m_page->view().panes(), 1);
    m_page->refresh();
}

void TestTrendPage::fitsASmallWindow()
{
    m_page->addTraces(names("speed level lamp"));
    m_page->cursors().place(Cursor::A, 1700000000000.0);
    QCoreApplication::processEvents();
    const int line = m_page->fontMetrics().height();
    QVERIFY2(m_page->minimumSizeHint().height() < 40 * line,
             qPrintable(QString::number(m_page->minimumSizeHint().height() / line)));
    QVERIFY2(m_page->minimumSizeHint().width() < 60 * line,
             qPrintable(QString::number(m_page->minimumSizeHint().width() / line)));
}

void TestTrendPage::everyFieldHasAName()
{
    m_page->addTraces(names("speed level lamp"));
    m_page->cursors().place(Cursor::A, 1700000000000.0);
    int count = 0;
    const QStringList unnamed = unnamedFields(*m_page, count);
    QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(QLatin1Char('\n'))));
    QVERIFY(count > 5);
}

QTEST_MAIN(TestTrendPage)
#include "test_trend_page.moc"
