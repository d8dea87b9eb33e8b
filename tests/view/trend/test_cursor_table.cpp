#include "view/trend/cursor_table.h"

#include "support/random.h"

#include <QAbstractItemModelTester>
#include <QtTest>

#include <cmath>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr qint64 kNow = 1700000000000;
const QLatin1String kName("press.speed");

} // namespace

/** What is worked out between two cursors. */
class TestCursorTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void worksOutWhatIsBetween();
    void sumsAsCursorsMove();
};

void TestCursorTable::worksOutWhatIsBetween()
{
    TraceSet traces;
    Cursors cursors;
    CursorTable table(traces, cursors);
    QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto text = [&table](int column) {
        return table.index(0, column).data().toString().toLatin1();
    };
    traces.add({kName, 0, 0, Side::Left, true}, {QLatin1String("bar"), false});
    TraceStore &store = *traces.at(0).store;
    store.append(kNow, 10);
    store.append(kNow + 1000, 40);
    store.appendGap(kNow + 2000);
    store.append(kNow + 8000, 20);
    table.refresh(kNow + 10000);
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(text(CursorTable::Name), QByteArray("press.speed (bar)"));
    QCOMPARE(text(CursorTable::AtA), QByteArray("-"));
    cursors.place(Cursor::B, kNow + 500.0);
    cursors.place(Cursor::A, kNow + 9000.0); // whichever is the later one
    table.refresh(kNow + 10000);
    QCOMPARE(text(CursorTable::AtA), QByteArray("20"));
    QCOMPARE(text(CursorTable::AtB), QByteArray("10"));
    QCOMPARE(text(CursorTable::Difference), QByteArray("-10"));
    QCOMPARE(text(CursorTable::Least), QByteArray("10"));
    QCOMPARE(text(CursorTable::Greatest), QByteArray("40"));
    // 10 for half a second, 40 for a second, nothing for six, 20 for one.
    QCOMPARE(text(CursorTable::Mean), QByteArray("26"));
    cursors.place(Cursor::A, kNow + 3000.0);
    table.refresh(kNow + 10000);
    QCOMPARE(text(CursorTable::AtA), QByteArray("-"));
    QCOMPARE(text(CursorTable::Difference), QByteArray("-"));
    QCOMPARE(text(CursorTable::Mean), QByteArray("30"));
    cursors.place(Cursor::A, kNow + 1e6); // nothing is known of the future
    table.refresh(kNow + 10000);
    QCOMPARE(text(CursorTable::AtA), QByteArray("-"));
    QCOMPARE(text(CursorTable::Mean), QByteArray("24.28571"));
    traces.removeAt(0);
    table.refresh(kNow + 10000);
    QCOMPARE(table.rowCount(), 0);
}

void TestCursorTable::sumsAsCursorsMove()
{
    TraceSet traces;
    Cursors cursors;
    CursorTable table(traces, cursors);
    traces.add({kName, 0, 0, Side::Left, true}, {});
    TraceStore &store = *traces.at(0).store;
    Random random(7);
    std::vector<double> perMs; // of each millisecond what holds in it; NaN: nothing is known
    constexpr int kMs = 20000;
    double holds = qQNaN();
    for (int ms = 0; ms < kMs; ++ms) {
        if (random.below(20) == 0) {
            holds = random.below(5) == 0 ? qQNaN() : double(random.below(1000));
            std::isnan(holds) ? store.appendGap(kNow + ms) : store.append(kNow + ms, holds);
        }
        perMs.push_back(holds);
    }
    for (int i = 0; i < 300; ++i) {
        // Small steps, which are summed up, and now and then a great one.
        const int from = i % 30 == 0 ? random.below(9000) : 4000 + random.below(200);
        const int to = i % 40 == 0 ? 10000 + random.below(9000) : 15000 + random.below(200);
        cursors.place(Cursor::A, double(kNow + from));
        cursors.place(Cursor::B, double(kNow + to));
        table.refresh(kNow + kMs);
        double sum = 0;
        int known = 0;
        for (int ms = from; ms < to; ++ms) {
            const double value = perMs[size_t(ms)];
            if (!std::isnan(value)) {
                sum += value;
                ++known;
            }
        }
        const double mean = table.index(0, CursorTable::Mean).data().toString().toDouble();
        QVERIFY(qAbs(mean - sum / known) < 1e-3);
    }
}

QTEST_MAIN(TestCursorTable)
#include "test_cursor_table.moc"
