#include "gateway/status/health.h"
#include "gateway/support/snapshots.h"

#include <QJsonArray>
#include <QtTest>

#include <functional>

using namespace cnet::gateway;

using Twist = std::function<void(Snapshot &snapshot)>;
Q_DECLARE_METATYPE(Twist)

/** What is bad enough to say that the gateway does not do its work. */
class TestHealth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judges_data();
    void judges();
    void warnsOfLinesAndStations();
    void tellsEverything();
};

void TestHealth::judges_data()
{
    QTest::addColumn<Twist>("change");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *reason, const Twist &change) {
        QTest::newRow(name) << change << QString::fromLatin1(reason);
    };
    row("a line is down and a sink is away for a moment", "",
        [](Snapshot &snapshot) { snapshot.sinks[1].awayMs = 59999; });
    row("a sink is away", "sink broker takes nothing since 60 s: no route",
        [](Snapshot &snapshot) { snapshot.sinks[1].awayMs = 60000; });
    row("a sink never began", "sink broker takes nothing since 60 s: it has not begun yet",
        [](Snapshot &snapshot) {
            snapshot.sinks[1].awayMs = 60000;
            snapshot.sinks[1].state.trouble.clear();
        });
    row("a full disk", "ledger: disk full",
        [](Snapshot &snapshot) { snapshot.recorder.trouble = QLatin1String("disk full"); });
    row("little room", "ledger: room for less than an hour",
        [](Snapshot &snapshot) { snapshot.recorder.ledger.hoursLeft = 0.9; });
    row("nobody knows how much room", "",
        [](Snapshot &snapshot) { snapshot.recorder.ledger.hoursLeft.reset(); });
    row("slow", "", [](Snapshot &snapshot) { snapshot.atMs -= 15000; });
    row("it hangs", "the gateway hangs since 16 s",
        [](Snapshot &snapshot) { snapshot.atMs -= 16000; });
}

void TestHealth::judges()
{
    QFETCH(Twist, change);
    QFETCH(QString, reason);
    Snapshot snapshot = someSnapshot();
    change(snapshot);
    const Health health = healthOf(snapshot, 100000);
    QCOMPARE(health.reasons.join(QLatin1Char('\n')), reason);
    QCOMPARE(health.isGood(), reason.isEmpty());
    QCOMPARE(healthJson(health).value(QLatin1String("status")).toString(),
             QLatin1String(reason.isEmpty() ? "good" : "bad"));
}

void TestHealth::warnsOfLinesAndStations()
{
    const QStringList warnings = healthOf(someSnapshot(), 100000).warnings;
    QCOMPARE(int(warnings.size()), 2);
    QVERIFY(warnings.at(0).startsWith(QLatin1String("line press: station 31: ")));
    QVERIFY(warnings.at(1).endsWith(QLatin1String("is not open: connection refused")));
}

void TestHealth::tellsEverything()
{
    const QJsonObject status = statusJson(someSnapshot(), 100500);
    QCOMPARE(status.value(QLatin1String("age_ms")).toInt(), 500);
    QCOMPARE(status.value(QLatin1String("started")).toString(),
             QLatin1String("2023-11-14T22:13:20.500Z"));
    const QJsonObject press = status.value(QLatin1String("lines")).toArray().at(0).toObject();
    QCOMPARE(press.value(QLatin1String("load_percent")).toDouble(), 62.5);
    const QJsonObject station = press.value(QLatin1String("stations")).toArray().at(1).toObject();
    QCOMPARE(station.value(QLatin1String("station")).toInt(), 31);
    QCOMPARE(station.value(QLatin1String("no_answer")).toInt(), 5);
    const QJsonObject broker = status.value(QLatin1String("sinks")).toArray().at(1).toObject();
    QCOMPARE(broker.value(QLatin1String("waiting_batches")).toInt(), 12);
    const QJsonObject ledger = status.value(QLatin1String("ledger")).toObject();
    QCOMPARE(ledger.value(QLatin1String("hours_left")).toDouble(), 2.5);
}

QTEST_APPLESS_MAIN(TestHealth)
#include "test_health.moc"
