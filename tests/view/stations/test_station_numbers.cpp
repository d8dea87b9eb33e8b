#include "support/rows.h"
#include "view/stations/numbers/line_load.h"
#include "view/stations/numbers/request_rate.h"
#include "view/stations/numbers/station_details.h"
#include "view/stations/numbers/station_table.h"
#include "view/stations/numbers/table_text.h"
#include "view/stations/numbers/trouble_lists.h"

#include <QAbstractItemModelTester>
#include <QStandardItemModel>

using namespace cnet;
using namespace cnet::view;

namespace {

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

const Case<double, const char *> kLoads[] = {
    {"idle", 0, "plenty"},       {"little", 29.9, "plenty"}, {"some", 30, "room for more"},
    {"much", 60, "little room"}, {"full", 85, "full"},       {"impossible", 250, "full"},
};

} // namespace

/** The numbers of stations and of the line in words and tables. */
class TestStationNumbers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ratesComeFromLooks_data() { addRows(kRates); }
    void ratesComeFromLooks();
    void loadHasWords_data() { addRows(kLoads); }
    void loadHasWords();
    void tableShowsWhatWasCounted();
    void tableKeepsItsRows();
    void listsTellKindsAndAddresses();
    void tableTextKeepsToItsFields();

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

QTEST_MAIN(TestStationNumbers)
#include "test_station_numbers.moc"
