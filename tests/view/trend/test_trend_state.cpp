#include "view/trend/trend_state.h"

#include "support/rows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr qint64 kNow = 1700000000000;
const QLatin1String kName("press.speed");

const Case<const char *, int> kStates[] = {
    {"nothing", "{}", 0},
    {"other kinds", R"({"traces": 5, "notes": {}, "panes": "x", "following": [], "seconds": ""})",
     0},
    {"no traces",
     R"({"traces": [1, null, {}, {"name": ""}, {"name": 7}, {"name": "a", "pane": -9, "colour": -1}]})",
     1},
    {"no heights and cursors",
     R"({"heights": [0.5, "x", 7, -1], "cursors": {"a": -1, "b": "now"}})", 0},
    {"no numbers", R"({"panes": [{"left": {"from": 5, "to": 1}, "right": {"from": "a"}}, 3, []],
                      "notes": [{"atMs": -1}, {"atMs": 1e300}, 3], "seconds": -7})",
     0},
};

} // namespace

/** What a project keeps of a trend. */
class TestTrendState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsItsState();
    void takesAnyState_data();
    void takesAnyState();
};

void TestTrendState::keepsItsState()
{
    TrendState state;
    state.traces = {{kName, 3, 1, Side::Right, false},
                    {QLatin1String("b"), 0, 0, Side::Left, true}};
    state.markers = {{kNow, QLatin1String("here")}};
    state.sight.follow = Follow::No;
    state.sight.time = {kNow - 12000.0, kNow};
    state.sight.panes.resize(2);
    state.sight.panes[1].right = {Scaling::Fixed, {-1.5, 7}};
    // As a file has it.
    const auto object = QJsonDocument::fromJson(QJsonDocument(trendJson(state)).toJson()).object();
    const TrendState back = trendState(object);
    QCOMPARE(int(back.traces.size()), 2);
    QCOMPARE(back.traces[0].name, kName);
    QCOMPARE(back.traces[0].colour, 3);
    QCOMPARE(back.traces[0].pane, 1);
    QVERIFY(back.traces[0].side == Side::Right);
    QVERIFY(!back.traces[0].isVisible);
    QVERIFY(back.traces[1].side == Side::Left && back.traces[1].isVisible);
    QCOMPARE(int(back.markers.size()), 1);
    QCOMPARE(back.markers[0].atMs, kNow);
    QCOMPARE(back.markers[0].note, QLatin1String("here"));
    QVERIFY(back.sight.follow == Follow::No);
    QCOMPARE(back.sight.time.length(), 12000.0);
    QCOMPARE(int(back.sight.panes.size()), 2);
    QVERIFY(back.sight.panes[1].left.scaling == Scaling::Auto);
    QVERIFY(back.sight.panes[1].right.scaling == Scaling::Fixed);
    QVERIFY(back.sight.panes[1].right.range == (Range{-1.5, 7}));
}

void TestTrendState::takesAnyState_data()
{
    addRows(kStates);
}

void TestTrendState::takesAnyState()
{
    const auto &row = currentRow(kStates);
    const auto document = QJsonDocument::fromJson(row.given);
    QVERIFY(document.isObject());
    const TrendState state = trendState(document.object());
    QCOMPARE(int(state.traces.size()), row.expected);
    QCOMPARE(int(state.markers.size()), 0);
    QVERIFY(state.parts.empty());
    QVERIFY(!state.cursors[0] && !state.cursors[1]);
    for (const auto &scales : state.sight.panes) {
        QVERIFY(scales.left.scaling == Scaling::Auto);
        QVERIFY(scales.right.scaling == Scaling::Auto);
    }
    TrendView view(kNow);
    view.restore(state.sight);
    QVERIFY(view.panes() >= 1);
    QVERIFY(view.sight().time.length() >= 10);
}

QTEST_MAIN(TestTrendState)
#include "test_trend_state.moc"
