#include "shown_plot.h"

#include <qwt_scale_div.h>

using namespace cnet;
using namespace cnet::view;

/** A picture that takes longer than the event loop may wait is worked out bit by bit. */
class TestTrendSlices : public QObject, private ShownPlot
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void drawsInTheTimeThereIs();
    void worksOutWhatItDraws();
};

void TestTrendSlices::drawsInTheTimeThereIs()
{
    m_view->setPanes(2);
    for (int i = 0; i < 6; ++i) {
        add(QByteArray::number(i).constData(), i % 2, Side::Left, i == 5);
        store(i).append(kNow - 50000, 1);
    }
    draw();
    const QImage before = canvas(m_plot->pane(0));
    const qint64 later = kNow + 10000;
    const QDeadlineTimer none(0);
    for (int i = 0; i < 6; ++i) {
        m_plot->refresh(later + i, none);
        QCoreApplication::processEvents();
        QVERIFY(canvas(m_plot->pane(0)) == before);
    }
    m_plot->refresh(later + 6, none); // the last trace took the last slice
    QCOMPARE(m_plot->pane(0)->axisScaleDiv(QwtPlot::xBottom).upperBound(), double(later));
    // Nor is one that was begun when the page was hidden.
    m_plot->setPausedAt(later);
    m_view->setTime({kNow - kMinute, kNow - 1000.0});
    m_plot->refresh(later, none);
    m_plot->hide();
    m_plot->refresh(later, none);
    m_plot->show();
    m_plot->refresh(later);
    QCOMPARE(m_plot->pane(0)->axisScaleDiv(QwtPlot::xBottom).upperBound(), kNow - 1000.0);
    m_plot->setPausedAt(std::nullopt);
    m_view->follow(later);
    m_plot->refresh(later);
    // One that goes meanwhile is not missed.
    m_plot->refresh(later + 1000, none);
    m_traces->removeAt(0);
    for (int i = 0; i < 6; ++i) {
        m_plot->refresh(later + 2000, none);
    }
    QCOMPARE(m_plot->pane(0)->axisScaleDiv(QwtPlot::xBottom).upperBound(), double(later + 2000));
}

void TestTrendSlices::worksOutWhatItDraws()
{
    add("a");
    add("bit", 0, Side::Left, true);
    for (const int trace : {0, 1}) {
        store(trace).append(kNow - 50000, 1);
        store(trace).append(kNow - 1000, 0);
    }
    m_view->setScale(0, Side::Left, {-1, 3});
    m_view->setTime({kNow - kMinute, kNow + kMinute});
    draw();
    QCoreApplication::processEvents();
    std::vector<QImage> before;
    for (Pane *pane : m_plot->shown()) {
        before.push_back(canvas(pane));
    }
    m_plot->touch();
    m_plot->refresh(kNow); // works it out; what comes before it is drawn is for the next picture
    for (const int trace : {0, 1}) {
        store(trace).append(kNow - 500, 1);
    }
    for (size_t i = 0; i < before.size(); ++i) {
        QVERIFY(canvas(m_plot->shown()[i]) == before[i]);
    }
    m_plot->touch();
    m_plot->refresh(kNow);
    for (size_t i = 0; i < before.size(); ++i) {
        QVERIFY(canvas(m_plot->shown()[i]) != before[i]);
    }
}

QTEST_MAIN(TestTrendSlices)
#include "test_trend_slices.moc"
