#include "plc/setup/apply.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const Given<const char *> kAppliesInsideTheDeviceOnly[] = {
    {"K_W:32=1", "K_W:32 does not exist in station 1"},
    {"K_W:31=1,2", "K_W:32 does not exist in station 1"},
    {"K_W:31=1", ""},
    {"M_bit:191.15=1,1", "M_bit:192.0 does not exist in station 1"},
    {"TX:256=1", "TX:256 does not exist in station 1"},
    {"F_W:63=5", ""},
};

class TestApply : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appliesToOneOrAll()
    {
        Bus bus;
        bus.add(1);
        bus.add(2);
        QVERIFY(!apply(std::get<Setting>(parseSetting(latin("D_W:5=7,8"))), bus));
        QVERIFY(!apply(std::get<Setting>(parseSetting(latin("2/D_W:6=9"))), bus));
        QVERIFY(
            !apply(std::get<MotionSetting>(parseMotion(MotionKind::Ramp, latin("1/D_W:10"))), bus));
        QVERIFY(!apply(std::get<FaultSetting>(parseFault(latin("silence"))), bus));
        const Memory &first = bus.find(1)->station.memory();
        const Memory &second = bus.find(2)->station.memory();
        QCOMPARE(*first.word('D', 5), quint16(7));
        QCOMPARE(*first.word('D', 6), quint16(8));
        QCOMPARE(*second.word('D', 5), quint16(7));
        QCOMPARE(*second.word('D', 6), quint16(9));
        QCOMPARE(bus.find(1)->motions.size(), std::size_t(1));
        QCOMPARE(bus.find(2)->motions.size(), std::size_t(0));
        QCOMPARE(bus.find(1)->faults.draw().size(), std::size_t(1));
        QCOMPARE(bus.find(2)->faults.draw().size(), std::size_t(1));

        const auto error = apply(std::get<Setting>(parseSetting(latin("3/D_W:5=7"))), bus);
        QVERIFY(error && error->message.contains(latin("no station 3")));
    }

    void appliesInsideTheDeviceOnly_data() { addRows(kAppliesInsideTheDeviceOnly); }
    void appliesInsideTheDeviceOnly()
    {
        const auto &row = currentRow(kAppliesInsideTheDeviceOnly);
        Bus bus;
        bus.add(1, Model::K120s);
        const auto setting = std::get<Setting>(parseSetting(latin(row.what)));
        const auto error = apply(setting, bus);
        QCOMPARE(error ? error->message : QString(), latin(row.given));
        // Nothing is set by halves.
        QCOMPARE(bus.find(1)->station.memory().value(setting.first).value_or(0) == 0,
                 error.has_value());
    }

    void oneMotionTakesTheOthersPlace()
    {
        Bus bus;
        Unit &unit = bus.add(1, Model::Full, 7);
        const auto move = [&bus](MotionKind kind, const char *text) {
            return apply(std::get<MotionSetting>(parseMotion(kind, latin(text))), bus).has_value();
        };
        QVERIFY(!move(MotionKind::Ramp, "D_W:10-19"));
        QVERIFY(!move(MotionKind::Ramp, "M_W:10-19"));
        QVERIFY(!move(MotionKind::Walk, "D_W:10-19"));
        QVERIFY(!move(MotionKind::Sine, "D_W:10-18"));
        QCOMPARE(unit.motions.size(), std::size_t(3));
        QVERIFY(unit.motions[1].kind == MotionKind::Walk);
        QCOMPARE(unit.motions[1].seed, unit.seed);
    }

    void nothingGrowsForEver()
    {
        Bus bus;
        Unit &unit = bus.add(1);
        const auto silence = std::get<FaultSetting>(parseFault(latin("silence*1")));
        for (int i = 0; i < kMostPerStation; ++i) {
            const Point point{'D', PointKind::Word, i};
            QVERIFY(!apply(MotionSetting{-1, {point, 1}}, bus));
            QVERIFY(!apply(silence, bus));
        }
        const MotionSetting more{-1, {{'D', PointKind::Word, 5000}, 1}};
        QVERIFY(apply(more, bus)->message.contains(latin("1000 motions already")));
        QVERIFY(apply(silence, bus)->message.contains(latin("1000 faults already")));
        // What takes the place of another one, or of faults that are over, is not one more.
        QVERIFY(!apply(MotionSetting{-1, {{'D', PointKind::Word, 5}, 1}}, bus));
        unit.faults.draw();
        QVERIFY(!apply(silence, bus));
        unit.motions.clear();
        for (int i = 0; i < kMostMoving / 9000; ++i) {
            QVERIFY(!apply(MotionSetting{-1, {{'D', PointKind::Word, i}, 9000}}, bus));
        }
        const auto error = apply(MotionSetting{-1, {{'D', PointKind::Word, 0}, 9999}}, bus);
        QVERIFY(error && error->message.contains(latin("more than 65536 moving values")));
    }
};

QTEST_APPLESS_MAIN(TestApply)
#include "test_apply.moc"
