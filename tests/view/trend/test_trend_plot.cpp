#include "shown_plot.h"

#include <qwt_scale_draw.h>

using namespace cnet;
using namespace cnet::view;

/** The panes as they draw, and what of the time and of the values they show. */
class TestTrendPlot : public QObject, private ShownPlot
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cutsAndKeepsItsSight();
    void goesBack();
    void followsUntilItIsMoved();
    void linksTheTimes();
    void fitsScales();
    void scalesStayWhereTheyAreFixed();
    void drawsGapsAsNothing();
    void holdsToNowAndNoFurther();
    void pausedItDrawsNothingNew();
    void bitsHaveLanes();
    void theHighlightedIsInFront();
    void panesComeAndGo();
    void labelsHaveTheFontOfTheRest();
};

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

void TestTrendPlot::labelsHaveTheFontOfTheRest()
{
    add("a");
    draw();
    const Pane *pane = m_plot->pane(0);
    const auto times = [pane] {
        return int(pane->axisScaleDiv(QwtPlot::xBottom).ticks(QwtScaleDiv::MajorTick).size());
    };
    const int before = times();
    QFont large = m_plot->font();
    large.setPointSize(2 * large.pointSize());
    m_plot->setFont(large);
    draw();
    for (const int axis : {int(QwtPlot::xBottom), int(QwtPlot::yLeft), int(QwtPlot::yRight)}) {
        QCOMPARE(pane->axisFont(axis).pointSize(), large.pointSize());
    }
    // Each has room.
    QVERIFY2(times() > 0 && times() < before,
             qPrintable(QString::fromLatin1("%1, %2 before").arg(times()).arg(before)));
}

QTEST_MAIN(TestTrendPlot)
#include "test_trend_plot.moc"
