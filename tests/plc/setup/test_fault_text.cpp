#include "plc/faults/fault_kinds.h"
#include "plc/setup/fault_text.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const Case<int, int> kUsualValues[] = {
    {"silence", 0, 0},
    {"delay", 500, 500},
    {"noise-before", 1, 8},
    {"noise-after", 1, 8},
    {"split", 1, 1},
    {"wrong-check", 0, 0},
    {"wrong-station", -1, -1},
    {"refuse", 0x1132, 0x1132},
    {"truncate", -1, -1},
    {"oversize", 300, 300},
    {"echo", 0, 0},
    {"repeat", 1, 1},
};

static const struct
{
    const char *what;
    int station;
    FaultKind kind;
    int low, high, times, percent;
} kFaults[] = {
    {"1:silence*3", 1, FaultKind::Silence, 0, 0, 3, 100},
    {"2:delay=50..200", 2, FaultKind::Delay, 50, 200, -1, 100},
    {"delay=50", -1, FaultKind::Delay, 50, 50, -1, 100},
    {"wrong-check@10%", -1, FaultKind::WrongCheck, 0, 0, -1, 10},
    {"31:refuse=12ab*2@50%", 31, FaultKind::Refuse, 0x12AB, 0x12AB, 2, 50},
    {"0:wrong-station=31", 0, FaultKind::WrongStation, 31, 31, -1, 100},
    {"truncate=0..5", -1, FaultKind::Truncate, 0, 5, -1, 100},
    {"repeat=5", -1, FaultKind::Repeat, 5, 5, -1, 100},
    {"repeat=1..3*2@7%", -1, FaultKind::Repeat, 1, 3, 2, 7},
    {"echo@0%", -1, FaultKind::Echo, 0, 0, -1, 0},
};

static const Given<const char *> kTexts[] = {
    // as it is written again
    {"1:silence*3", "1:silence*3"},
    {"delay=50..50@100%", "delay=50"},
    {"31:refuse=12AB*2@50%", "31:refuse=12ab*2@50%"},
    {"noise-before", "noise-before=1..8"},
    {"truncate", "truncate"},
};

static const char *const kTimes =
    "expected *TIMES behind the kind and its value, with TIMES from 1 to 1000000000";
static const char *const kPercent = "expected @PERCENT% at the end, with PERCENT from 0 to 100";
static const char *const kDelay =
    "expected delay=MS[..MS] with values from 0 to 600000, the lower one first";

static const Given<const char *> kWrongFaults[] = {
    // what is in the message
    {"", "expected one of silence, delay"},
    {"silent", "expected one of silence, delay"},
    {"32:silence", "expected a station from 0 to 31"},
    {"a:silence", "expected a station from 0 to 31"},
    {"silence*0", kTimes},
    {"silence*", kTimes},
    {"silence*-1", kTimes},
    {"silence*1000000001", kTimes},
    {"silence@10", kPercent},
    {"silence@101%", kPercent},
    {"silence@-1%", kPercent},
    {"silence@10%*3", kPercent},
    {"silence@%", kPercent},
    {"silence=3", "silence takes no value"},
    {"echo=", "echo takes no value"},
    {"delay=", kDelay},
    {"delay=5..", kDelay},
    {"delay=5..4", kDelay},
    {"delay=600001", kDelay},
    {"refuse=1..2", "expected refuse=CODE with values from 0 to FFFF"},
    {"refuse=10000", "expected refuse=CODE with values from 0 to FFFF"},
    {"wrong-station=32", "expected wrong-station=STATION with values from 0 to 31"},
    {"oversize=4097", "expected oversize=BYTES[..BYTES] with values from 0 to 4096"},
    {"repeat=0", "expected repeat=COPIES[..COPIES] with values from 1 to 5"},
    {"repeat=2..6", "expected repeat=COPIES[..COPIES] with values from 1 to 5"},
};

class TestFaultText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableFollowsTheKinds()
    {
        QCOMPARE(int(FaultKind::Repeat) + 1, kFaultKinds);
        for (int i = 0; i < kFaultKinds; ++i) {
            const FaultKindText &row = faultKindTexts()[static_cast<std::size_t>(i)];
            QCOMPARE(int(row.kind), i);
            QCOMPARE(faultName(row.kind), latin(row.name));
            QVERIFY(faultHelp().contains(latin(row.name)));
            QVERIFY(std::holds_alternative<FaultSetting>(parseFault(faultName(row.kind))));
        }
    }

    void usualValues_data() { addRows(kUsualValues); }
    void usualValues()
    {
        const auto &row = currentRow(kUsualValues);
        const auto parsed = parseFault(latin(row.what));
        const FaultSetting setting = std::get<FaultSetting>(parsed);
        QCOMPARE(setting.fault.low, row.given);
        QCOMPARE(setting.fault.high, row.expected);
        QCOMPARE(setting.station, -1);
        QCOMPARE(setting.fault.times, -1);
        QCOMPARE(setting.fault.percent, 100);
    }

    void helpTellsLimitsAndDefaults()
    {
        const QStringList lines = faultHelp().split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            QVERIFY2(line.size() <= 100, qPrintable(line));
        }
        QCOMPARE(lines.filter(QLatin1String("(0 to 600000; default 500)")).size(), 1); // delay
        QCOMPARE(lines.filter(QLatin1String("(0 to FFFF; default 1132)")).size(), 1);  // refuse
        QCOMPARE(lines.filter(QLatin1String("(1 to 5; default 1)")).size(), 1);        // repeat
        for (const FaultKindText &kind : faultKindTexts()) {
            const Fault fault = usualFault(kind.kind);
            const int base = kind.kind == FaultKind::Refuse ? 16 : 10;
            QString usual = QString::number(fault.low, base);
            if (fault.low != fault.high) {
                usual += QLatin1String("..") + QString::number(fault.high, base);
            }
            if (*kind.value != '\0' && fault.low >= 0) {
                QCOMPARE(QLatin1String(kind.usual), usual);
            }
        }
    }

    void faults_data() { addRows(kFaults); }
    void faults()
    {
        const auto &row = currentRow(kFaults);
        const auto parsed = parseFault(latin(row.what));
        QVERIFY(std::holds_alternative<FaultSetting>(parsed));
        const FaultSetting setting = std::get<FaultSetting>(parsed);
        QCOMPARE(setting.station, row.station);
        QVERIFY(setting.fault.kind == row.kind);
        QCOMPARE(setting.fault.low, row.low);
        QCOMPARE(setting.fault.high, row.high);
        QCOMPARE(setting.fault.times, row.times);
        QCOMPARE(setting.fault.percent, row.percent);
        const auto again = parseFault(faultText(setting));
        QVERIFY(std::holds_alternative<FaultSetting>(again));
        QCOMPARE(faultText(std::get<FaultSetting>(again)), faultText(setting));
    }

    void writesFaults_data() { addRows(kTexts); }
    void writesFaults()
    {
        const auto &row = currentRow(kTexts);
        const auto parsed = parseFault(latin(row.what));
        QCOMPARE(faultText(std::get<FaultSetting>(parsed)), latin(row.given));
    }

    void wrongFaults_data() { addRows(kWrongFaults); }
    void wrongFaults()
    {
        const auto &row = currentRow(kWrongFaults);
        const QString text = latin(row.what);
        const auto parsed = parseFault(text);
        QVERIFY(std::holds_alternative<TextError>(parsed));
        const QString message = std::get<TextError>(parsed).message;
        QVERIFY2(message.contains(latin(row.given)), qPrintable(message));
        QVERIFY(message.contains(QLatin1Char('"') + text + QLatin1Char('"')));
    }
};

QTEST_APPLESS_MAIN(TestFaultText)
#include "test_fault_text.moc"
