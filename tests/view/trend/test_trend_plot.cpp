#include "support/rows.h"

#include "view/look/colours.h"
#include "view/trend/plot/trend_plot.h"

#include <QAbstractItemModelTester>
#include <QSplitter>
#include <QWheelEvent>

#include <qwt_scale_widget.h>

#include <memory>

using namespace cnet::view;

namespace {

constexpr qint64 kNow = 1700000000000;
constexpr double kMinute = 60000;
constexpr double kTolerance = 1e-6; ///< of what is seen: times are doubles

QPoint middle(Pane *pane)
{
    return pane->canvas()->contentsRect().center();
}

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

void turnWheel(QWidget *widget, const QPoint &at, const QPoint &angle,
               Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    QWheelEvent event(at, widget->mapToGlobal(at), QPoint(), angle, Qt::NoButton, keys,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

/** Pixels of a column of a canvas that have about a colour. */
int coloured(const QImage &image, int x, const QColor &colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        const QColor pixel = image.pixelColor(x, y);
        const int away = qAbs(pixel.red() - colour.red()) + qAbs(pixel.green() - colour.green()) +
                         qAbs(pixel.blue() - colour.blue());
        count += away < 60 ? 1 : 0;
    }
    return count;
}

} // namespace

/** The panes as they draw and as they are worked with, at times that the test says. */
class TestTrendPlot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cutsAndKeepsItsSight();
    void goesBack();
    void followsUntilItIsMoved();
    void wheelKeepsWhatIsUnderThePointer_data();
    void wheelKeepsWhatIsUnderThePointer();
    void wheelOverAScaleLooksNearerAtValues();
    void looksIntoABox();
    void aFlatBoxIsTheTimeAlone();
    void letsGoOfABox();
    void dragsThePicture_data();
    void dragsThePicture();
    void keysMoveThePicture();
    void linksTheTimes();
    void fitsScales();
    void scalesStayWhereTheyAreFixed();
    void drawsGapsAsNothing();
    void holdsToNowAndNoFurther();
    void pausedItDrawsNothingNew();
    void bitsHaveLanes();
    void cursorsAreDragged();
    void cursorsAreMovedByKeys();
    void theHighlightedIsInFront();
    void panesComeAndGo();
    void listsCanBeEdited();

private:
    int add(const char *name, int pane = 0, Side side = Side::Left, bool isBit = false)
    {
        return m_traces->add({QString::fromLatin1(name), m_traces->freeColour(), pane, side, true},
                             {QString(), isBit});
    }
    TraceStore &store(int trace) { return *m_traces->at(trace).store; }
    const Sight &sight() const { return m_view->sight(); }
    Range left(int pane = 0) const { return sight().panes[static_cast<size_t>(pane)].left.range; }
    void draw(qint64 nowMs = kNow)
    {
        m_plot->touch();
        m_plot->refresh(nowMs);
        QCoreApplication::processEvents();
        m_plot->touch();
        m_plot->refresh(nowMs);
    }
    QImage canvas(Pane *pane) { return pane->canvas()->grab().toImage(); }
    int column(Pane *pane, qint64 atMs) const
    {
        return qRound(pane->xOf(static_cast<double>(atMs)));
    }
    QColor colour(int trace) const
    {
        return traceColour(m_traces->at(trace).choice.colour, m_plot->palette());
    }

    // In this order: the plot goes first.
    std::unique_ptr<TraceSet> m_traces;
    std::unique_ptr<TrendView> m_view;
    std::unique_ptr<Cursors> m_cursors;
    std::unique_ptr<Markers> m_markers;
    std::unique_ptr<TrendPlot> m_plot;
};

void TestTrendPlot::init()
{
    m_plot.reset();
    m_traces = std::make_unique<TraceSet>();
    m_view = std::make_unique<TrendView>(kNow);
    m_cursors = std::make_unique<Cursors>();
    m_markers = std::make_unique<Markers>();
    m_plot = std::make_unique<TrendPlot>(*m_traces, *m_view, *m_cursors, *m_markers);
    m_plot->resize(800, 600);
    m_plot->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_plot.get()));
}

void TestTrendPlot::cutsAndKeepsItsSight()
{
    m_view->setTime({kNow - 1, kNow - 1});
    QCOMPARE(sight().time.length(), 10.0);
    m_view->setTime({0, 1e15});
    QVERIFY(sight().time.from >= 0);
    QVERIFY(sight().time.to <= 4e12);
    const Range before = sight().time;
    m_view->setTime({qQNaN(), kNow});
    m_view->setTime({kNow, kNow - kMinute});
    m_view->zoomTime(qInf(), before.from);
    QVERIFY(sight().time == before);
    m_view->setScale(0, Side::Left, {3, 3});
    QVERIFY(left().from < 3 && left().to > 3);
    const Range fixed = left();
    m_view->setScale(0, Side::Left, {qQNaN(), 3});
    m_view->setScale(7, Side::Left, {1, 3});
    m_view->setScale(-1, Side::Left, {1, 3});
    QVERIFY(left() == fixed);
    m_view->setPanes(100);
    QCOMPARE(m_view->panes(), TrendView::kMostPanes);
    m_view->setPanes(0);
    QCOMPARE(m_view->panes(), 1);
    m_view->removePane(0);
    QCOMPARE(m_view->panes(), 1);
}

void TestTrendPlot::goesBack()
{
    QVERIFY(!m_view->canGoBack());
    const Range first = sight().time;
    m_view->remember(Gesture::Step);
    m_view->setTime({kNow - 1000, kNow});
    m_view->setScale(0, Side::Right, {1, 2});
    m_view->remember(Gesture::Wheel);
    m_view->panTime(-100);
    m_view->remember(Gesture::Wheel); // one gesture with the one before
    m_view->panTime(-100);
    m_view->back();
    QVERIFY(sight().time == (Range{kNow - 1000, kNow}));
    m_view->back();
    QVERIFY(sight().time == first);
    QVERIFY(m_view->isFollowing());
    QVERIFY(sight().panes.front().right.scaling == Scaling::Auto);
    QVERIFY(!m_view->canGoBack());
    for (int i = 0; i < TrendView::kMostSteps * 2; ++i) {
        m_view->remember(Gesture::Step);
    }
    int steps = 0;
    for (; m_view->canGoBack(); ++steps) {
        m_view->back();
    }
    QCOMPARE(steps, TrendView::kMostSteps);
}

void TestTrendPlot::followsUntilItIsMoved()
{
    add("a");
    draw(kNow + 5000);
    QCOMPARE(sight().time.to, double(kNow + 5000));
    m_view->panTime(-1000);
    QVERIFY(!m_view->isFollowing());
    draw(kNow + 9000);
    QCOMPARE(sight().time.to, double(kNow + 4000));
    m_view->follow(kNow + 9000);
    QVERIFY(m_view->isFollowing());
    QCOMPARE(sight().time.to, double(kNow + 9000));
    QCOMPARE(sight().time.length(), kMinute);
    m_view->zoomTime(0.5, sight().time.to); // the right edge stays where it is
    QVERIFY(m_view->isFollowing());
    m_view->zoomTime(0.5, sight().time.from);
    QVERIFY(!m_view->isFollowing());
}

const Case<int, bool> kWheel[] = {{"nearer", 120, true}, {"farther", -240, false}};

void TestTrendPlot::wheelKeepsWhatIsUnderThePointer_data()
{
    addRows(kWheel);
}

void TestTrendPlot::wheelKeepsWhatIsUnderThePointer()
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

void TestTrendPlot::wheelOverAScaleLooksNearerAtValues()
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

void TestTrendPlot::looksIntoABox()
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

void TestTrendPlot::aFlatBoxIsTheTimeAlone()
{
    add("a");
    draw();
    drag(m_plot->pane(0), {100, 60}, {300, 62}, Qt::LeftButton);
    QVERIFY(sight().time.length() < kMinute / 2);
    QVERIFY(sight().panes.front().left.scaling == Scaling::Auto);
}

void TestTrendPlot::letsGoOfABox()
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
    drag(pane, {100, 60}, {101, 61}, Qt::LeftButton); // a hand that trembles
    QVERIFY(sight().time == before);
    QVERIFY(!m_view->canGoBack());
}

const Case<Qt::MouseButton, Qt::KeyboardModifier> kPans[] = {
    {"middle button", Qt::MiddleButton, Qt::NoModifier},
    {"left with Shift", Qt::LeftButton, Qt::ShiftModifier}};

void TestTrendPlot::dragsThePicture_data()
{
    addRows(kPans);
}

void TestTrendPlot::dragsThePicture()
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

void TestTrendPlot::keysMoveThePicture()
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

void TestTrendPlot::linksTheTimes()
{
    m_view->setPanes(3);
    add("small", 0);
    add("great", 1, Side::Right);
    add("other", 2);
    add("bit", 0, Side::Left, true);
    store(0).append(kNow - 1000, 1);
    store(1).append(kNow - 1000, 123456789);
    store(2).append(kNow - 1000, -0.001);
    draw();
    const auto panes = m_plot->shown();
    QCOMPARE(int(panes.size()), 4);
    const Pane *first = panes.front();
    const int x = first->canvas()->mapTo(m_plot.get(), QPoint()).x();
    for (const Pane *pane : panes) {
        QCOMPARE(pane->canvas()->mapTo(m_plot.get(), QPoint()).x(), x);
        QCOMPARE(pane->canvas()->width(), first->canvas()->width());
        QCOMPARE(pane->timeAt(100), first->timeAt(100));
        QCOMPARE(pane->axisEnabled(QwtPlot::xBottom), pane == panes.back());
    }
    turnWheel(panes[1]->canvas(), middle(panes[1]), {0, 120});
    draw();
    for (const Pane *pane : panes) {
        QCOMPARE(pane->timeAt(100), first->timeAt(100));
    }
}

void TestTrendPlot::fitsScales()
{
    add("a");
    add("b", 0, Side::Right);
    store(0).append(kNow - 2 * qint64(kMinute), 500); // holds into what is seen
    store(0).append(kNow - 1000, -20);
    store(1).append(kNow - 1000, 7);
    store(1).append(kNow - 100000000, 1e9);
    draw();
    QVERIFY(left().from < -20 && left().from > -200);
    QVERIFY(left().to > 500 && left().to < 700);
    m_view->setTime({kNow - 500.0, kNow});
    draw();
    QVERIFY(left().holds(-20) && !left().holds(500));
    store(0).append(kNow, 1e308);
    store(0).append(kNow, -1e308);
    draw(); // greater than any scale: what was is kept
    QVERIFY(qIsFinite(left().from) && qIsFinite(left().to));
}

void TestTrendPlot::scalesStayWhereTheyAreFixed()
{
    add("a");
    store(0).append(kNow - 1000, 5);
    draw();
    const Range before = left();
    m_view->setScaling(0, Side::Left, Scaling::Fixed);
    store(0).append(kNow - 500, 1000);
    draw();
    QVERIFY(left() == before);
    m_view->setScaling(0, Side::Left, Scaling::Auto);
    draw();
    QVERIFY(left().holds(1000));
}

void TestTrendPlot::drawsGapsAsNothing()
{
    add("a");
    store(0).append(kNow - 50000, 1);
    store(0).append(kNow - 45000, 2);
    store(0).appendGap(kNow - 40000);
    store(0).append(kNow - 20000, 1);
    draw();
    Pane *pane = m_plot->pane(0);
    const QImage image = canvas(pane);
    for (const int second : {58, 52, 38, 30, 22}) {
        QCOMPARE(coloured(image, column(pane, kNow - second * 1000), colour(0)), 0);
    }
    for (const int second : {48, 43, 18, 5}) {
        QVERIFY2(coloured(image, column(pane, kNow - second * 1000), colour(0)) > 0,
                 qPrintable(QString::number(second)));
    }
    m_traces->setVisible(0, false);
    draw();
    QCOMPARE(coloured(canvas(pane), column(pane, kNow - 18000), colour(0)), 0);
}

void TestTrendPlot::holdsToNowAndNoFurther()
{
    add("a");
    store(0).append(kNow - 50000, 1);
    m_view->setTime({kNow - kMinute, kNow + kMinute});
    draw();
    Pane *pane = m_plot->pane(0);
    const QImage image = canvas(pane);
    QVERIFY(coloured(image, column(pane, kNow - 1000), colour(0)) > 0);
    QCOMPARE(coloured(image, column(pane, kNow + 2000), colour(0)), 0);
}

void TestTrendPlot::pausedItDrawsNothingNew()
{
    add("a");
    store(0).append(kNow - 50000, 1);
    draw();
    m_plot->setPausedAt(kNow);
    store(0).append(kNow + 1000, 1.01);
    store(0).append(kNow + 8000, 1.02);
    const Range before = sight().time;
    draw(kNow + 10000);
    QVERIFY(sight().time == before);
    m_view->setTime({kNow - kMinute, kNow + kMinute});
    draw(kNow + 10000);
    Pane *pane = m_plot->pane(0);
    QCOMPARE(coloured(canvas(pane), column(pane, kNow + 5000), colour(0)), 0);
    QCOMPARE(store(0).size(), 3); // and yet it is there
    m_plot->setPausedAt(std::nullopt);
    draw(kNow + 10000);
    QVERIFY(coloured(canvas(pane), column(pane, kNow + 5000), colour(0)) > 0);
}

void TestTrendPlot::bitsHaveLanes()
{
    add("door", 0, Side::Left, true);
    add("lamp", 0, Side::Left, true);
    store(0).append(kNow - 50000, 1);
    store(0).append(kNow - 30000, 0);
    store(1).append(kNow - 50000, 0);
    draw();
    Pane *lanes = m_plot->lanes();
    QCOMPARE(int(m_plot->shown().size()), 1); // bits alone need no other pane
    const QImage image = canvas(lanes);
    const int on = coloured(image, column(lanes, kNow - 40000), colour(0));
    const int off = coloured(image, column(lanes, kNow - 10000), colour(0));
    QVERIFY(off > 0);
    QVERIFY(on + 1 >= off);
    QVERIFY(coloured(image, column(lanes, kNow - 40000), colour(1)) > 0);
    QCOMPARE(lanes->axisScaleDraw(QwtPlot::yLeft)->label(1.5).text(), QLatin1String("door"));
    QCOMPARE(lanes->axisScaleDraw(QwtPlot::yLeft)->label(0.5).text(), QLatin1String("lamp"));
    add("value");
    QCOMPARE(int(m_plot->shown().size()), 2);
    m_traces->removeAt(0);
    m_traces->removeAt(0);
    QVERIFY(!lanes->isVisible());
}

void TestTrendPlot::cursorsAreDragged()
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

void TestTrendPlot::cursorsAreMovedByKeys()
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

void TestTrendPlot::theHighlightedIsInFront()
{
    add("a");
    add("b");
    for (const int trace : {0, 1}) {
        store(trace).append(kNow - 50000, 1);
    }
    m_traces->setHighlighted(0);
    draw();
    Pane *pane = m_plot->pane(0);
    const int x = column(pane, kNow - 20000);
    QVERIFY(coloured(canvas(pane), x, colour(0)) > 0);
    m_traces->setHighlighted(1);
    draw();
    QCOMPARE(coloured(canvas(pane), x, colour(0)), 0);
    QVERIFY(coloured(canvas(pane), x, colour(1)) > 0);
}

void TestTrendPlot::panesComeAndGo()
{
    m_view->setPanes(3);
    add("a", 1);
    add("b", 2);
    m_view->setScale(2, Side::Left, {7, 8});
    m_plot->setCurrent(2);
    draw();
    m_traces->dropPane(1);
    m_view->removePane(1);
    draw();
    QCOMPARE(m_plot->current(), 1);
    QCOMPARE(m_traces->at(0).choice.pane, 0);
    QCOMPARE(m_traces->at(1).choice.pane, 1);
    QVERIFY(left(1) == (Range{7, 8}));
    QVERIFY(m_plot->pane(2) == nullptr);
    QCOMPARE(m_plot->paneAt(m_plot->pane(1)->mapTo(m_plot.get(), QPoint(20, 20))), 1);
    QTest::keyClick(m_plot.get(), Qt::Key_PageUp);
    QCOMPARE(m_plot->current(), 0);
    QTest::keyClick(m_plot.get(), Qt::Key_PageUp);
    QCOMPARE(m_plot->current(), 0);
}

void TestTrendPlot::listsCanBeEdited()
{
    QAbstractItemModelTester traces(m_traces.get(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester markers(m_markers.get(),
                                     QAbstractItemModelTester::FailureReportingMode::QtTest);
    add("a");
    add("bit", 0, Side::Left, true);
    QCOMPARE(add("a"), -1); // there is one
    const auto cell = [this](int row, int column) { return m_traces->index(row, column); };
    QVERIFY(m_traces->setData(cell(0, TraceSet::ScaleSide), 1, Qt::EditRole));
    QVERIFY(m_traces->at(0).choice.side == Side::Right);
    QVERIFY(m_traces->setData(cell(0, TraceSet::PaneNumber), 8, Qt::EditRole));
    QCOMPARE(m_traces->at(0).choice.pane, 7);
    QVERIFY(!m_traces->setData(cell(0, TraceSet::PaneNumber), 9, Qt::EditRole));
    QVERIFY(!m_traces->setData(cell(0, TraceSet::ScaleSide), 2, Qt::EditRole));
    QVERIFY(!m_traces->setData(cell(1, TraceSet::ScaleSide), 1, Qt::EditRole));
    QVERIFY(!(m_traces->flags(cell(1, TraceSet::PaneNumber)) & Qt::ItemIsEditable));
    QVERIFY(m_traces->setData(cell(0, TraceSet::Name), Qt::Unchecked, Qt::CheckStateRole));
    QVERIFY(!m_traces->at(0).choice.isVisible);
    QCOMPARE(m_traces->data(cell(0, TraceSet::Value), Qt::DisplayRole).toString(),
             QLatin1String("-"));
    store(0).append(kNow, 12.3);
    QCOMPARE(m_traces->data(cell(0, TraceSet::Value), Qt::DisplayRole).toString(),
             QLatin1String("12.3"));
    QCOMPARE(traceText(4294967295.0), QLatin1String("4294967295"));
    QCOMPARE(traceText(double(9.7F)), QLatin1String("9.7"));
    for (int i = 0; i < 2 * TraceSet::kMostTraces; ++i) {
        add(qPrintable(QString::number(i)));
    }
    QCOMPARE(m_traces->count(), TraceSet::kMostTraces);
    m_traces->setHighlighted(3);
    m_traces->removeAt(1);
    QCOMPARE(m_traces->highlighted(), 2);

    QCOMPARE(m_markers->add({kNow, QLatin1String("second")}), 0);
    QCOMPARE(m_markers->add({kNow - 1, QLatin1String("first")}), 0);
    QVERIFY(m_markers->setData(m_markers->index(0, Markers::Note), QString(2000, QLatin1Char('x')),
                               Qt::EditRole));
    QCOMPARE(m_markers->all().front().note.size(), int(Markers::kLongestNote));
    QVERIFY(!m_markers->setData(m_markers->index(0, Markers::Time), 3, Qt::EditRole));
    m_markers->removeAt(0);
    QCOMPARE(m_markers->all().front().note, QLatin1String("second"));
}

QTEST_MAIN(TestTrendPlot)
#include "test_trend_plot.moc"
