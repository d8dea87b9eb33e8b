#include "plc/setup/setup_text.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

namespace {

/** The message of a text that is wrong, naming the text; empty where it was taken. */
template <typename T>
QString messageOf(const Parsed<T> &parsed)
{
    const TextError *const error = std::get_if<TextError>(&parsed);
    return error ? error->message : QString();
}

} // namespace

static const PointKind word = PointKind::Word;
static const PointKind bit = PointKind::Bit;
static const PointKind contact = PointKind::Contact;

static const struct
{
    const char *what;
    char device;
    PointKind kind;
    int address;
} kPoints[] = {
    // clang-format off
    {"D_W:9999", 'D', word, 9999},
    {"C_W:0", 'C', word, 0},
    {"T_W:255", 'T', word, 255},
    {"K_W:1", 'K', word, 1},
    {"P_W:1", 'P', word, 1},
    {"F_W:1", 'F', word, 1},
    {"L_W:1", 'L', word, 1},
    {"M_W:003", 'M', word, 3},
    {"P_bit:0.0", 'P', bit, 0},
    {"K_bit:1.15", 'K', bit, 31},
    {"M_bit:3.5", 'M', bit, 53},
    {"M_bit:003.05", 'M', bit, 53},
    {"L_bit:1.1", 'L', bit, 17},
    {"F_bit:255.15", 'F', bit, 4095},
    {"D_bit:100.2", 'D', bit, 1602},
    {"TX:7", 'T', contact, 7},
    {"CX:255", 'C', contact, 255},
    // clang-format on
};

using Values = QList<int>;

static const struct
{
    const char *what;
    int station, address;
    Values values;
} kSettings[] = {
    {"M_W:3=0x1234", -1, 3, (Values() << 0x1234)},
    {"2/M_W:3=5", 2, 3, (Values() << 5)},
    {"31/D_W:0=-1", 31, 0, (Values() << 0xFFFF)},
    {"D_W:10=1,0XfF,-32768,65535", -1, 10, (Values() << 1 << 255 << 32768 << 65535)},
    {"M_bit:3.5=1", -1, 53, (Values() << 1)},
    {"0/TX:7=1,0", 0, 7, (Values() << 1 << 0)},
};

static const struct
{
    const char *what;
    int station, address, count, low, high, stepMs;
} kRamps[] = {
    {"D_W:100-119", -1, 100, 20, 0, 9999, 1000},
    {"D_W:100", -1, 100, 1, 0, 9999, 1000},
    {"2/D_W:100-100=5..6@250", 2, 100, 1, 5, 6, 250},
    {"D_W:1=0..65535", -1, 1, 1, 0, 65535, 1000},
    {"D_W:1-2@1ms", -1, 1, 2, 0, 9999, 1},
    {"M_bit:1.0-2.15", -1, 16, 32, 0, 1, 1000},
    {"TX:0-9=0..1@100ms", -1, 0, 10, 0, 1, 100},
};

static const Given<const char *> kAppliesInsideTheDeviceOnly[] = {
    {"K_W:32=1", "K_W:32 does not exist in station 1"},
    {"K_W:31=1,2", "K_W:32 does not exist in station 1"},
    {"K_W:31=1", ""},
    {"M_bit:191.15=1,1", "M_bit:192.0 does not exist in station 1"},
    {"TX:256=1", "TX:256 does not exist in station 1"},
    {"F_W:63=5", ""},
};

class TestSetupText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void points_data() { addRows(kPoints); }
    void points()
    {
        const auto &row = currentRow(kPoints);
        const Parsed<Point> parsed = parsePoint(latin(row.what));
        QCOMPARE(messageOf(parsed), QString());
        const Point point = std::get<Point>(parsed);
        QCOMPARE(point.device, row.device);
        QVERIFY(point.kind == row.kind);
        QCOMPARE(point.address, row.address);
    }

    void wrongPoints_data()
    {
        QTest::addColumn<QString>("expected");
        for (const char *text :
             {"", "D_W", "DW:1", "d_w:1", "Z_W:1", "T_bit:1.1", "PX:1", "D_X:1", ":1"}) {
            QTest::newRow(text) << latin("expected REGISTER:ADDRESS");
        }
        for (const char *text :
             {"D_W:", "D_W:-1", "D_W:1.5", "D_W:0x10", "D_W: 1", "TX:1.1", "D_W:99999999999"}) {
            QTest::newRow(text) << latin("expected a decimal address");
        }
        for (const char *text : {"M_bit:53", "M_bit:3.16", "M_bit:3.", "M_bit:.5", "M_bit:3.5.1",
                                 "M_bit:3.A", "M_bit:2000000000.1"}) {
            QTest::newRow(text) << latin("expected an address WORD.BIT");
        }
    }

    void wrongPoints()
    {
        QFETCH(QString, expected);
        const QString text = latin(QTest::currentDataTag());
        const QString message = messageOf(parsePoint(text));
        QVERIFY2(message.contains(expected), qPrintable(message));
        QVERIFY(message.contains(text));
    }

    void settings_data() { addRows(kSettings); }
    void settings()
    {
        const auto &row = currentRow(kSettings);
        const Parsed<Setting> parsed = parseSetting(latin(row.what));
        QCOMPARE(messageOf(parsed), QString());
        const Setting setting = std::get<Setting>(parsed);
        QCOMPARE(setting.station, row.station);
        QCOMPARE(setting.first.address, row.address);
        Values found;
        for (const quint16 value : setting.values) {
            found << value;
        }
        QCOMPARE(found, row.values);
    }

    void wrongSettings_data()
    {
        QTest::addColumn<QString>("expected");
        QTest::newRow("M_W:3") << latin("expected [STATION/]REGISTER:ADDRESS=VALUE");
        QTest::newRow("32/M_W:3=1") << latin("expected a station from 0 to 31");
        QTest::newRow("x/M_W:3=1") << latin("expected a station from 0 to 31");
        QTest::newRow("/M_W:3=1") << latin("expected a station from 0 to 31");
        QTest::newRow("MW:3=1") << latin("expected REGISTER:ADDRESS");
        for (const char *text :
             {"M_W:3=", "M_W:3=1,", "M_W:3=,1", "M_W:3=65536", "M_W:3=-32769", "M_W:3=0x10000",
              "M_W:3=FF", "M_W:3=0x", "M_W:3=1=2", "M_W:3=99999999999"}) {
            QTest::newRow(text) << latin("expected values from -32768 to 65535");
        }
        for (const char *text : {"M_bit:3.5=2", "TX:7=-1", "CX:7=on"}) {
            QTest::newRow(text) << latin("expected values 0 or 1");
        }
    }

    void wrongSettings()
    {
        QFETCH(QString, expected);
        const QString message = messageOf(parseSetting(latin(QTest::currentDataTag())));
        QVERIFY2(message.contains(expected), qPrintable(message));
    }

    void ramps_data() { addRows(kRamps); }
    void ramps()
    {
        const auto &row = currentRow(kRamps);
        const Parsed<RampSetting> parsed = parseRamp(latin(row.what));
        QCOMPARE(messageOf(parsed), QString());
        const RampSetting setting = std::get<RampSetting>(parsed);
        QCOMPARE(setting.station, row.station);
        QCOMPARE(setting.ramp.first.address, row.address);
        QCOMPARE(setting.ramp.count, row.count);
        QCOMPARE(setting.ramp.low, row.low);
        QCOMPARE(setting.ramp.high, row.high);
        QCOMPARE(setting.ramp.stepMs, row.stepMs);
    }

    void wrongRamps_data()
    {
        QTest::addColumn<QString>("expected");
        QTest::newRow("") << latin("expected REGISTER:ADDRESS");
        QTest::newRow("99/D_W:1") << latin("expected a station from 0 to 31");
        QTest::newRow("D_W:5-4") << latin("expected FIRST-LAST");
        QTest::newRow("D_W:5-") << latin("expected FIRST-LAST");
        QTest::newRow("D_W:5-6-7") << latin("expected FIRST-LAST");
        QTest::newRow("M_bit:5.1-6") << latin("expected FIRST-LAST");
        for (const char *text : {"D_W:5=1", "D_W:5=", "D_W:5=2..1", "D_W:5=0..65536", "D_W:5=-1..3",
                                 "D_W:5=1..2..3"}) {
            QTest::newRow(text) << latin("expected =LOW..HIGH from 0 to 65535");
        }
        QTest::newRow("M_bit:5.1=0..2") << latin("expected =0..1");
        for (const char *text : {"D_W:5@0", "D_W:5@", "D_W:5@1s", "D_W:5@3600001", "D_W:5@-1"}) {
            QTest::newRow(text) << latin("expected @MS");
        }
    }

    void wrongRamps()
    {
        QFETCH(QString, expected);
        const QString message = messageOf(parseRamp(latin(QTest::currentDataTag())));
        QVERIFY2(message.contains(expected), qPrintable(message));
    }

    void appliesToOneOrAll()
    {
        Bus bus;
        bus.add(1);
        bus.add(2);
        QVERIFY(!apply(std::get<Setting>(parseSetting(latin("D_W:5=7,8"))), bus));
        QVERIFY(!apply(std::get<Setting>(parseSetting(latin("2/D_W:6=9"))), bus));
        QVERIFY(!apply(std::get<RampSetting>(parseRamp(latin("1/D_W:10"))), bus));
        QVERIFY(!apply(std::get<FaultSetting>(parseFault(latin("silence"))), bus));
        const Memory &first = bus.find(1)->station.memory();
        const Memory &second = bus.find(2)->station.memory();
        QCOMPARE(*first.word('D', 5), quint16(7));
        QCOMPARE(*first.word('D', 6), quint16(8));
        QCOMPARE(*second.word('D', 5), quint16(7));
        QCOMPARE(*second.word('D', 6), quint16(9));
        QCOMPARE(bus.find(1)->ramps.size(), std::size_t(1));
        QCOMPARE(bus.find(2)->ramps.size(), std::size_t(0));
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
};

QTEST_APPLESS_MAIN(TestSetupText)
#include "test_setup_text.moc"
