#include "shown_plot.h"

#include "support/rows.h"

#include <qwt_scale_widget.h>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr double kTolerance = 1e-6; ///< of what is seen: times are doubles

void send(Pane *pane, QEvent::Type type, const QPoint &at, Qt::MouseButton button,
          Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    QMouseEvent event(type, at, pane->canvas()->mapToGlobal(at),
                      type == QEvent::MouseMove ? Qt::NoButton : button, held, keys);
    QApplication::sendEvent(pane->canvas(), &event);
}

void drag(Pane *pane, const QPoint &from, const QPoint &to, Qt::MouseButton button,
          Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    send(pane, QEvent::MouseButtonPress, from, button, keys);
    send(pane, QEvent::MouseMove, (from + to) / 2, button, keys);
    send(pane, QEvent::MouseMove, to, button, keys);
    send(pane, QEvent::MouseButtonRelease, to, button, keys);
}

const Case<int, bool> kWheel[] = {{"nearer", 120, true}, {"farther", -240, false}};

const Case<Qt::MouseButton, Qt::KeyboardModifier> kPans[] = {
    {"middle button", Qt::MiddleButton, Qt::NoModifier},
    {"left with Shift", Qt::LeftButton, Qt::ShiftModifier}};

} // namespace

/** The panes as they are worked with, by mouse and keys. */
class TestTrendGestures : public QObject, private ShownPlot
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void wheelKeepsWhatIsUnderThePointer_data();
    void wheelKeepsWhatIsUnderThePointer();
    void wheelOverAScaleLooksNearerAtValues();
    void looksIntoABox();
    void aFlatBoxIsTheTimeAlone();
    void letsGoOfABox();
    void dragsThePicture_data();
    void dragsThePicture();
    void keysMoveThePicture();
    void cursorsAreDragged();
    void cursorsAreMovedByKeys();
};

void TestTrendGestures::wheelKeepsWhatIsUnderThePointer_data()
{
    addRows(kWheel);
}

void TestTrendGestures::wheelKeepsWhatIsUnderThePointer()
{
    const auto &row = currentRow(kWheel);
    add("a");
    draw();
    Pane *pane = m_plot->pane(0);
    const QPoint at(pane->canvas()->width() / 4, 20);
    const double timeBefore = pane->timeAt(at.x());
    turnWheel(pane->canvas(), at, {0, row.given});
    draw();
    QCOMPARE(sight().time.length() < kMinute, row.expected);
    QVERIFY(qAbs(pane->timeAt(at.x()) - timeBefore) < kMinute * kTolerance);
    QVERIFY(!m_view->isFollowing());
    m_view->back();
    QCOMPARE(sight().time.length(), kMinute);
}

void TestTrendGestures::wheelOverAScaleLooksNearerAtValues()
{
    add("a");
    store(0).append(kNow - 1000, 0);
    store(0).append(kNow - 500, 100);
    draw();
    const Range before = left();
    auto *scale = m_plot->pane(0)->axisWidget(QwtPlot::yLeft);
    turnWheel(scale, scale->rect().center(), {0, 120});
    QVERIFY(left().length() < before.length());
    QVERIFY(left().from > before.from && left().to < before.to);
    QVERIFY(sight().panes.front().left.scaling == Scaling::Fixed);
    QVERIFY(m_view->isFollowing()); // of the time nothing was said
    QTest::mouseDClick(scale, Qt::LeftButton);
    draw();
    QVERIFY(sight().panes.front().left.scaling == Scaling::Auto);
    QVERIFY(left() == before);
    turnWheel(m_plot->pane(0)->canvas(), middle(m_plot->pane(0)), {0, 120}, Qt::ControlModifier);
    QVERIFY(left().length() < before.length());
    QCOMPARE(sight().time.length(), kMinute);
}

void TestTrendGestures::looksIntoABox()
{
    add("a");
    store(0).append(kNow - 1000, 0);
    store(0).append(kNow - 500, 100);
    draw();
    Pane *pane = m_plot->pane(0);
    const QPoint from(100, 60);
    const QPoint to(300, 160);
    const Range time{pane->timeAt(from.x()), pane->timeAt(to.x())};
    const Range values{pane->invTransform(QwtPlot::yLeft, to.y()),
                       pane->invTransform(QwtPlot::yLeft, from.y())};
    drag(pane, to, from, Qt::LeftButton); // whichever corner it begins at
    QVERIFY(qAbs(sight().time.from - time.from) < 1);
    QVERIFY(qAbs(sight().time.to - time.to) < 1);
    QVERIFY(qAbs(left().from - values.from) < 1e-6);
    QVERIFY(qAbs(left().to - values.to) < 1e-6);
    QVERIFY(!m_view->isFollowing());
    m_view->back();
    QVERIFY(m_view->isFollowing());
    QVERIFY(sight().panes.front().left.scaling == Scaling::Auto);
}

void TestTrendGestures::aFlatBoxIsTheTimeAlone()
{
    add("a");
    draw();
    drag(m_plot->pane(0), {100, 60}, {300, 62}, Qt::LeftButton);
    QVERIFY(sight().time.length() < kMinute / 2);
    QVERIFY(sight().panes.front().left.scaling == Scaling::Auto);
}

void TestTrendGestures::letsGoOfABox()
{
    add("a");
    draw();
    Pane *pane = m_plot->pane(0);
    const Range before = sight().time;
    send(pane, QEvent::MouseButtonPress, {100, 60}, Qt::LeftButton);
    send(pane, QEvent::MouseMove, {300, 200}, Qt::LeftButton);
    auto *band = pane->canvas()->findChild<QRubberBand *>();
    QVERIFY(band != nullptr && band->isVisible());
    QTest::keyClick(m_plot.get(), Qt::Key_Escape);
    QVERIFY(!band->isVisible());
    send(pane, QEvent::MouseButtonRelease, {300, 200}, Qt::LeftButton);
    QVERIFY(sight().time == before);
    for (const auto button : {Qt::LeftButton, Qt::MiddleButton}) {
        drag(pane, {100, 60}, {101, 61}, button); // a hand that trembles
        QVERIFY(sight().time == before);
    }
    QVERIFY(!m_view->canGoBack());
}

void TestTrendGestures::dragsThePicture_data()
{
    addRows(kPans);
}

void TestTrendGestures::dragsThePicture()
{
    const auto &row = currentRow(kPans);
    add("a");
    m_view->setScale(0, Side::Left, {0, 100});
    draw();
    Pane *pane = m_plot->pane(0);
    const double atMs = pane->timeAt(200);
    const double value = pane->invTransform(QwtPlot::yLeft, 100);
    drag(pane, {200, 100}, {300, 150}, row.given, Qt::KeyboardModifiers(row.expected));
    draw();
    QVERIFY(!m_view->isFollowing());
    QCOMPARE(sight().time.length(), kMinute);
    const double pixel = kMinute / pane->canvas()->width();
    QVERIFY(qAbs(pane->timeAt(300) - atMs) < 2 * pixel);
    QVERIFY(qAbs(pane->invTransform(QwtPlot::yLeft, 150) - value) < 1);
    QCOMPARE(left().length(), 100.0);
    m_view->back(); // one step, however many moves
    QVERIFY(!m_view->canGoBack());
    QVERIFY(m_view->isFollowing());
}

void TestTrendGestures::keysMoveThePicture()
{
    add("a");
    m_view->setScale(0, Side::Left, {0, 100});
    draw();
    const Range before = sight().time;
    QTest::keyClick(m_plot.get(), Qt::Key_Left);
    QVERIFY(qAbs(sight().time.from - (before.from - 0.1 * kMinute)) < 1);
    QTest::keyClick(m_plot.get(), Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(qAbs(sight().time.from - before.from) < 1);
    QTest::keyClick(m_plot.get(), Qt::Key_Up);
    QVERIFY(left() == (Range{10, 110}));
    QTest::keyClick(m_plot.get(), Qt::Key_Down);
    QVERIFY(left() == (Range{0, 100}));
    QTest::keyClick(m_plot.get(), Qt::Key_Up, Qt::ControlModifier);
    QVERIFY(left().length() < 100);
}

void TestTrendGestures::cursorsAreDragged()
{
    add("a");
    draw();
    Pane *pane = m_plot->pane(0);
    m_cursors->place(Cursor::A, pane->timeAt(100));
    m_cursors->place(Cursor::B, pane->timeAt(200));
    const Range before = sight().time;
    const double to = pane->timeAt(160);
    drag(pane, {101, 50}, {160, 90}, Qt::LeftButton);
    QVERIFY(m_cursors->active() == Cursor::A);
    QVERIFY(qAbs(*m_cursors->at(Cursor::A) - to) < 1);
    QVERIFY(sight().time == before);
    drag(pane, {160, 50}, {5000, 90}, Qt::LeftButton);
    QCOMPARE(*m_cursors->at(Cursor::A), before.to);
    draw();
    const QImage image = canvas(pane);
    QVERIFY(coloured(image, column(pane, qRound64(*m_cursors->at(Cursor::B))),
                     m_plot->palette().color(QPalette::Text)) > image.height() / 2);
}

void TestTrendGestures::cursorsAreMovedByKeys()
{
    add("a");
    draw();
    const double start = kNow - 30000;
    m_cursors->place(Cursor::B, start);
    const Range before = sight().time;
    QTest::keyClick(m_plot.get(), Qt::Key_Right);
    const double pixel = *m_cursors->at(Cursor::B) - start;
    QVERIFY(pixel > 0 && pixel < kMinute / 100);
    QTest::keyClick(m_plot.get(), Qt::Key_Left, Qt::ShiftModifier);
    QVERIFY(qAbs(*m_cursors->at(Cursor::B) - (start - 9 * pixel)) < 1);
    QVERIFY(sight().time == before);
    QTest::keyClick(m_plot.get(), Qt::Key_Escape);
    QVERIFY(!m_cursors->active());
    QTest::keyClick(m_plot.get(), Qt::Key_Left);
    QVERIFY(!(sight().time == before));
}

QTEST_MAIN(TestTrendGestures)
#include "test_trend_gestures.moc"
