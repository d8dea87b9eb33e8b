#include "support/rows.h"
#include "view/look/colours.h"
#include "view/stations/numbers/line_load.h"
#include "view/stations/numbers/request_rate.h"
#include "view/stations/numbers/station_details.h"
#include "view/stations/numbers/station_table.h"
#include "view/stations/numbers/table_text.h"
#include "view/stations/numbers/trouble_lists.h"
#include "view/stations/pictures/histogram_view.h"
#include "view/stations/pictures/sparkline.h"
#include "view/stations/stations_page.h"
#include "view/support/unnamed_fields.h"
#include "view/tags/watched_tags.h"

#include "plc/stations/bus.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QStandardItemModel>
#include <QTableView>
#include <QTreeWidget>

#include <cmath>
#include <limits>
#include <numeric>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr int kLongMs = 60000;

ExchangeReport reportOf(int station, Outcome outcome, double tookMs = 10)
{
    ExchangeReport report;
    report.reply.station = station;
    report.reply.outcome = outcome;
    report.reply.tookMs = tookMs;
    report.range = {station, QLatin1String("D_W"), 100 * station, 5};
    report.good = outcome == Outcome::Answered;
    report.refusal = outcome == Outcome::Refused ? 0x1132 : 0;
    return report;
}

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

struct RateRow
{
    const char *what;
    QVector<QPair<qint64, qint64>> looks; ///< milliseconds and total
    double expected;                      ///< negative: not known
};

const RateRow kRates[] = {
    {"one look says nothing", {{1000, 5}}, -1},
    {"two looks", {{1000, 5}, {2000, 25}}, 20},
    {"nothing happened", {{1000, 5}, {2000, 5}}, 0},
    {"two looks at one time", {{1000, 5}, {1000, 25}}, -1},
    {"what is older than the window is forgotten",
     {{0, 0}, {1000, 1000}, {6000, 1050}, {7000, 1060}},
     10},
    {"a long pause is one step", {{0, 0}, {60000, 600}}, 10},
    {"counting begins anew", {{1000, 100}, {2000, 200}, {3000, 4}, {4000, 8}}, 4},
};

const Given<QVector<double>> kTimes[] = {
    {"one", {12.5}},
    {"zero", {0}},
    {"close together", {10, 10.1, 10.2, 10.3}},
    {"far apart", {0.05, 3, 3.1, 47, 5000}},
    {"exactly at nice ends", {1, 2, 5, 10, 20, 50, 100}},
    {"longer than any", {65000, 70000, 200000}},
};

const Case<double, const char *> kLoads[] = {
    {"idle", 0, "plenty"},       {"little", 29.9, "plenty"}, {"some", 30, "room for more"},
    {"much", 60, "little room"}, {"full", 85, "full"},       {"impossible", 250, "full"},
};

} // namespace

/** The numbers of stations and of the line, as the window shows them. */
class TestStationNumbers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ratesComeFromLooks_data() { addRows(kRates); }
    void ratesComeFromLooks();
    void eachTimeIsInAColumn_data() { addRows(kTimes); }
    void eachTimeIsInAColumn();
    void outliersAreDrawn();
    void figuresAreSpoken();
    void sparklineDrawsGaps();
    void loadHasWords_data() { addRows(kLoads); }
    void loadHasWords();
    void tableShowsWhatWasCounted();
    void tableKeepsItsRows();
    void listsTellKindsAndAddresses();
    void tableTextKeepsToItsFields();
    void pageShowsALiveLine();
    void hiddenPageRests();
    void refusedAddressesAreListed();
    void fieldsHaveNames();

private:
    static Statistics statistics() { return Statistics(LineSettings()); }
};

void TestStationNumbers::ratesComeFromLooks()
{
    const RateRow &row = currentRow(kRates);
    RequestRate rate;
    for (const auto &look : row.looks) {
        rate.note(look.first, look.second);
    }
    QCOMPARE(rate.perSecond().value_or(-1), row.expected);
}

void TestStationNumbers::eachTimeIsInAColumn()
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

void TestStationNumbers::outliersAreDrawn()
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

void TestStationNumbers::figuresAreSpoken()
{
    HistogramView view;
    QVERIFY(view.accessibleDescription().contains(QLatin1String("No answers")));
    view.setTimes(timesOf({10, 20, 40}));
    const QString words = view.accessibleDescription();
    for (const char *part : {"3 answers", "shortest 10.0", "longest 40.0", "median 20"}) {
        QVERIFY2(words.contains(QLatin1String(part)), qPrintable(words));
    }
}

void TestStationNumbers::sparklineDrawsGaps()
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

void TestStationNumbers::loadHasWords()
{
    const auto &row = currentRow(kLoads);
    const QString words = loadWords(row.given);
    QVERIFY2(words.contains(QLatin1String(row.expected)), qPrintable(words));
    QVERIFY(words.contains(QLatin1Char('%')));
}

void TestStationNumbers::tableShowsWhatWasCounted()
{
    Statistics numbers = statistics();
    numbers.reset(0);
    StationTable table;
    const QAbstractItemModelTester tester(&table);
    for (int i = 0; i < 3; ++i) {
        numbers.note(reportOf(4, Outcome::Answered, 20));
    }
    numbers.note(reportOf(4, Outcome::TimedOut));
    ExchangeReport damaged = reportOf(4, Outcome::Bad);
    damaged.reply.defect = Defect::BlockCheck;
    damaged.final = false;
    numbers.note(damaged);
    numbers.note(reportOf(4, Outcome::Bad));
    numbers.note(reportOf(4, Outcome::Refused, 30));
    numbers.stationBook().noteLate(4);
    table.take(numbers, 1000);
    for (int i = 0; i < 8; ++i) {
        numbers.note(reportOf(4, Outcome::Refused, 30));
    }
    table.take(numbers, 3000);
    const QMap<int, QString> expected = {{StationTable::Station, QLatin1String("4")},
                                         {StationTable::State, QLatin1String("refuses")},
                                         {StationTable::Requests, QLatin1String("15")},
                                         {StationTable::PerSecond, QLatin1String("4.0")},
                                         {StationTable::NoAnswer, QLatin1String("1")},
                                         {StationTable::WrongChecks, QLatin1String("1")},
                                         {StationTable::OtherBad, QLatin1String("1")},
                                         {StationTable::Refusals, QLatin1String("9")},
                                         {StationTable::RefusedAddresses, QLatin1String("1")},
                                         {StationTable::Late, QLatin1String("1")},
                                         {StationTable::Repeated, QLatin1String("1")},
                                         {StationTable::Longest, QLatin1String("30.0")}};
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        QCOMPARE(table.index(0, it.key()).data().toString(), it.value());
    }
    QVERIFY(!table.index(0, StationTable::State).data(Qt::DecorationRole).value<QIcon>().isNull());
    QVERIFY(table.index(0, StationTable::State)
                .data(Qt::ToolTipRole)
                .toString()
                .contains(QLatin1String("1132")));
    table.forgetStates();
    QCOMPARE(table.index(0, StationTable::State).data().toString(), QLatin1String("not known"));
    QCOMPARE(table.index(0, StationTable::Requests).data().toString(), QLatin1String("15"));
}

void TestStationNumbers::tableKeepsItsRows()
{
    Statistics numbers = statistics();
    StationTable table;
    const QAbstractItemModelTester tester(&table);
    numbers.note(reportOf(7, Outcome::Answered));
    table.take(numbers, 0);
    const QPersistentModelIndex seven = table.index(0, StationTable::Requests);
    for (const int station : {3, 9, 0}) {
        numbers.note(reportOf(station, Outcome::Answered));
    }
    table.take(numbers, 1000);
    QCOMPARE(table.rowCount(), 4);
    QCOMPARE(seven.row(), 2);
    QCOMPARE(table.rowOf(9), 3);
    QCOMPARE(table.stationAt(0), 0);
    QCOMPARE(table.stationAt(4), -1);
    QVERIFY(table.countersAt(-1) == nullptr);
    numbers.reset(2000);
    table.take(numbers, 2000);
    QVERIFY(seven.isValid());
    QCOMPARE(seven.data().toString(), QLatin1String("0"));
    table.take(statistics(), 3000);
    QCOMPARE(table.rowCount(), 0);
    QVERIFY(!seven.isValid());
}

void TestStationNumbers::listsTellKindsAndAddresses()
{
    Statistics numbers = statistics();
    numbers.note(reportOf(1, Outcome::Refused));
    numbers.note(reportOf(1, Outcome::Refused));
    numbers.note(reportOf(1, Outcome::TimedOut));
    numbers.note(reportOf(2, Outcome::Refused));
    const auto refused = refusedRows(numbers.blocks(), 1);
    QCOMPARE(int(refused.size()), 1);
    QCOMPARE(refused.at(0).at(0), QLatin1String("D_W:100*5"));
    QVERIFY(refused.at(0).at(1).startsWith(QLatin1String("1132")));
    QCOMPARE(refused.at(0).at(2), QLatin1String("2"));
    const auto troubles = troubleRows(numbers.stations().value(1));
    QCOMPARE(int(troubles.size()), 2);
    QCOMPARE(troubles.at(0), QStringList({QLatin1String("No answer"), QLatin1String("1")}));
    QVERIFY(troubles.at(1).at(0).contains(QLatin1String("1132")));
    QVERIFY(troubleRows(StationCounters()).isEmpty());
    StationDetails details;
    details.showStation(2, numbers.stations().value(2), numbers.blocks());
    QVERIFY2(details.title().startsWith(QLatin1String("Station 2 refuses: 1132")),
             qPrintable(details.title()));
    details.clear();
    QVERIFY(details.title().startsWith(QLatin1String("No station")));
}

void TestStationNumbers::tableTextKeepsToItsFields()
{
    QStandardItemModel model(1, 2);
    model.setHorizontalHeaderLabels({QLatin1String("one"), QLatin1String("two")});
    model.setItem(0, 0, new QStandardItem(QLatin1String("a\tb\nc")));
    model.setItem(0, 1, new QStandardItem(QLatin1String("d")));
    QCOMPARE(tableText(model), QLatin1String("one\ttwo\na b c\td\n"));
}

void TestStationNumbers::pageShowsALiveLine()
{
    Line line;
    QCOMPARE(line.prepare(), QString());
    WatchedTags tags(line);
    StationsPage page(line);
    auto *table = page.findChild<StationTable *>();
    auto *details = page.findChild<StationDetails *>();
    QVERIFY(table != nullptr && details != nullptr);
    page.show();
    line.open(Connection());
    QString error;
    tags.setTags(TagSet({*tags.parse(QLatin1String("D_W:110"), error)}));
    QTRY_COMPARE_WITH_TIMEOUT(table->index(0, StationTable::State).data().toString(),
                              QLatin1String("answers"), kLongMs);
    QTRY_VERIFY_WITH_TIMEOUT(!table->index(0, StationTable::PerSecond).data().toString().isEmpty(),
                             kLongMs);
    QCOMPARE(table->index(0, StationTable::Station).data().toString(), QLatin1String("1"));
    QVERIFY(table->countersAt(0)->times.count() > 0);
    QTRY_COMPARE_WITH_TIMEOUT(details->title(), QLatin1String("Station 1: answers"), kLongMs);
    auto *load = page.findChild<LineLoad *>();
    QTRY_VERIFY_WITH_TIMEOUT(load->words().contains(QLatin1String("% busy")), kLongMs);
    page.copyTable();
    QVERIFY(QGuiApplication::clipboard()->text().startsWith(QLatin1String("Station\tState\t")));
    QCOMPARE(int(QGuiApplication::clipboard()->text().count(QLatin1Char('\n'))), 2);

    const qint64 sinceMs = line.session()->statistics().sinceMs();
    QTRY_VERIFY_WITH_TIMEOUT(line.session()->nowMs() > sinceMs, kLongMs);
    page.resetNumbers();
    QVERIFY(line.session()->statistics().sinceMs() > sinceMs);
    QCOMPARE(table->rowCount(), 1);

    QTRY_VERIFY_WITH_TIMEOUT(line.session()->stations().value(1).frames > 0, kLongMs);
    line.close();
    QCOMPARE(table->index(0, StationTable::State).data().toString(), QLatin1String("not known"));
    QVERIFY(table->countersAt(0)->frames > 0);
    page.resetNumbers(); // of nothing
    QTRY_COMPARE_WITH_TIMEOUT(load->words(), QLatin1String("the line is not open"), kLongMs);
    line.open(Connection());
    QCOMPARE(table->rowCount(), 0);
}

void TestStationNumbers::hiddenPageRests()
{
    Line line;
    QCOMPARE(line.prepare(), QString());
    WatchedTags tags(line);
    StationsPage page(line);
    auto *table = page.findChild<StationTable *>();
    auto *load = page.findChild<LineLoad *>();
    line.open(Connection());
    QString error;
    tags.setTags(TagSet({*tags.parse(QLatin1String("D_W:110"), error)}));
    QTRY_VERIFY_WITH_TIMEOUT(line.session()->stations().value(1).answers > 0, kLongMs);
    // The line is looked at twice more, the stations are not.
    const auto before = load->history().values().size();
    QTRY_VERIFY_WITH_TIMEOUT(load->history().values().size() >= before + 2, kLongMs);
    QCOMPARE(table->rowCount(), 0);
    page.show();
    QCOMPARE(table->rowCount(), 1);
}

void TestStationNumbers::refusedAddressesAreListed()
{
    Line line;
    QCOMPARE(line.prepare(), QString());
    WatchedTags tags(line);
    StationsPage page(line);
    page.show();
    line.open(Connection());
    plc::Fault refusal = plc::usualFault(plc::FaultKind::Refuse);
    line.simulator()->find(1)->faults.add(refusal);
    QString error;
    tags.setTags(TagSet({*tags.parse(QLatin1String("D_W:110"), error)}));
    const auto lists = page.findChild<StationDetails *>()->findChildren<QTreeWidget *>();
    QCOMPARE(int(lists.size()), 2);
    for (QTreeWidget *list : lists) {
        QTRY_VERIFY_WITH_TIMEOUT(list->topLevelItemCount() > 0, kLongMs);
    }
    QTRY_COMPARE_WITH_TIMEOUT(lists.at(1)->topLevelItem(0)->text(0), QLatin1String("D_W:110*1"),
                              kLongMs);
}

void TestStationNumbers::fieldsHaveNames()
{
    Line line;
    const StationsPage page(line);
    int count = 0;
    QCOMPARE(unnamedFields(page, count), QStringList());
    QVERIFY(count > 5);
}

QTEST_MAIN(TestStationNumbers)
#include "test_station_numbers.moc"
