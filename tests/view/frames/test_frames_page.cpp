#include "shown_frames.h"

#include "view/support/unnamed_fields.h"

#include <support/capture_file.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QScrollBar>
#include <QtTest>

using namespace cnet;
using namespace cnet::view;

/** The page of frames, on its own and on the line of a simulator. */
class TestFramesPage : public QObject, private ShownFrames
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }
    void showsALine();
    void outlivesSessions();
    void showsFieldsOverTheirBytes();
    void showsWhatHasNoFields();
    void goesToThePartner();
    void followsTheEnd();
    void keepsItsPlaceWhileOldOnesGo();
    void keepsAFrameThatIsGone();
    void holdsTheTable();
    void copiesWhatIsSelected();
    void comesBackAsItWasLeft();
    void takesWhateverAProjectHolds();
    void isReachedByTheKeyboard();
    void isNamedForScreenReaders();

private:
    QScrollBar &bar() const { return *m_page->table().verticalScrollBar(); }
};

void TestFramesPage::showsALine()
{
    QCOMPARE(m_line->prepare(), QString());
    Connection fast;
    fast.address.line.baud = 0;
    m_line->open(fast);
    QString error;
    const auto there = parseItem(QLatin1String("D_W:100"), 1, m_line->registers(), error);
    const auto nowhere = parseItem(QLatin1String("9/D_W:100"), 1, m_line->registers(), error);
    QVERIFY2(there && nowhere, qPrintable(error));
    m_line->session()->monitor({*there, *nowhere});
    QTRY_VERIFY_WITH_TIMEOUT(m_page->recorder().total() > 20 && m_page->recorder().faulty() > 0,
                             60000);
    FrameQuery query;
    query.faultsOnly = true;
    m_page->filterBar().setQuery(query);
    QTRY_VERIFY_WITH_TIMEOUT(table().model()->rowCount() >= 2, 60000);
    QCOMPARE(table().model()->index(1, FrameModel::Result).data().toString(),
             QLatin1String("no answer"));
    QCOMPARE(table().model()->index(0, FrameModel::Station).data().toString(), QLatin1String("9"));
    QVERIFY(m_page->statusText().contains(QLatin1String("rows shown")));
}

void TestFramesPage::outlivesSessions()
{
    QCOMPARE(m_line->prepare(), QString());
    Connection fast;
    fast.address.line.baud = 0;
    QString error;
    for (int i = 0; i < 3; ++i) {
        m_line->open(fast);
        const auto item = parseItem(QLatin1String("D_W:100"), 1, m_line->registers(), error);
        m_line->session()->monitor({*item});
        const qint64 before = m_page->recorder().total();
        QTRY_VERIFY_WITH_TIMEOUT(m_page->recorder().total() > before + 2, 60000);
    }
    m_line->close();
    m_page->recorder().flush();
    select(0);
    QVERIFY(m_page->detail().fields().topLevelItemCount() > 0);
    // A page that opens on a line that runs.
    m_line->open(fast);
    const auto item = parseItem(QLatin1String("D_W:100"), 1, m_line->registers(), error);
    m_line->session()->monitor({*item});
    m_page = std::make_unique<FramesPage>(*m_line);
    QTRY_VERIFY_WITH_TIMEOUT(m_page->recorder().total() > 2, 60000);
}

void TestFramesPage::showsFieldsOverTheirBytes()
{
    exchanges(1);
    select(1);
    const QTreeWidget &fields = m_page->detail().fields();
    ByteView &bytes = m_page->detail().bytes();
    QVERIFY(m_page->detail().headline().contains(QLatin1String("1/D_W:10*2")));
    QVERIFY(fields.topLevelItemCount() > 6);
    QCOMPARE(fields.topLevelItem(1)->text(0), QLatin1String("station"));
    QCOMPARE(fields.topLevelItem(1)->text(2), QLatin1String("1-2"));
    QCOMPARE(fields.topLevelItem(1)->text(3), QLatin1String("30 31"));
    // The list leads to the bytes, and the bytes to the list.
    m_page->detail().fields().setCurrentItem(fields.topLevelItem(1));
    QCOMPARE(bytes.selected(), 1);
    const QImage before = bytes.viewport()->grab().toImage();
    const int other = fields.topLevelItemCount() - 1;
    m_page->detail().bytes().verticalScrollBar()->setValue(0);
    QTest::mouseClick(bytes.viewport(), Qt::LeftButton, {}, bytes.placeOf(2).center());
    QCOMPARE(fields.indexOfTopLevelItem(fields.currentItem()), 2);
    QCOMPARE(bytes.selected(), 2);
    QVERIFY(bytes.viewport()->grab().toImage() != before);
    // What is out of sight comes into it.
    m_page->detail().fields().setCurrentItem(fields.topLevelItem(other));
    QVERIFY(bytes.viewport()->rect().intersects(bytes.placeOf(other)));
    for (int field = 0; field <= other; ++field) {
        QVERIFY(!bytes.placeOf(field).isEmpty());
    }
}

void TestFramesPage::showsWhatHasNoFields()
{
    exchange(readRequest(), {}, Outcome::TimedOut);
    exchange("\xff noise", QByteArray(50000, 'z'), Outcome::Bad);
    exchange(readRequest(), readAnswer().chopped(2) + "00", Outcome::Bad);
    m_page->recorder().flush();
    select(1);
    QCOMPARE(m_page->detail().fields().topLevelItemCount(), 0);
    QVERIFY(m_page->detail().headline().contains(QLatin1String("no answer")));
    select(2);
    QCOMPARE(m_page->detail().fields().topLevelItemCount(), 1);
    select(3);
    m_page->detail().bytes().viewport()->grab();
    select(5);
    const QTreeWidget &fields = m_page->detail().fields();
    const QTreeWidgetItem *const check = fields.topLevelItem(fields.topLevelItemCount() - 1);
    QVERIFY(check->text(1).contains(QLatin1String("expected")));
    QVERIFY(!check->icon(0).isNull());
}

void TestFramesPage::goesToThePartner()
{
    exchanges(2);
    QSignalSpy told(m_page.get(), &Page::told);
    select(2);
    QTest::keyClick(&table(), Qt::Key_J, Qt::ControlModifier);
    QCOMPARE(table().currentNumber(), 3);
    QVERIFY(table().model()->index(2, 0).data(Qt::FontRole).value<QFont>().bold());
    QTest::keyClick(&table(), Qt::Key_J, Qt::ControlModifier);
    QCOMPARE(table().currentNumber(), 2);
    QCOMPARE(told.count(), 0);
    m_page->recorder().noteRequest(readRequest());
    m_page->recorder().flush();
    select(4);
    QTest::keyClick(&table(), Qt::Key_J, Qt::ControlModifier);
    QCOMPARE(told.count(), 1);
}

void TestFramesPage::followsTheEnd()
{
    exchanges(200);
    QVERIFY(bar().maximum() > 0);
    QCOMPARE(bar().value(), bar().maximum());
    bar().setValue(10);
    QVERIFY(!table().follows());
    exchanges(10);
    QCOMPARE(bar().value(), 10);
    bar().setValue(bar().maximum());
    QVERIFY(table().follows());
    exchanges(10);
    QCOMPARE(bar().value(), bar().maximum());
    table().setFocus();
    bar().setValue(5);
    QTest::keyClick(&table(), Qt::Key_End, Qt::ControlModifier);
    QVERIFY(table().follows());
    QCOMPARE(bar().value(), bar().maximum());
    // Not for a table that nobody sees; once it is seen again.
    m_page->hide();
    exchanges(100);
    m_page->show();
    QCOMPARE(bar().value(), bar().maximum());
}

void TestFramesPage::keepsItsPlaceWhileOldOnesGo()
{
    exchanges(FrameModel::kMostExchanges);
    const int row = 5000;
    bar().setValue(row);
    const auto numberAtTop = [this] {
        return m_page->shown().numberAt(table().indexAt(QPoint(1, 1)).row());
    };
    const qint64 before = numberAtTop();
    exchanges(10);
    QCOMPARE(m_page->shown().log().first(), 2 * m_page->shown().batch());
    QCOMPARE(numberAtTop(), before);
    QVERIFY(!table().follows());
}

void TestFramesPage::keepsAFrameThatIsGone()
{
    exchange(readRequest("0077"), readAnswer());
    exchanges(FrameModel::kMostExchanges - 1);
    select(0);
    QVERIFY(m_page->detail().headline().contains(QLatin1String("D_W:77")));
    exchanges(10);
    QCOMPARE(table().currentNumber(), -1);
    QVERIFY(m_page->detail().headline().contains(QLatin1String("D_W:77")));
    QVERIFY(m_page->detail().fields().topLevelItemCount() > 0);
}

void TestFramesPage::holdsTheTable()
{
    exchanges(2);
    QTest::keyClick(&table(), Qt::Key_P, Qt::ControlModifier);
    exchanges(3);
    QCOMPARE(table().model()->rowCount(), 4);
    QCOMPARE(m_page->statusText(), QLatin1String("5 exchanges, 0 faults, paused: 3 more wait"));
    QTest::keyClick(&table(), Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(table().model()->rowCount(), 10);
    QTest::keyClick(&table(), Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(table().model()->rowCount(), 0);
    QCOMPARE(m_page->detail().fields().topLevelItemCount(), 0);
}

void TestFramesPage::copiesWhatIsSelected()
{
    exchanges(3);
    table().selectionModel()->select(table().model()->index(3, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    table().selectionModel()->select(table().model()->index(0, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::keyClick(&table(), Qt::Key_C, Qt::ControlModifier);
    const QString text = QGuiApplication::clipboard()->text();
    QCOMPARE(text, m_page->shown().line(0) + QLatin1Char('\n') + m_page->shown().line(3) +
                       QLatin1Char('\n'));
}

void TestFramesPage::comesBackAsItWasLeft()
{
    FrameQuery query;
    query.station = 7;
    query.kind = FrameKind::Write;
    query.faultsOnly = true;
    query.text = QLatin1String("D_W");
    QSignalSpy changed(m_page.get(), &Page::changed);
    m_page->filterBar().setQuery(query);
    QCOMPARE(changed.count(), 1);
    table().setColumnWidth(FrameModel::Meaning, table().columnWidth(FrameModel::Meaning) + 77);
    QCOMPARE(changed.count(), 2);
    FramesPage other(*m_line);
    other.resize(m_page->size());
    other.restore(m_page->saved());
    QVERIFY(other.filterBar().query() == query);
    QCOMPARE(other.saved(), m_page->saved());
    QVERIFY(qAbs(other.table().columnWidth(FrameModel::Meaning) -
                 table().columnWidth(FrameModel::Meaning)) < 3);
    // A file in between does not change what people chose.
    CaptureFile file;
    QVERIFY(file.line("a").sent(readRequest()).store(path("one.pcapng")));
    const QJsonObject before = m_page->saved();
    QVERIFY(m_page->openCapture(path("one.pcapng")));
    QCOMPARE(m_page->saved(), before);
    m_page->showLive();
    QCOMPARE(m_page->saved(), before);
}

void TestFramesPage::takesWhateverAProjectHolds()
{
    const QJsonObject before = m_page->saved();
    QJsonArray columns;
    for (int i = 0; i < FrameModel::ColumnCount; ++i) {
        columns.append(i % 2 == 0 ? QJsonValue(QLatin1String("wide")) : QJsonValue(-1e300));
    }
    m_page->restore(
        {{QLatin1String("columns"), columns},
         {QLatin1String("filter"), QJsonObject{{QLatin1String("station"), 4711},
                                               {QLatin1String("kind"), 3},
                                               {QLatin1String("text"), QJsonArray()}}}});
    QCOMPARE(m_page->saved(), before);
    m_page->restore({{QLatin1String("columns"), 5}, {QLatin1String("filter"), columns}});
    QCOMPARE(m_page->saved(), before);
    columns.replace(0, 1e300);
    m_page->restore({{QLatin1String("columns"), columns}});
    QVERIFY(table().columnWidth(0) > 0);
}

void TestFramesPage::isReachedByTheKeyboard()
{
    exchanges(2);
    select(0);
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_Down);
    QCOMPARE(table().currentNumber(), 1);
    QTest::keyClick(&table(), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(m_page->filterBar().text().hasFocus());
    QTest::keyClicks(&m_page->filterBar().text(), QLatin1String("nowhere"));
    QTRY_COMPARE_WITH_TIMEOUT(table().model()->rowCount(), 0, 60000);
    m_page->filterBar().text().clear();
    QTRY_COMPARE_WITH_TIMEOUT(table().model()->rowCount(), 4, 60000);
    QTreeWidget &fields = m_page->detail().fields();
    select(1);
    fields.setCurrentItem(fields.topLevelItem(0));
    QTest::keyClick(&fields, Qt::Key_Down);
    QCOMPARE(m_page->detail().bytes().selected(), 1);
}

void TestFramesPage::isNamedForScreenReaders()
{
    int count = 0;
    QCOMPARE(unnamedFields(*m_page, count), QStringList());
    QVERIFY(count > 5);
}

QTEST_MAIN(TestFramesPage)
#include "test_frames_page.moc"
