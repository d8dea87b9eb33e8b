#include "view/trend/output/trace_csv.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr qint64 kNow = 1700000000000;
const QLatin1String kName("press.speed");

} // namespace

/** Samples as a table. */
class TestTraceCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savesWhatIsBetween();
    void savesNothingOfNothing();
};

void TestTraceCsv::savesWhatIsBetween()
{
    TraceSet traces;
    traces.add({kName, 0, 0, Side::Left, true}, {});
    traces.add({QLatin1String("hidden"), 0, 0, Side::Left, false}, {});
    for (const int trace : {0, 1}) {
        traces.at(trace).store->append(kNow - 5000, 1);
        traces.at(trace).store->append(kNow - 3000, 2);
        traces.at(trace).store->appendGap(kNow - 1000);
        traces.at(trace).store->append(kNow, 3);
    }
    QString error;
    const auto text = traceCsv(traces, {kNow - 4000.0, kNow - 1.0}, error);
    QVERIFY2(text, qPrintable(error));
    QVERIFY(!text->contains("hidden"));
    const auto rows = text->split('\n');
    QCOMPARE(rows.size(), 5);                       // the last one is empty
    QVERIFY(rows.at(1).endsWith(",press.speed,1")); // it held as the time began
    QVERIFY(rows.at(2).endsWith(",press.speed,2"));
    QVERIFY(rows.at(3).endsWith(",press.speed,"));
    const auto first = QString::fromLatin1(rows.at(1).split(',').first());
    QCOMPARE(QDateTime::fromString(first, Qt::ISODateWithMs).toMSecsSinceEpoch(), kNow - 4000);
}

void TestTraceCsv::savesNothingOfNothing()
{
    TraceSet traces;
    QString error;
    QVERIFY(!traceCsv(traces, {0, double(kNow)}, error));
    QVERIFY(!error.isEmpty());
    traces.add({kName, 0, 0, Side::Left, true}, {});
    for (int i = 0; i < 1000; ++i) {
        traces.at(0).store->append(kNow + i, i);
    }
    error.clear();
    QVERIFY(!traceCsv(traces, {0, kNow - 1.0}, error));
    QVERIFY(!error.isEmpty());
}

QTEST_MAIN(TestTraceCsv)
#include "test_trace_csv.moc"
