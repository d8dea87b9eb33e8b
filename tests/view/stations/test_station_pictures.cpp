#include "support/rows.h"
#include "view/look/colours.h"
#include "view/stations/pictures/histogram_view.h"
#include "view/stations/pictures/sparkline.h"

#include <limits>
#include <numeric>

using namespace cnet;
using namespace cnet::view;

namespace {

ResponseHistogram timesOf(const QVector<double> &all)
{
    ResponseHistogram times;
    for (const double ms : all) {
        times.note(ms);
    }
    return times;
}

/** The columns of a picture of a widget that have pixels other than its ground. */
QVector<bool> drawnColumns(QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    widget.render(&image);
    const QRgb ground = widget.palette().color(QPalette::Base).rgb();
    QVector<bool> drawn(image.width());
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            drawn[x] = drawn[x] || image.pixel(x, y) != ground;
        }
    }
    return drawn;
}

const Given<QVector<double>> kTimes[] = {
    {"one", {12.5}},
    {"zero", {0}},
    {"close together", {10, 10.1, 10.2, 10.3}},
    {"far apart", {0.05, 3, 3.1, 47, 5000}},
    {"exactly at nice ends", {1, 2, 5, 10, 20, 50, 100}},
    {"longer than any", {65000, 70000, 200000}},
};

} // namespace

/** The numbers of a station as pictures. */
class TestStationPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachTimeIsInAColumn_data() { addRows(kTimes); }
    void eachTimeIsInAColumn();
    void outliersAreDrawn();
    void figuresAreSpoken();
    void sparklineDrawsGaps();
};

void TestStationPictures::eachTimeIsInAColumn()
{
    const auto &row = currentRow(kTimes);
    const ResponseHistogram times = timesOf(row.given);
    const TimeSpan span = spanOf(times);
    QVERIFY(span.fromMs > 0);
    QVERIFY(span.fromMs <= std::max(times.minMs(), 0.001) * 1.000001);
    QVERIFY(span.toMs > times.maxMs());
    for (const int columns : {1, 7, 40}) {
        const auto counts = histogramColumns(times, span, columns);
        QCOMPARE(int(counts.size()), columns);
        QCOMPARE(std::accumulate(counts.begin(), counts.end(), qint64(0)), times.count());
    }
}

void TestStationPictures::outliersAreDrawn()
{
    HistogramView view;
    view.resize(400, 120);
    QVector<double> all(5000, 10.0);
    view.setTimes(timesOf(all));
    const auto before = drawnColumns(view);
    all.append(900);
    view.setTimes(timesOf(all));
    QImage image(view.size(), QImage::Format_RGB32);
    view.render(&image);
    // The single slow one stands at the far right of 5 to 1000 ms, small and in the same colour.
    const QRgb colour = traceColour(0, view.palette()).rgb();
    int rightmost = -1;
    int leftmost = image.width();
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) == colour) {
                rightmost = std::max(rightmost, x);
                leftmost = std::min(leftmost, x);
            }
        }
    }
    QVERIFY(leftmost < image.width() / 2);
    QVERIFY(rightmost > image.width() * 3 / 4);
    QVERIFY(before.contains(true));
}

void TestStationPictures::figuresAreSpoken()
{
    HistogramView view;
    QVERIFY(view.accessibleDescription().contains(QLatin1String("No answers")));
    view.setTimes(timesOf({10, 20, 40}));
    const QString words = view.accessibleDescription();
    for (const char *part : {"3 answers", "shortest 10.0", "longest 40.0", "median 20"}) {
        QVERIFY2(words.contains(QLatin1String(part)), qPrintable(words));
    }
}

void TestStationPictures::sparklineDrawsGaps()
{
    Sparkline line;
    line.resize(Sparkline::kMost * 2 - 1, 30);
    for (int i = 0; i < Sparkline::kMost + 50; ++i) {
        const bool gap = i >= 150 && i < 200; // of the ones kept: 100 to 149
        line.add(gap ? std::numeric_limits<double>::quiet_NaN() : 60);
    }
    QCOMPARE(int(line.values().size()), Sparkline::kMost);
    const auto drawn = drawnColumns(line);
    for (const int x : {10, 150, 190, 310, 500, 590}) {
        QVERIFY2(drawn.at(x), qPrintable(QString::number(x)));
    }
    for (const int x : {205, 250, 290}) {
        QVERIFY2(!drawn.at(x), qPrintable(QString::number(x)));
    }
}

QTEST_MAIN(TestStationPictures)
#include "test_station_pictures.moc"
