#include "plc/stations/bus.h"

#include "plc/support/recorded_line.h"

#include <QtTest>

using namespace plc;

struct CountingScenario : Scenario
{
    void advance(Memory & /*memory*/, qint64 /*nowMs*/) override { ++steps; }

    int steps = 0;
};

class TestBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsStations()
    {
        Bus bus;
        QVERIFY(!bus.find(1));
        bus.add(1);
        bus.add(31, Model::K120s);
        QCOMPARE(bus.find(1)->station.number(), 1);
        QCOMPARE(int(bus.find(31)->station.memory().model()), int(Model::K120s));
        QVERIFY(!bus.find(0));
    }

    void aTrialChangesNothing()
    {
        Bus bus;
        Unit &unit = bus.add(1);
        const auto scenario = std::make_shared<CountingScenario>();
        unit.scenario = scenario;
        unit.station.memory().setWord('D', 0, 7);
        Bus trial = bus.trial();
        trial.advance(1000);
        Memory &memory = trial.find(1)->station.memory();
        QCOMPARE(*memory.word('D', 0), quint16(7));
        memory.setWord('D', 0, 8);
        QCOMPARE(*unit.station.memory().word('D', 0), quint16(7));
        QCOMPARE(scenario->steps, 0);
        bus.advance(1000);
        QCOMPARE(scenario->steps, 1);
    }

    void replacesStations()
    {
        Bus bus;
        bus.add(1).station.memory().setWord('D', 0, 5);
        bus.add(1);
        QCOMPARE(*bus.find(1)->station.memory().word('D', 0), quint16(0));
        QCOMPARE(bus.units().size(), std::size_t(1));
    }

    void advancesAllMotions()
    {
        Bus bus;
        for (const int number : {1, 2}) {
            Unit &unit = bus.add(number);
            unit.motions.push_back({{'D', PointKind::Word, 0}, 1, 0, 9, 10});
            unit.motions.push_back({{'T', PointKind::Contact, 0}, 1, 0, 1, 10});
        }
        bus.advance(30);
        for (const int number : {1, 2}) {
            QCOMPARE(*bus.find(number)->station.memory().word('D', 0), quint16(3));
            QCOMPARE(*bus.find(number)->station.memory().contact('T', 0), true);
        }
    }

    // From the first request on, whenever that comes.
    void followsTheMemoryOfAReplay()
    {
        cnet::RecordedLine line;
        addExchange(line, 0, "[ENQ]01RSS0107%DW0100[EOT]", {{5, "[ACK]01RSS01020001[ETX]"}});
        addExchange(line, 100, "[ENQ]01RSS0107%DW0100[EOT]", {{5, "[ACK]01RSS01020002[ETX]"}});
        addExchange(line, 200, "[ENQ]02RSS0107%DW0100[EOT]", {{5, "[ACK]02RSS01020003[ETX]"}});
        addExchange(line, 300, "[ENQ]01RSS0107%DW9999[EOT]", {{5, "[ACK]01RSS01020009[ETX]"}});
        Bus bus;
        Memory &memory = bus.add(1, Model::K120s).station.memory();
        bus.beginReplay(0); // of nothing
        bus.setReplay(std::make_shared<Replay>(line));
        QVERIFY(bus.replay() != nullptr);
        QCOMPARE(*memory.word('D', 100), quint16(1));
        bus.advance(100000);
        QCOMPARE(*memory.word('D', 100), quint16(1));
        bus.beginReplay(200000);
        bus.beginReplay(200090);
        bus.advance(200104);
        QCOMPARE(*memory.word('D', 100), quint16(1));
        bus.advance(200105);
        QCOMPARE(*memory.word('D', 100), quint16(2));
        memory.setWord('D', 100, 7); // by a master
        bus.advance(300000);
        QCOMPARE(*memory.word('D', 100), quint16(7));
    }

    void stationsMisbehaveIndependently()
    {
        const QByteArray request = wire("[ENQ]01RSS0104%DW0[EOT]");
        const QByteArray answer = wire("[ACK]01RSS01020000[ETX]");
        const Fault noise{FaultKind::NoiseBefore, 32, 32};
        const auto noiseOf = [&](quint32 seed, int number) {
            Bus bus;
            Unit &unit = bus.add(number, Model::Full, seed);
            return unit.faults.disturb({noise}, request, answer).front().bytes;
        };
        QCOMPARE(noiseOf(7, 1), noiseOf(7, 1));
        QVERIFY(noiseOf(7, 1) != noiseOf(7, 2));
        QVERIFY(noiseOf(7, 1) != noiseOf(8, 1));
    }
};

QTEST_APPLESS_MAIN(TestBus)
#include "test_bus.moc"
