#include "plain_store.h"
#include "trace_scene.h"

#include <qwt_plot.h>

#include <QPicture>
#include <QtTest>

#include <memory>

using namespace cnet::view;

namespace {

QwtScaleMap *mapsOf(const Scene &scene)
{
    static QwtScaleMap maps[QwtPlot::axisCnt];
    maps[QwtPlot::xBottom] = scene.x;
    maps[QwtPlot::yLeft] = scene.y;
    maps[QwtPlot::yRight] = mapOf(5, 5, kHeight - 1, 0); // no scale
    return maps;
}

void drawPlot(Scene &scene, const QwtPlot &plot)
{
    QPainter painter(&scene.image);
    plot.drawItems(&painter, scene.canvas, mapsOf(scene));
}

/** Traces of which each covers some of those before, in a plot. */
struct Traces
{
    std::vector<std::unique_ptr<TraceStore>> stores;
    QwtPlot plot;
    std::vector<TraceItem *> items; ///< the plot's

    explicit Traces(int count, int samples)
    {
        for (int i = 0; i < count; ++i) {
            stores.push_back(std::make_unique<TraceStore>());
            fill(*stores.back(), {samples, 0.1, 10}, static_cast<unsigned>(i));
            items.push_back(new TraceItem(*stores.back()));
            items.back()->setColour(QColor::fromHsv(i * 37 % 360, 255, 200));
            items.back()->attach(&plot);
        }
    }

    Scene scene() const
    {
        Scene scene;
        const auto first = static_cast<double>(stores.front()->firstMs());
        const auto last = static_cast<double>(stores.front()->lastMs());
        scene.x = mapOf(first, last, 0, kWidth - 1);
        scene.y = mapOf(-1000, 1000, kHeight - 1, 0);
        return scene;
    }
};

} // namespace

class TestTrendRaster : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawsManyTracesAsOne();
    void drawsMoreTracesThanThereAreColours();
    void drawsWithoutThoseThatAreHidden();
    void drawsPixelsOfTheDevice();
    void isWiderOnFineDevices();
    void drawsOnOtherDevices();
    void drawsWhatItWorkedOutBefore_data();
    void drawsWhatItWorkedOutBefore();
};

void TestTrendRaster::drawsManyTracesAsOne()
{
    Traces traces(9, 150);
    traces.items[2]->setLane(-500, 500);
    traces.items[4]->setLane(600, 800);
    traces.items[8]->setStyle(TraceStyle::Linear);
    traces.items[2]->setZ(1); // so that its filling is below the others here and there
    traces.items[4]->setZ(2);
    Scene together = traces.scene();
    together.canvas = QRect(3, 5, kWidth - 10, kHeight - 17); // no whole tiles
    drawPlot(together, traces.plot);

    Scene apart = traces.scene();
    apart.canvas = together.canvas;
    QPainter painter(&apart.image);
    const QwtPlotItemList items = traces.plot.itemList(); // as the plot draws them
    for (QwtPlotItem *item : items) {
        item->detach();
        const std::unique_ptr<QwtPlotItem> owned(item);
        item->draw(&painter, apart.x, apart.y, apart.canvas);
    }
    painter.end();
    QVERIFY(together.image == apart.image);
    QVERIFY(apart.image != Scene::emptyImage());
}

void TestTrendRaster::drawsMoreTracesThanThereAreColours()
{
    Traces traces(0, 0);
    for (int i = 0; i < 400; ++i) {
        traces.stores.push_back(std::make_unique<TraceStore>());
        traces.stores.back()->append(0, i / 2.0);
        traces.stores.back()->append(399, i / 2.0);
        (new TraceItem(*traces.stores.back()))->attach(&traces.plot);
    }
    Scene scene;
    drawPlot(scene, traces.plot);
    QCOMPARE(scene.rows(200).size(), size_t(kHeight));
}

void TestTrendRaster::drawsWithoutThoseThatAreHidden()
{
    Traces traces(8, 500);
    Scene all = traces.scene();
    drawPlot(all, traces.plot);
    for (TraceItem *hidden : {traces.items.back(), traces.items.front(), traces.items[4]}) {
        hidden->setVisible(false);
        Scene fewer = traces.scene();
        drawPlot(fewer, traces.plot);
        hidden->setVisible(true);
        QVERIFY(fewer.image != all.image);
        QVERIFY(fewer.image != Scene::emptyImage());
        Scene again = traces.scene();
        drawPlot(again, traces.plot);
        QVERIFY(again.image == all.image);
    }
    traces.items.back()->setYAxis(QwtPlot::yRight); // without a scale it has no place
    traces.items.back()->setZ(100);
    Scene odd = traces.scene();
    drawPlot(odd, traces.plot);
    QVERIFY(odd.image != all.image);
    QVERIFY(odd.image != Scene::emptyImage());
}

void TestTrendRaster::drawsPixelsOfTheDevice()
{
    TraceStore store;
    fill(store, {20000, 0.01, 10}, 12);
    const TraceItem item(store);
    const auto first = static_cast<double>(store.firstMs());
    const auto last = static_cast<double>(store.lastMs());

    Scene large;
    large.image = QImage(2 * kWidth, 2 * kHeight, QImage::Format_RGB32);
    large.image.fill(kGround);
    large.canvas = QRect(0, 0, 2 * kWidth, 2 * kHeight);
    large.x = mapOf(first, last, 0, 2 * (kWidth - 1));
    large.y = mapOf(-1000, 1000, 2 * (kHeight - 1), 0);
    large.draw(item);

    Scene dense;
    dense.image = QImage(2 * kWidth, 2 * kHeight, QImage::Format_RGB32);
    dense.image.fill(kGround);
    dense.image.setDevicePixelRatio(2);
    dense.x = mapOf(first, last, 0, kWidth - 1);
    dense.y = mapOf(-1000, 1000, kHeight - 1, 0);
    dense.draw(item);
    dense.image.setDevicePixelRatio(1);
    QVERIFY(!dense.rows(2 * kWidth - 3).empty());
    QVERIFY(dense.image == large.image);
}

// One of its pixels would be a hair.
void TestTrendRaster::isWiderOnFineDevices()
{
    TraceStore store;
    store.append(0, 50);
    store.append(kWidth, 50);
    const TraceItem item(store);
    for (const int fineness : {1, 2}) {
        Scene scene;
        scene.image = QImage(fineness * kWidth, fineness * kHeight, QImage::Format_RGB32);
        scene.image.fill(kGround);
        scene.image.setDevicePixelRatio(fineness);
        scene.draw(item);
        scene.image.setDevicePixelRatio(1);
        QCOMPARE(int(scene.rows(100).size()), fineness);
    }
}

void TestTrendRaster::drawsOnOtherDevices()
{
    Traces traces(6, 2000);
    Scene scene = traces.scene();
    drawPlot(scene, traces.plot);
    QPicture picture;
    {
        QPainter painter(&picture);
        traces.plot.drawItems(&painter, scene.canvas, mapsOf(scene));
    }
    Scene replayed = traces.scene();
    QPainter painter(&replayed.image);
    painter.drawPicture(0, 0, picture);
    painter.end();
    QVERIFY(replayed.image == scene.image);
}

void TestTrendRaster::drawsWhatItWorkedOutBefore_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("canvasWidth");
    QTest::addColumn<bool>("isUsed");
    QTest::newRow("same") << 1.0 << kWidth << true;
    QTest::newRow("fine device") << 2.0 << kWidth << true;
    QTest::newRow("between") << 1.5 << kWidth << true;
    QTest::newRow("other canvas") << 1.0 << kWidth - 7 << false;
}

void TestTrendRaster::drawsWhatItWorkedOutBefore()
{
    QFETCH(double, ratio);
    QFETCH(int, canvasWidth);
    QFETCH(bool, isUsed);
    TraceStore store;
    fill(store, {300, 1, 10}, 7);
    TraceItem item(store);
    const auto last = static_cast<double>(store.lastMs());
    const QwtScaleMap x = mapOf(last - 1000, last + 200, 0, kWidth - 1);
    const QwtScaleMap y = mapOf(-1000, 1000, kHeight - 1, 0);
    const auto drawn = [&] {
        Scene scene;
        scene.image = QImage(qRound(ratio * kWidth), qRound(ratio * kHeight), QImage::Format_RGB32);
        scene.image.fill(kGround);
        scene.image.setDevicePixelRatio(ratio);
        scene.x = x;
        scene.y = y;
        scene.canvas.setWidth(canvasWidth);
        scene.draw(item);
        return scene.image;
    };
    const QImage before = drawn();
    const QRect all(0, 0, kWidth, kHeight);
    QVERIFY(item.prepare(x, y, all, ratio));
    QVERIFY(!item.prepare(x, y, all, ratio));
    store.append(store.lastMs() + 50, 900);
    QCOMPARE(drawn() == before, isUsed);
    QVERIFY(drawn() != before); // once, and no more
    const QImage after = drawn();
    item.forget();
    QVERIFY(item.prepare(x, y, all, ratio));
    store.append(store.lastMs() + 50, -900);
    item.forget();
    QVERIFY(drawn() != after);
}

QTEST_MAIN(TestTrendRaster)

#include "test_trend_raster.moc"
