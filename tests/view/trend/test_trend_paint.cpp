#include "plain_store.h"
#include "trace_scene.h"

#include <QtTest>

#include <limits>
#include <random>

using namespace cnet::view;

namespace {

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
    void drawsNothingWithoutAScale_data();
    void drawsNothingWithoutAScale();
    void bearsAllTimesThereAre();
    void boundsLanes();
};

void TestTrendPaint::losesNoExtreme_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("samples");
    QTest::addColumn<double>("gaps");
    QTest::addColumn<double>("from"); // of the time that there is, as parts of 1
    QTest::addColumn<double>("to");
    const int hold = static_cast<int>(TraceStyle::Hold);
    const int lines = static_cast<int>(TraceStyle::Linear);
    QTest::newRow("many a column") << hold << 100000 << 0.0 << 0.0 << 1.0;
    QTest::newRow("many a column, joined by lines") << lines << 100000 << 0.0 << 0.0 << 1.0;
    QTest::newRow("many, with gaps") << hold << 100000 << 0.01 << 0.0 << 1.0;
    QTest::newRow("some a column") << hold << 3000 << 0.1 << -0.1 << 1.1;
    QTest::newRow("fewer than columns") << hold << 60 << 0.2 << 0.0 << 1.0;
    QTest::newRow("a part of many") << hold << 100000 << 0.01 << 0.3 << 0.7;
    QTest::newRow("a small part") << hold << 100000 << 0.01 << 0.5 << 0.501;
    QTest::newRow("less than a sample") << hold << 1000 << 0.0 << 0.5 << 0.5001;
}

void TestTrendPaint::losesNoExtreme()
{
    QFETCH(int, style);
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
    item.setStyle(static_cast<TraceStyle>(style));
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
        if (gaps == 0) {
            QVERIFY2(static_cast<int>(rows.size()) == expected.bottom - expected.top + 1, where);
        }
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
        QVERIFY(value.image == Scene::emptyImage());
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
