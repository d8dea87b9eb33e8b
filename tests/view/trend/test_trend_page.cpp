#include "support/full_disk.h"
#include "support/rows.h"
#include "view/support/unnamed_fields.h"

#include "view/tags/tag_drag.h"
#include "view/trend/side_panel.h"
#include "view/trend/trend_actions.h"
#include "view/trend/trend_page.h"

#include "host/tagfile/tag_file.h"
#include "plc/stations/bus.h"

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolBar>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr int kLongMs = 60000;
/// In words that the simulated press leaves alone.
constexpr const char *kTags = "name,register,address,type,count,scale,unit,min,max\n"
                              "speed,D_W,1000,u16,1,0.1,1/min,0,120\n"
                              "level,D_W,1001,i16,1,,mm,,\n"
                              "zones,D_W,1010,u16,3,,,,\n"
                              "lamp,M_bit,200.0,bool,1,,,,\n"
                              "alarm,D_W,1020,bit3,1,,,,\n"
                              "job,D_W,1030,string4,1,,,,\n";

QStringList names(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

/** A clock that goes as the test says. */
class SetClock : public SystemClock
{
public:
    qint64 wallMs() const override { return ms; }
    qint64 ms = 1700000000000;
};

} // namespace

/** The page, with tags of a simulated PLC and by keys and drops. */
class TestTrendPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void saysWhatToDo();
    void collectsWhatChanges();
    void badValuesAreGaps();
    void aSessionThatEndsIsAGap();
    void keepsTracesWithoutTheirTag();
    void takesBitsAndArrays();
    void tellsWhatCannotBeDrawn();
    void noMoreThanFit();
    void unitsShareScales();
    void takesDrops();
    void reachesAllByKeys();
    void notesAreEditedInPlace();
    void pauseLosesNothing();
    void theClockNeverGoesBack();
    void savesAndRestores();
    void restoresAnything();
    void writesCsv();
    void writesPictures_data();
    void writesPictures();
    void tellsOfAFullDisk();
    void recordsToAFile();
    void recordsWhatIsConfirmed();
    void fitsASmallWindow();
    void everyFieldHasAName();

private:
    void open()
    {
        Connection fast;
        fast.address.line.baud = 0;
        fast.intervalMs = 1;
        m_line->open(fast);
    }
    plc::Unit &plc() { return *m_line->simulator()->find(1); }
    void setWord(int address, quint16 value)
    {
        plc().station.memory().setWord('D', address, value);
    }
    TraceStore &store(const char *name)
    {
        return *m_page->traces().at(m_page->traces().indexOf(QString::fromLatin1(name))).store;
    }
    double last(const char *name)
    {
        const TraceStore &all = store(name);
        return all.sample(all.entries() - 1).value;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&m_page->plot(), key, modifiers);
    }
    QString trouble() const
    {
        return m_troubled->isEmpty() ? QString() : m_troubled->last().first().toString();
    }

    std::unique_ptr<Line> m_line;
    std::unique_ptr<WatchedTags> m_tags;
    std::unique_ptr<TrendPage> m_page;
    std::unique_ptr<QSignalSpy> m_troubled;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestTrendPage::init()
{
    m_line = std::make_unique<Line>();
    QCOMPARE(m_line->prepare(), QString());
    m_tags = std::make_unique<WatchedTags>(*m_line);
    const TagFile file = TagFile::parse(kTags, m_tags->reading());
    QVERIFY(file.isGood());
    m_tags->setTags(TagSet(file.tags()));
    m_page = std::make_unique<TrendPage>(*m_tags);
    m_troubled = std::make_unique<QSignalSpy>(m_page.get(), &Page::troubled);
    m_folder = std::make_unique<QTemporaryDir>();
    m_page->resize(1000, 700);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void TestTrendPage::cleanup()
{
    m_page.reset();
    m_tags.reset();
    m_line.reset();
}

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

void TestTrendPage::collectsWhatChanges()
{
    m_page->addTraces(names("speed level"));
    QVERIFY(store("speed").isEmpty());
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    open();
    setWord(1000, 125);
    setWord(1001, 0xffff);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 12.5, kLongMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), -1.0, kLongMs);
    for (const quint16 value : {quint16(200), quint16(300), quint16(400)}) {
        setWord(1000, value);
        QTRY_COMPARE_WITH_TIMEOUT(last("speed"), value * 0.1, kLongMs);
    }
    QVERIFY(store("speed").firstMs() >= before);
    QVERIFY(store("speed").lastMs() <= QDateTime::currentMSecsSinceEpoch());
    // Only what changes is a sample.
    QVERIFY(store("speed").size() >= 4 && store("speed").size() <= 5);
    QVERIFY(store("level").size() <= 2);
}

void TestTrendPage::badValuesAreGaps()
{
    m_page->addTraces(names("speed level"));
    open();
    setWord(1000, 100);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kLongMs);
    setWord(1000, 5000); // above its greatest
    QTRY_VERIFY_WITH_TIMEOUT(qIsNaN(last("speed")), kLongMs);
    QVERIFY(!qIsNaN(last("level")));
    setWord(1000, 100);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kLongMs);
}

void TestTrendPage::aSessionThatEndsIsAGap()
{
    open();
    setWord(1000, 100);
    QTRY_VERIFY_WITH_TIMEOUT(m_tags->quality(0) == Quality::Good, kLongMs);
    m_page->addTraces(names("speed"));
    QVERIFY(!store("speed").isEmpty()); // what is known shows at once
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kLongMs);
    const int before = store("speed").size();
    m_line->close();
    QVERIFY(qIsNaN(last("speed")));
    QCOMPARE(store("speed").size(), before);
    open(); // another memory
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 0.0, kLongMs);
}

void TestTrendPage::keepsTracesWithoutTheirTag()
{
    m_page->addTraces(names("speed level"));
    open();
    setWord(1000, 100);
    setWord(1001, 7);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kLongMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 7.0, kLongMs);
    const TagSet all = m_tags->tags();
    m_tags->setTags(TagSet({all.all().at(1)})); // another index, too
    QVERIFY(qIsNaN(last("speed")));
    QVERIFY(store("speed").size() > 0);
    setWord(1001, 8);
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 8.0, kLongMs);
    m_tags->setTags(all);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kLongMs);
    m_tags->setTags(TagSet());
    QVERIFY(qIsNaN(last("level")));
}

void TestTrendPage::takesBitsAndArrays()
{
    m_page->addTraces(names("lamp alarm zones"));
    const TraceSet &traces = m_page->traces();
    QCOMPARE(traces.count(), 5);
    QVERIFY(traces.at(0).kind.isBit);
    QVERIFY(traces.at(1).kind.isBit);
    QVERIFY(!traces.at(2).kind.isBit);
    QCOMPARE(traces.at(4).choice.name, QLatin1String("zones[2]"));
    m_page->addTraces(names("zones[1] lamp")); // they are there
    QCOMPARE(traces.count(), 5);
    open();
    setWord(1020, 8);
    setWord(1012, 77);
    plc().station.memory().setWord('M', 200, 1);
    QTRY_COMPARE_WITH_TIMEOUT(last("alarm"), 1.0, kLongMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("lamp"), 1.0, kLongMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("zones[2]"), 77.0, kLongMs);
    QCOMPARE(last("zones[1]"), 0.0);
    QVERIFY(m_page->plot().lanes()->isVisible());
    QCOMPARE(int(m_page->plot().lanes()->traces().size()), 2);
    QVERIFY(m_troubled->isEmpty());
}

void TestTrendPage::tellsWhatCannotBeDrawn()
{
    m_page->addTraces(names("nobody level"));
    QVERIFY(trouble().contains(QLatin1String("nobody")));
    QVERIFY(!m_troubled->last().at(1).toString().isEmpty());
    QCOMPARE(m_page->traces().count(), 1); // the other one is there
    m_page->addTraces(names("job"));
    QVERIFY(trouble().contains(QLatin1String("job")));
    for (const char *wrong : {"zones[3]", "zones[-1]", "zones[x]", "zones[", "[0]", ""}) {
        const auto before = m_troubled->count();
        m_page->addTraces({QString::fromLatin1(wrong)});
        QCOMPARE(m_troubled->count(), before + 1);
    }
    QCOMPARE(m_page->traces().count(), 1);
}

void TestTrendPage::noMoreThanFit()
{
    for (int i = 0; i < TraceSet::kMostTraces - 1; ++i) {
        m_page->traces().add({QString::number(i), 0, 0, Side::Left, true}, {});
    }
    m_page->addTraces(names("speed"));
    QVERIFY(m_troubled->isEmpty());
    m_page->addTraces(names("speed level"));
    QCOMPARE(m_troubled->count(), 1);
    QVERIFY(trouble().contains(QString::number(TraceSet::kMostTraces)));
    QCOMPARE(m_page->traces().count(), TraceSet::kMostTraces);
}

void TestTrendPage::unitsShareScales()
{
    m_page->addTraces(names("speed level zones"));
    QVERIFY(m_page->traces().at(0).choice.side == Side::Left);
    QVERIFY(m_page->traces().at(1).choice.side == Side::Right);
    QVERIFY(m_page->traces().at(0).choice.colour != m_page->traces().at(1).choice.colour);
    Pane *pane = m_page->plot().pane(0);
    QVERIFY(pane->axisTitle(QwtPlot::yLeft).text().contains(QLatin1String("1/min")));
    QCOMPARE(pane->axisTitle(QwtPlot::yRight).text(), QLatin1String("mm"));
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
                              kLongMs);
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

void TestTrendPage::pauseLosesNothing()
{
    m_page->addTraces(names("speed"));
    open();
    setWord(1000, 100);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kLongMs);
    m_page->setPaused(true);
    m_page->refresh();
    const Range before = m_page->view().sight().time;
    setWord(1000, 200);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 20.0, kLongMs);
    m_page->refresh();
    QVERIFY(m_page->view().sight().time == before);
    QVERIFY(m_page->view().isFollowing());
    m_page->setPaused(false);
    m_page->refresh();
    QVERIFY(m_page->view().sight().time.to > before.to);
}

void TestTrendPage::theClockNeverGoesBack()
{
    SetClock clock;
    TraceSet traces;
    Collector collector(*m_tags, traces, nullptr, clock);
    const qint64 start = collector.nowMs();
    QCOMPARE(start, clock.ms);
    clock.ms -= 3600000; // summer time, by hand
    QCOMPARE(collector.nowMs(), start);
    clock.ms += 500;
    QCOMPARE(collector.nowMs(), start + 500);
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

    TrendPage other(*m_tags);
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

void TestTrendPage::writesCsv()
{
    const QString path = m_folder->filePath(QLatin1String("a.csv"));
    QVERIFY(!m_page->exportCsv(path));
    QVERIFY(!trouble().isEmpty());
    QVERIFY(!QFile::exists(path));
    m_page->addTraces(names("speed"));
    const double to = m_page->view().sight().time.to;
    store("speed").clear();
    store("speed").append(qRound64(to) - 30000, 1);
    store("speed").append(qRound64(to) - 10000, 2);
    QSignalSpy told(m_page.get(), &Page::told);
    QVERIFY2(m_page->exportCsv(path), qPrintable(trouble()));
    QCOMPARE(told.count(), 1);
    const auto rows = [&path] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().count('\n') : 0;
    };
    QCOMPARE(rows(), 3);
    m_page->cursors().place(Cursor::A, to - 20000);
    m_page->cursors().place(Cursor::B, to - 15000);
    QVERIFY(m_page->exportCsv(path));
    QCOMPARE(rows(), 2);
}

const Case<const char *, const char *> kPictures[] = {{"PNG", "a.png", "\x89PNG"},
                                                      {"SVG", "a.svg", "<?xml"},
                                                      {"SVG in capitals", "a.SVG", "<?xml"},
                                                      {"no ending", "a", "\x89PNG"}};

void TestTrendPage::writesPictures_data()
{
    addRows(kPictures);
}

void TestTrendPage::writesPictures()
{
    const auto &row = currentRow(kPictures);
    m_page->addTraces(names("speed lamp"));
    QCoreApplication::processEvents();
    m_page->refresh();
    const QString path = m_folder->filePath(QString::fromLatin1(row.given));
    QVERIFY(m_page->exportImage(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.startsWith(row.expected));
    if (content.startsWith("<?xml")) {
        QVERIFY(content.contains(">speed (1/min)<"));
        QVERIFY(content.contains(">lamp<"));
    } else {
        const QImage image = QImage::fromData(content);
        QVERIFY(image.width() >= m_page->plot().width());
        QVERIFY(image.height() > m_page->plot().height());
    }
}

void TestTrendPage::tellsOfAFullDisk()
{
    m_page->addTraces(names("speed"));
    const QString path = m_folder->filePath(QLatin1String("a.png"));
    QVERIFY(m_page->exportImage(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    {
        const FullDisk full(100);
        QVERIFY(!m_page->exportImage(path));
    }
    QVERIFY(trouble().contains(QLatin1String("a.png")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);
}

void TestTrendPage::recordsToAFile()
{
    m_page->addTraces(names("speed"));
    open();
    setWord(1000, 100);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kLongMs);
    QVERIFY(!m_page->startRecording(m_folder->filePath(QLatin1String("no/a.csv"))));
    QVERIFY(!trouble().isEmpty());
    QVERIFY(!m_page->actions().record->isChecked());
    const QString path = m_folder->filePath(QLatin1String("a.csv"));
    QVERIFY(m_page->startRecording(path));
    QVERIFY(m_page->actions().record->isChecked());
    setWord(1000, 200);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 20.0, kLongMs);
    m_line->close();
    m_page->stopRecording();
    QVERIFY(!m_page->record().isRunning());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto rows = file.readAll().split('\n');
    QCOMPARE(rows.size(), 5); // the last one is empty
    QVERIFY(rows.at(1).endsWith(",speed,10,good"));
    QVERIFY(rows.at(2).endsWith(",speed,20,good"));
    QVERIFY(rows.at(3).contains(",speed,,"));
}

void TestTrendPage::recordsWhatIsConfirmed()
{
    m_page->addTraces(names("level"));
    open();
    setWord(1001, 10);
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 10.0, kLongMs);
    QString error;
    const auto write = parseAssignment(QLatin1String("D_W:1001=20"), 1, m_line->registers(), error);
    QVERIFY2(write, qPrintable(error));
    // It begins while the write waits.
    plc().faults.add({plc::FaultKind::Delay, 300, 300, 2});
    QSignalSpy told(m_tags.get(), &WatchedTags::stateChanged);
    m_line->session()->write({*write}, ReadBack::Never);
    const int level = m_tags->tags().indexOf(QLatin1String("level"));
    QTRY_VERIFY_WITH_TIMEOUT(!told.isEmpty(), kLongMs);
    QCOMPARE(m_tags->quality(level), Quality::Waiting);
    const QString path = m_folder->filePath(QLatin1String("a.csv"));
    QVERIFY(m_page->startRecording(path));
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 20.0, kLongMs);
    m_page->stopRecording();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto rows = file.readAll().split('\n');
    QCOMPARE(rows.size(), 4); // the last one is empty
    QVERIFY(rows.at(1).endsWith(",level,10,good"));
    QVERIFY(rows.at(2).endsWith(",level,20,good"));
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
