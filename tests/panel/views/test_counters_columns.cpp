#include "host/support/reports.h"

#include "panel/views/counters_columns.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::panel;

namespace {

const Case<qint64, const char *> kCounts[] = {
    {"none", 0, "0"},
    {"below a million", 999999, "999999"},
    {"a million", 1000000, "1.0M"},
    {"rounded down", 1999999, "1.9M"},
    {"many millions", 999999999, "999.9M"},
    {"a milliard", 1000000000, "1.0G"},
};

} // namespace

class TestCountersColumns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortensCounts_data() { addRows(kCounts); }
    void shortensCounts();
    void columnsDoNotMove();
};

void TestCountersColumns::shortensCounts()
{
    const auto &row = currentRow(kCounts);
    QCOMPARE(countText(row.given), QLatin1String(row.expected));
    QVERIFY(countText(row.given).size() < 7);
}

void TestCountersColumns::columnsDoNotMove()
{
    StyledLine titles;
    appendCounterTitles(titles);
    ExchangeCounters counters;
    for (const double ms : {0.1, 99.9, 1234.5, 700000.0}) {
        counters.note(reportOf(Outcome::Refused, ms));
        counters.frames *= 1000;
        StyledLine line;
        appendCounters(line, counters);
        QCOMPARE(line.size(), titles.size());
        const auto at = titles.text().indexOf(QLatin1String("REFUSALS"));
        QVERIFY(line.text().mid(at).startsWith(QLatin1String("1132 (")));
    }
}

QTEST_APPLESS_MAIN(TestCountersColumns)
#include "test_counters_columns.moc"
