#include "plain_store.h"

#include "view/trend/series/trace_item.h"

#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <QImage>
#include <QPainter>
#include <QPicture>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

using namespace cnet::view;

namespace {

constexpr QRgb kGround = 0xffffffff;
constexpr int kWidth = 400;
constexpr int kHeight = 200;

QwtScaleMap mapOf(double s1, double s2, double p1, double p2)
{
    QwtScaleMap map;
    map.setScaleInterval(s1, s2);
    map.setPaintInterval(p1, p2);
    return map;
}

/** A picture of a part of time and of values, in which a trace is black. */
struct Scene
{
    QwtScaleMap x = mapOf(0, kWidth - 1, 0, kWidth - 1);
    QwtScaleMap y = mapOf(0, kHeight - 1, kHeight - 1, 0);
    QRect canvas{0, 0, kWidth, kHeight};
    QImage image = emptyImage();

    static QImage emptyImage()
    {
        QImage image(kWidth, kHeight, QImage::Format_RGB32);
        image.fill(kGround);
        return image;
    }

    void draw(const TraceItem &item)
    {
        QPainter painter(&image);
        item.draw(&painter, x, y, canvas);
    }

    bool isPainted(int column, int row) const { return image.pixel(column, row) != kGround; }

    /** The rows that are painted in a column. */
    std::vector<int> rows(int column) const
    {
        std::vector<int> rows;
        for (int row = 0; row < image.height(); ++row) {
            if (isPainted(column, row)) {
                rows.push_back(row);
            }
        }
        return rows;
    }

    int columnOf(qint64 atMs) const
    {
        return static_cast<int>(std::floor(x.transform(static_cast<double>(atMs)) + 0.5));
    }
    int rowOf(double value) const { return static_cast<int>(std::floor(y.transform(value) + 0.5)); }
};

/** What a column has to show: the rows of all its samples and of what held before. */
struct Column
{
    int top = kHeight;
    int bottom = -1;

    void add(int row)
    {
        top = std::min(top, row);
        bottom = std::max(bottom, row);
    }
};

/** Sample by sample, as a value holds. */
std::vector<Column> plainColumns(const Scene &scene, const PlainStore &all)
{
    std::vector<Column> columns(kWidth);
    const auto add = [&](int from, int to, int row) {
        for (int column = std::max(from, 0); column <= std::min(to, kWidth - 1); ++column) {
            columns[static_cast<size_t>(column)].add(row);
        }
    };
    const TraceStore::Sample *last = nullptr;
    for (const TraceStore::Sample &entry : all.entries()) {
        const int column = scene.columnOf(entry.atMs);
        if (last != nullptr && !last->isGap) {
            const double x = scene.x.transform(static_cast<double>(entry.atMs));
            const bool isHeld = !entry.isGap || x > column; // over the middle of the column
            add(scene.columnOf(last->atMs), isHeld ? column : column - 1, scene.rowOf(last->value));
        }
        if (!entry.isGap) {
            add(column, column, scene.rowOf(entry.value));
        }
        last = &entry;
    }
    return columns;
}

TraceStore &filled(TraceStore &store, std::initializer_list<QPointF> samples)
{
    for (const QPointF &sample : samples) {
        store.append(static_cast<qint64>(sample.x()), sample.y());
    }
    return store;
}

QwtScaleMap *mapsOf(const Scene &scene)
{
    static QwtScaleMap maps[QwtPlot::axisCnt];
    maps[QwtPlot::xBottom] = scene.x;
    maps[QwtPlot::yLeft] = scene.y;
    return maps;
}

void drawPlot(Scene &scene, const QwtPlot &plot)
{
    QPainter painter(&scene.image);
    plot.drawItems(&painter, scene.canvas, mapsOf(scene));
}

} // namespace

class TestTrendPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNoExtreme_data();
    void losesNoExtreme();
    void joinsSamplesByLines();
    void leavesGapsEmpty_data();
    void leavesGapsEmpty();
    void holdsUntil();
    void drawsBitsAsLanes();
    void staysAPixelWideWhereItIsDense();
    void drawsManyTracesAsOne();
    void drawsMoreTracesThanThereAreColours();
    void drawsWithoutThoseThatAreHidden();
    void drawsPixelsOfTheDevice();
    void drawsOnOtherDevices();
    void drawsNothingWithoutAScale_data();
    void drawsNothingWithoutAScale();
    void bearsAllTimesThereAre();
    void boundsLanes();
};

void TestTrendPaint::losesNoExtreme_data()
{
    QTest::addColumn<int>("samples");
    QTest::addColumn<double>("gaps");
    QTest::addColumn<double>("from"); // of the time that there is, as parts of 1
    QTest::addColumn<double>("to");
    QTest::newRow("many a column") << 100000 << 0.0 << 0.0 << 1.0;
    QTest::newRow("many, with gaps") << 100000 << 0.01 << 0.0 << 1.0;
    QTest::newRow("some a column") << 3000 << 0.1 << -0.1 << 1.1;
    QTest::newRow("fewer than columns") << 60 << 0.2 << 0.0 << 1.0;
    QTest::newRow("a part of many") << 100000 << 0.01 << 0.3 << 0.7;
    QTest::newRow("a small part") << 100000 << 0.01 << 0.5 << 0.501;
    QTest::newRow("less than a sample") << 1000 << 0.0 << 0.5 << 0.5001;
}

void TestTrendPaint::losesNoExtreme()
{
    QFETCH(int, samples);
    QFETCH(double, gaps);
    QFETCH(double, from);
    QFETCH(double, to);
    TraceStore store;
    const PlainStore all = fill(store, {samples, gaps, 40}, 11);
    Scene scene;
    const auto first = static_cast<double>(store.firstMs());
    const auto length = static_cast<double>(store.lastMs()) - first;
    // Odd numbers, so that no sample is on the border of two columns.
    scene.x = mapOf(first + from * length + 0.137, first + to * length + 0.719, 0, kWidth - 1);
    scene.y = mapOf(-1000.3, 1000.7, kHeight - 1, 0);

    TraceItem item(store);
    scene.draw(item);
    const std::vector<Column> columns = plainColumns(scene, all);
    const int end = scene.columnOf(store.lastMs());
    for (int column = 0; column < kWidth; ++column) {
        const Column &expected = columns[static_cast<size_t>(column)];
        const std::vector<int> rows = scene.rows(column);
        const QByteArray where = "column " + QByteArray::number(column);
        if (column > end || expected.bottom < 0) {
            QVERIFY2(rows.empty(), where);
            continue;
        }
        QVERIFY2(!rows.empty(), where);
        QVERIFY2(rows.front() == expected.top, where);
        QVERIFY2(rows.back() == expected.bottom, where);
        QVERIFY2(static_cast<int>(rows.size()) == expected.bottom - expected.top + 1 || gaps > 0,
                 where);
    }
}

void TestTrendPaint::joinsSamplesByLines()
{
    TraceStore store;
    TraceItem item(filled(store, {{-100, 0}, {100, 100}, {300, 0}, {900, 1e9}}));
    item.setStyle(TraceStyle::Linear);
    Scene scene;
    scene.draw(item);
    for (int column = 0; column < 300; ++column) {
        const double value = column <= 100 ? 50 + column / 2.0 : 150 - column / 2.0;
        const std::vector<int> rows = scene.rows(column);
        QVERIFY(!rows.empty());
        QVERIFY(std::abs(rows.front() - scene.y.transform(value)) <= 1);
        QVERIFY(std::abs(rows.back() - scene.y.transform(value)) <= 1);
    }
    QVERIFY(!scene.rows(300).empty());
    QVERIFY(scene.rows(302).empty()); // it is far above by then
}

void TestTrendPaint::leavesGapsEmpty_data()
{
    QTest::addColumn<int>("style");
    QTest::newRow("held") << static_cast<int>(TraceStyle::Hold);
    QTest::newRow("lines") << static_cast<int>(TraceStyle::Linear);
}

void TestTrendPaint::leavesGapsEmpty()
{
    QFETCH(int, style);
    TraceStore store;
    store.append(10, 50);
    store.appendGap(100); // five columns
    store.append(105, 50);
    store.appendGap(200); // one column
    store.append(201, 60);
    store.appendGap(300); // to the end
    TraceItem item(store);
    item.setStyle(static_cast<TraceStyle>(style));
    Scene scene;
    scene.draw(item);
    for (int column = 0; column < kWidth; ++column) {
        const bool isKnown = (column >= 10 && column < 100) || (column >= 105 && column < 200) ||
                             (column >= 201 && column < 300);
        QVERIFY2(scene.rows(column).empty() != isKnown, QByteArray::number(column));
    }
}

void TestTrendPaint::holdsUntil()
{
    TraceStore store;
    TraceItem item(filled(store, {{10, 50}}));
    Scene scene;
    item.setHoldUntil(200);
    scene.draw(item);
    QVERIFY(scene.isPainted(199, scene.rowOf(50)));
    QVERIFY(!scene.isPainted(200, scene.rowOf(50)));

    store.appendGap(100);
    Scene later;
    later.draw(item);
    QVERIFY(later.isPainted(99, later.rowOf(50)));
    QVERIFY(!later.isPainted(100, later.rowOf(50)));
}

void TestTrendPaint::drawsBitsAsLanes()
{
    TraceStore store;
    TraceItem item(filled(store, {{0, 0}, {100, 1}, {200, 0}, {300, -7}, {350, 0}, {350, 1}}));
    item.setStyle(TraceStyle::Linear); // a bit holds, whatever the style
    item.setLane(20, 60);
    Scene scene;
    scene.draw(item);
    const QRgb line = QColor(Qt::black).rgb();
    QCOMPARE(scene.rows(50), std::vector<int>{scene.rowOf(20)});
    QCOMPARE(scene.image.pixel(150, scene.rowOf(60)), line);
    QVERIFY(scene.image.pixel(150, scene.rowOf(40)) != line);
    QVERIFY(scene.isPainted(150, scene.rowOf(40))); // filled
    QVERIFY(!scene.isPainted(250, scene.rowOf(40)));
    QCOMPARE(scene.image.pixel(320, scene.rowOf(60)), line);
    for (const int edge : {100, 200, 300, 350}) {
        QCOMPARE(scene.image.pixel(edge, scene.rowOf(40)), line);
        QCOMPARE(scene.rows(edge).size(), size_t(41));
    }
    item.clearLane();
    Scene plain;
    plain.draw(item);
    QVERIFY(!plain.isPainted(150, plain.rowOf(60)));
}

void TestTrendPaint::staysAPixelWideWhereItIsDense()
{
    TraceStore dense;
    TraceStore sparse;
    for (int i = 0; i < 4000; ++i) {
        dense.append(i / 10, 50);
    }
    filled(sparse, {{0, 50}, {200, 100}, {399, 100}});
    for (const Emphasis emphasis : {Emphasis::Usual, Emphasis::Strong, Emphasis::Faint}) {
        TraceItem denseItem(dense);
        denseItem.setEmphasis(emphasis);
        Scene scene;
        scene.draw(denseItem);
        QCOMPARE(scene.rows(100).size(), size_t(1));
        QVERIFY(emphasis != Emphasis::Faint ||
                scene.image.pixel(100, scene.rowOf(50)) != QColor(Qt::black).rgb());
        TraceItem sparseItem(sparse);
        sparseItem.setEmphasis(emphasis);
        Scene other;
        other.draw(sparseItem);
        QCOMPARE(other.rows(100).size(), emphasis == Emphasis::Strong ? size_t(2) : size_t(1));
    }
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

void TestTrendPaint::drawsManyTracesAsOne()
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
    for (QwtPlotItem *item : traces.plot.itemList()) {
        QwtPlotItem *const drawn = item;
        drawn->detach();
        drawn->draw(&painter, apart.x, apart.y, apart.canvas);
        std::unique_ptr<QwtPlotItem> owned(drawn);
    }
    painter.end();
    int different = 0;
    for (int row = 0; row < kHeight; ++row) {
        for (int column = 0; column < kWidth; ++column) {
            different +=
                together.image.pixel(column, row) == apart.image.pixel(column, row) ? 0 : 1;
        }
    }
    // Where two fillings overlap one of them is seen.
    QVERIFY2(different == 0, QByteArray::number(different));
    QVERIFY(apart.image != Scene::emptyImage());
}

void TestTrendPaint::drawsMoreTracesThanThereAreColours()
{
    Traces traces(0, 0);
    for (int i = 0; i < 400; ++i) {
        traces.stores.push_back(std::make_unique<TraceStore>());
        filled(*traces.stores.back(), {{0, i / 2.0}, {399, i / 2.0}});
        (new TraceItem(*traces.stores.back()))->attach(&traces.plot);
    }
    Scene scene;
    drawPlot(scene, traces.plot);
    QCOMPARE(scene.rows(200).size(), size_t(kHeight));
}

void TestTrendPaint::drawsWithoutThoseThatAreHidden()
{
    Traces traces(8, 500);
    Scene all = traces.scene();
    drawPlot(all, traces.plot);
    traces.items.back()->setVisible(false); // it would have painted them
    traces.items.front()->setVisible(false);
    Scene fewer = traces.scene();
    drawPlot(fewer, traces.plot);
    QVERIFY(fewer.image != all.image);
    QVERIFY(fewer.image != Scene::emptyImage());

    traces.items.back()->setVisible(true);
    traces.items.front()->setVisible(true);
    Scene again = traces.scene();
    drawPlot(again, traces.plot);
    QVERIFY(again.image == all.image);
    traces.items[3]->setYAxis(QwtPlot::yRight); // without a scale it has no place
    Scene odd = traces.scene();
    drawPlot(odd, traces.plot);
    QVERIFY(odd.image != Scene::emptyImage());
}

void TestTrendPaint::drawsPixelsOfTheDevice()
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

void TestTrendPaint::drawsOnOtherDevices()
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

void TestTrendPaint::drawsNothingWithoutAScale_data()
{
    QTest::addColumn<double>("s1");
    QTest::addColumn<double>("s2");
    QTest::addColumn<QRect>("canvas");
    const double infinite = std::numeric_limits<double>::infinity();
    const double greatest = std::numeric_limits<double>::max();
    const QRect usual(0, 0, kWidth, kHeight);
    QTest::newRow("no number") << 0.0 << kNoNumber << usual;
    QTest::newRow("only no numbers") << kNoNumber << kNoNumber << usual;
    QTest::newRow("infinite") << 0.0 << infinite << usual;
    QTest::newRow("infinite both ways") << -infinite << infinite << usual;
    QTest::newRow("more than a number") << -greatest << greatest << usual;
    QTest::newRow("empty") << 100.0 << 100.0 << usual;
    QTest::newRow("no canvas") << 0.0 << 399.0 << QRect(0, 0, 0, 0);
    QTest::newRow("less than no canvas") << 0.0 << 399.0 << QRect(5, 5, -3, -3);
}

void TestTrendPaint::drawsNothingWithoutAScale()
{
    QFETCH(double, s1);
    QFETCH(double, s2);
    QFETCH(QRect, canvas);
    TraceStore store;
    for (int i = 0; i < 1000; ++i) {
        store.append(i, i % 150);
    }
    TraceItem item(store);
    for (const TraceStyle style : {TraceStyle::Hold, TraceStyle::Linear}) {
        item.setStyle(style);
        Scene time;
        time.canvas = canvas;
        time.x = mapOf(s1, s2, 0, kWidth - 1);
        time.draw(item);
        QVERIFY(time.image == Scene::emptyImage());
        Scene value;
        value.canvas = canvas;
        value.y = mapOf(s1, s2, kHeight - 1, 0);
        value.draw(item);
        QVERIFY(canvas.isEmpty() ? value.image == Scene::emptyImage() : true);
        QVERIFY(std::isfinite(s1) && std::isfinite(s2) ? true : value.image == Scene::emptyImage());
    }
    Scene usual;
    usual.draw(item);
    QVERIFY(usual.image != Scene::emptyImage());
}

void TestTrendPaint::bearsAllTimesThereAre()
{
    TraceStore store;
    store.append(std::numeric_limits<qint64>::min(), 50);
    store.append(200, 60);
    store.append(std::numeric_limits<qint64>::max(), 1e308);
    TraceItem item(store);
    item.setHoldUntil(std::numeric_limits<qint64>::max());
    Scene scene;
    scene.draw(item);
    QCOMPARE(scene.rows(100), std::vector<int>{scene.rowOf(50)});
    QCOMPARE(scene.rows(300), std::vector<int>{scene.rowOf(60)});

    Scene wide;
    wide.x = mapOf(-1e19, 1e19, 0, kWidth - 1);
    wide.draw(item);
    QCOMPARE(wide.rows(100), std::vector<int>{wide.rowOf(50)});
    QVERIFY(wide.rows(5).empty());

    item.setStyle(TraceStyle::Linear);
    Scene lines;
    lines.draw(item);
    QVERIFY(!lines.rows(100).empty());
}

void TestTrendPaint::boundsLanes()
{
    TraceStore store;
    TraceItem item(filled(store, {{100, 0}, {200, 1}}));
    QCOMPARE(item.boundingRect(), QRectF(100, 0, 100, 1));
    item.setLane(7, 5);
    QCOMPARE(item.boundingRect(), QRectF(100, 5, 100, 2));
    QVERIFY(item.isLane());
}

QTEST_MAIN(TestTrendPaint)

#include "test_trend_paint.moc"
