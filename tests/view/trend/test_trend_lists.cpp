#include "view/trend/traces/trace_set.h"
#include "view/trend/traces/trend_marks.h"

#include "support/text.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr qint64 kNow = 1700000000000;

} // namespace

/** The lists beside the panes: traces and notes. */
class TestTrendLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tracesAreEdited();
    void notesAreEdited();
};

void TestTrendLists::tracesAreEdited()
{
    TraceSet traces;
    const QAbstractItemModelTester tester(&traces,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto add = [&traces](const QString &name, bool isBit = false) {
        return traces.add({name, 0, 0, Side::Left, true}, {QString(), isBit});
    };
    add(latin("a"));
    add(latin("bit"), true);
    QCOMPARE(add(latin("a")), -1); // there is one
    const auto cell = [&traces](int row, int column) { return traces.index(row, column); };
    QVERIFY(traces.setData(cell(0, TraceSet::ScaleSide), 1, Qt::EditRole));
    QVERIFY(traces.at(0).choice.side == Side::Right);
    QVERIFY(traces.setData(cell(0, TraceSet::PaneNumber), 8, Qt::EditRole));
    QCOMPARE(traces.at(0).choice.pane, 7);
    QVERIFY(!traces.setData(cell(0, TraceSet::PaneNumber), 9, Qt::EditRole));
    QVERIFY(!traces.setData(cell(0, TraceSet::ScaleSide), 2, Qt::EditRole));
    QVERIFY(!traces.setData(cell(1, TraceSet::ScaleSide), 1, Qt::EditRole));
    QVERIFY(!(traces.flags(cell(1, TraceSet::PaneNumber)) & Qt::ItemIsEditable));
    QVERIFY(traces.setData(cell(0, TraceSet::Name), Qt::Unchecked, Qt::CheckStateRole));
    QVERIFY(!traces.at(0).choice.isVisible);
    QCOMPARE(traces.data(cell(0, TraceSet::Value), Qt::DisplayRole).toString(), QLatin1String("-"));
    traces.at(0).store->append(kNow, 12.3);
    QCOMPARE(traces.data(cell(0, TraceSet::Value), Qt::DisplayRole).toString(),
             QLatin1String("12.3"));
    QCOMPARE(traceText(4294967295.0, 0), QLatin1String("4294967295"));
    QCOMPARE(traceText(double(9.7F), 0), QLatin1String("9.7"));
    QCOMPARE(traceText(47.0, 1), QLatin1String("47.0"));
    QCOMPARE(traceText(4.4 - 1.4, 1), QLatin1String("3.0"));       // 3.0000000000000004
    QCOMPARE(traceText(0.3 - 0.1 - 0.2, 1), QLatin1String("0.0")); // below 0
    QCOMPARE(traceText(-47.25, 1), QLatin1String("-47.25"));       // the mean of values
    traces.setKind(0, {latin("bar"), false, 2});
    QCOMPARE(traces.data(cell(0, TraceSet::Value), Qt::DisplayRole).toString(),
             QLatin1String("12.30 bar"));
    for (int i = 0; i < 2 * TraceSet::kMostTraces; ++i) {
        add(QString::number(i));
    }
    QCOMPARE(traces.count(), TraceSet::kMostTraces);
    traces.setHighlighted(3);
    traces.removeAt(1);
    QCOMPARE(traces.highlighted(), 2);
}

void TestTrendLists::notesAreEdited()
{
    Markers markers;
    const QAbstractItemModelTester tester(&markers,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(markers.add({kNow, QLatin1String("second")}), 0);
    QCOMPARE(markers.add({kNow - 1, QLatin1String("first")}), 0);
    QVERIFY(markers.setData(markers.index(0, Markers::Note), QString(2000, QLatin1Char('x')),
                            Qt::EditRole));
    QCOMPARE(markers.all().front().note.size(), int(Markers::kLongestNote));
    QVERIFY(!markers.setData(markers.index(0, Markers::Time), 3, Qt::EditRole));
    markers.removeAt(0);
    QCOMPARE(markers.all().front().note, QLatin1String("second"));
}

QTEST_MAIN(TestTrendLists)
#include "test_trend_lists.moc"
