#include "plc/scenario/press.h"
#include "plc/scenario/scenarios.h"
#include "plc/scenario/words.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;
using namespace plc::press_map;

namespace {

const int kMinute = 60000;

/** A press that was switched on. */
struct Line
{
    explicit Line(quint32 seed = 1)
        : press(seed)
    {
        press.advance(memory, 0);
    }

    void runFor(qint64 ms) { press.advance(memory, nowMs += ms); }
    int word(int address) const { return *memory.word('D', address); }
    int state() const { return word(kState); }

    Press press;
    Memory memory;
    qint64 nowMs = 0;

    Q_DISABLE_COPY(Line)
};

std::vector<quint16> wordsOf(const Memory &memory)
{
    std::vector<quint16> words;
    for (int i = 0; i < 256; ++i) {
        for (const char device : {'D', 'M', 'T', 'C', 'P'}) {
            words.push_back(memory.word(device, i).value_or(0));
        }
    }
    return words;
}

} // namespace

static const struct
{
    const char *what;
    int alarm;
    PressState state;
} kStops[] = {
    {"door", kDoorAlarm, PressState::Fault},
    {"heat", kHeatAlarm, PressState::Fault},
};

class TestPress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsFromTheStart()
    {
        Line line;
        line.runFor(kMinute);
        QCOMPARE(line.state(), int(PressState::Running));
        QCOMPARE(*line.memory.bit('M', 0, kRunning), true);
        QCOMPARE(line.word(kSpeed), 300);
        // Thirty strokes a minute, less what the ram dwells and what it takes to speed up.
        const int strokes = int(takeDouble(line.memory, kStrokes));
        QVERIFY2(strokes > 20 && strokes < 30, qPrintable(QString::number(strokes)));
        QCOMPARE(takeDouble(line.memory, kGood) + takeDouble(line.memory, kBad), quint32(strokes));
        QCOMPARE(int(*line.memory.word('C', kJobCounter)), line.word(kJobDone));
        QCOMPARE(takeDouble(line.memory, kJobTotal), toBcd(takeDouble(line.memory, kGood)));
    }

    void theSameSeedShowsTheSame()
    {
        Line often(5);
        Line seldom(5);
        Line other(6);
        for (int i = 0; i < 100; ++i) {
            often.runFor(1770);
        }
        seldom.runFor(177000);
        other.runFor(177000);
        QVERIFY(wordsOf(often.memory) == wordsOf(seldom.memory));
        QVERIFY(wordsOf(often.memory) != wordsOf(other.memory));
    }

    void staysWithinItsBounds()
    {
        Line line;
        for (int i = 0; i < 20000; ++i) {
            line.runFor(100);
            const int position = static_cast<qint16>(line.word(kPosition));
            QVERIFY(position >= -50 && position <= 2500);
            QVERIFY(line.word(kLoad) >= 8 && line.word(kLoad) <= 82);
            QVERIFY(line.word(kTemperature) > 600 && line.word(kTemperature) < 1050);
            QVERIFY(line.state() <= int(PressState::Fault) && line.word(kAlarms) < 16);
        }
        // In more than half an hour there were faults, and it got over them.
        QVERIFY(takeDouble(line.memory, kGood) > 400 && takeDouble(line.memory, kBad) > 0);
    }

    void aFaultIsAcknowledged()
    {
        Line line;
        while ((line.word(kAlarms) & 1 << kPressureAlarm) == 0 && line.nowMs < 60 * kMinute) {
            line.runFor(Press::kStepMs);
        }
        QVERIFY(line.nowMs >= kMinute && line.nowMs < 60 * kMinute);
        QCOMPARE(line.state(), int(PressState::Fault));
        line.runFor(9000);
        QCOMPARE(line.state(), int(PressState::Running));
    }

    void buttons()
    {
        Line line;
        line.runFor(5000);
        line.memory.setBit('M', 0, kStop, true);
        line.runFor(5000);
        QCOMPARE(line.state(), int(PressState::Stopped));
        QCOMPARE(line.word(kSpeed), 0);
        QCOMPARE(*line.memory.bit('M', 0, kStop), false);
        line.memory.setBit('M', 0, kStart, true);
        line.runFor(5000);
        QCOMPARE(line.state(), int(PressState::Running));
        QCOMPARE(line.word(kSpeed), 300);
    }

    void alarmsStopIt_data() { addRows(kStops); }
    void alarmsStopIt()
    {
        const auto &row = currentRow(kStops);
        Line line;
        line.runFor(5000);
        const int before = line.word(kTemperatureSet);
        line.memory.setBit('P', 0, kDoorClosed, row.alarm != kDoorAlarm);
        line.memory.setWord('D', kTemperatureSet, row.alarm == kHeatAlarm ? 100 : 850);
        line.runFor(1000);
        QCOMPARE(line.word(kAlarms), 1 << row.alarm);
        QCOMPARE(line.state(), int(row.state));
        // The reason goes away, but only the button lets it go on.
        line.memory.setBit('P', 0, kDoorClosed, true);
        line.memory.setWord('D', kTemperatureSet, static_cast<quint16>(before));
        line.runFor(1000);
        QCOMPARE(line.word(kAlarms), 0);
        QCOMPARE(line.state(), int(row.state));
        line.memory.setBit('M', 0, kReset, true);
        line.runFor(1000);
        QCOMPARE(line.state(), int(PressState::Stopped));
    }

    void followsItsRecipe()
    {
        Line line;
        line.runFor(5000);
        line.memory.setWord('D', kRecipe + kRecipeSpeed, 480);
        line.memory.setWord('D', kRecipe + kRecipePressure, 90);
        line.runFor(5000);
        QCOMPARE(line.word(kSpeedSet), 480);
        QCOMPARE(line.word(kPressureSet), 90);
        QCOMPARE(line.word(kSpeed), 480);
        // A set point that is written by itself stays until the next recipe.
        line.memory.setWord('D', kSpeedSet, 240);
        line.runFor(5000);
        QCOMPARE(line.word(kSpeed), 240);
    }

    void jobAfterJob()
    {
        Line line;
        line.memory.setWord('D', kJobSize, 0x0003);
        const int name = line.word(kJobName);
        while (!*line.memory.contact('C', kJobCounter) && line.nowMs < kMinute) {
            line.runFor(Press::kStepMs);
        }
        QCOMPARE(takeDouble(line.memory, kGood), quint32(3));
        QCOMPARE(line.word(kJobDone), 0);
        QVERIFY(line.word(kJobName) != name);
    }

    void keepsWhatIsThere()
    {
        Memory memory;
        putDouble(memory, kStrokes, 70000);
        memory.setWord('D', kJobSize, 0x0500);
        memory.setWord('D', kRecipe + kRecipeSpeed, 200);
        Press press(1);
        press.advance(memory, 0);
        QCOMPARE(*memory.word('D', kJobSize), quint16(0x0500));
        QCOMPARE(*memory.word('D', kSpeedSet), quint16(200));
        press.advance(memory, kMinute);
        QVERIFY(takeDouble(memory, kStrokes) > 70000);
    }

    void scenariosHaveNames()
    {
        QVERIFY(makeScenario(latin("press"), 1));
        QVERIFY(!makeScenario(latin("list"), 1) && !makeScenario(QString(), 1));
        QCOMPARE(scenarioHelp().filter(latin("press ")).size(), 1);
    }
};

QTEST_APPLESS_MAIN(TestPress)
#include "test_press.moc"
