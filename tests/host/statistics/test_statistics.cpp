#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;

/** The numbers of a session on a line in virtual time. */
class TestStatistics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsAllBytes();
    void surviveSetItems();
    void startAgain();
    void tellBadChecksApart();
    void tellNoLoadOfAnUnknownLine();
};

// A frame and its answer each take 5 ms.
void TestStatistics::countsAllBytes()
{
    SessionOptions options;
    options.line = {9600, 8, Parity::Even, 1};
    options.lineSpeed = LineSpeed::Known;
    VirtualPlant plant(options);
    plant.monitor("D_W:0*10 M_W:3");
    QCOMPARE(plant.session->statistics().sinceMs(), Q_INT64_C(-1));
    plant.open(10000);
    const Statistics &statistics = plant.session->statistics();
    const LineTraffic all = statistics.line().all(plant.clock.nowMs());
    qint64 sent = 0;
    for (const QByteArray &frame : std::as_const(plant.line->sent)) {
        sent += frame.size();
    }
    QCOMPARE(all.sentBytes, sent);
    const StationCounters station = statistics.stations().value(1);
    QCOMPARE(station.receivedBytes, all.receivedBytes);
    QVERIFY(station.fences >= 1);
    qint64 ofBlocks = 0;
    for (const ExchangeCounters &block : statistics.blocks().all()) {
        ofBlocks += block.frames;
        QCOMPARE(block.times.minMs(), 10.0);
        QCOMPARE(block.times.percentileMs(99), 10.0);
    }
    QCOMPARE(static_cast<int>(statistics.blocks().all().size()), 2);
    QVERIFY(ofBlocks > 100);
    QCOMPARE(ofBlocks, station.frames - station.fences);
    const double bits = 11 * static_cast<double>(all.bytes());
    QCOMPARE(statistics.loadPercent(all).value_or(0), bits / 9600 / all.seconds * 100);
}

// Numbers are the line's, not those of what is watched.
void TestStatistics::surviveSetItems()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:0*10");
    plant.open(1000);
    const AddressRange block{1, QLatin1String("D_W"), 0, 10};
    const qint64 before = plant.session->statistics().blocks().all().value(block).answers;
    QVERIFY(before > 5);
    monitor->setItems(plant.items(QLatin1String("D_W:500")));
    plant.run(1000);
    QCOMPARE(plant.session->statistics().blocks().all().value(block).answers, before);
    monitor->setItems(plant.items(QLatin1String("D_W:0*10")));
    plant.run(1000);
    QVERIFY(plant.session->statistics().blocks().all().value(block).answers > before + 5);
}

void TestStatistics::startAgain()
{
    VirtualPlant plant;
    plant.monitor("D_W:0");
    plant.open(1000);
    plant.session->resetStatistics();
    const Statistics &statistics = plant.session->statistics();
    QCOMPARE(statistics.sinceMs(), plant.clock.nowMs());
    QVERIFY(statistics.blocks().all().isEmpty());
    QCOMPARE(statistics.stations().value(1).frames, Q_INT64_C(0));
    QVERIFY(statistics.stations().value(1).state == StationState::Answers);
    plant.run(1000);
    QVERIFY(statistics.stations().value(1).frames > 5);
}

void TestStatistics::tellBadChecksApart()
{
    VirtualPlant plant;
    plant.monitor("D_W:0*60");
    plant.open(1000);
    plant.line->manners.damaged = 20;
    plant.run(30000);
    const StationCounters station = plant.session->stations().value(1);
    QVERIFY(station.badChecks > 0);
    QVERIFY(station.badChecks <= station.bad);
    plant.line->manners.damaged = 0;
    plant.line->manners.cut = 20;
    plant.session->resetStatistics();
    plant.run(30000);
    const StationCounters cut = plant.session->stations().value(1);
    QVERIFY(cut.bad > 0);
    QCOMPARE(cut.badChecks, Q_INT64_C(0));
}

void TestStatistics::tellNoLoadOfAnUnknownLine()
{
    VirtualPlant plant;
    plant.monitor("D_W:0");
    plant.open(1000);
    const Statistics &statistics = plant.session->statistics();
    const LineTraffic all = statistics.line().all(plant.clock.nowMs());
    QVERIFY(all.bytesPerSecond() > 0);
    QVERIFY(!statistics.loadPercent(all));
}

QTEST_GUILESS_MAIN(TestStatistics)
#include "test_statistics.moc"
