#include "plc/setup/motion_text.h"
#include "plc/support/message_of.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const MotionKind ramp = MotionKind::Ramp;
static const MotionKind sine = MotionKind::Sine;
static const MotionKind square = MotionKind::Square;
static const MotionKind walk = MotionKind::Walk;
static const MotionKind counter = MotionKind::Counter;

static const struct
{
    const char *what;
    MotionKind kind;
    int station, address, count;
    qint64 low, high;
    int increment, stepMs;
    const char *text; ///< as it is written again
} kMotions[] = {
    // clang-format off
    {"D_W:100-119", ramp, -1, 100, 20, 0, 9999, 1, 1000, "ramp D_W:100-119=0..9999@1000"},
    {"D_W:100*20", ramp, -1, 100, 20, 0, 9999, 1, 1000, "ramp D_W:100-119=0..9999@1000"},
    {"2/D_W:100-100=5..6@250", ramp, 2, 100, 1, 5, 6, 1, 250, "ramp 2/D_W:100=5..6@250"},
    {"D_W:1=0..0xFFFF", ramp, -1, 1, 1, 0, 65535, 1, 1000, "ramp D_W:1=0..65535@1000"},
    {"D_W:1=-5..-1", ramp, -1, 1, 1, -5, -1, 1, 1000, "ramp D_W:1=-5..-1@1000"},
    {"D_W:1-2@1ms", square, -1, 1, 2, 0, 9999, 1, 1, "square D_W:1-2=0..9999@1"},
    {"M_bit:1.0-2.15", ramp, -1, 16, 32, 0, 1, 1, 1000, "ramp M_bit:1.0-2.15=0..1@1000"},
    {"TX:0-9=0..1@100ms", walk, -1, 0, 10, 0, 1, 1, 100, "walk TX:0-9=0..1@100"},
    {"D_W:5", sine, -1, 5, 1, 0, 9999, 1, 60000, "sine D_W:5=0..9999@60000"},
    {"D_W:5", counter, -1, 5, 2, 0, 4294967295LL, 1, 1000, "counter D_W:5-6=0..4294967295+1@1000"},
    {"1/D_W:5*4=7..9+2@10", counter, 1, 5, 4, 7, 9, 2, 10, "counter 1/D_W:5-8=7..9+2@10"},
    // clang-format on
};

static const struct
{
    const char *what;
    MotionKind kind;
    const char *message;
} kWrongMotions[] = {
    {"", ramp, "expected REGISTER:ADDRESS"},
    {"99/D_W:1", sine, "expected a station from 0 to 31"},
    {"D_W:5-4", walk, "expected FIRST-LAST"},
    {"D_W:5=1", ramp, "expected =LOW..HIGH from -32768 to 65535"},
    {"D_W:5=", sine, "expected =LOW..HIGH from -32768 to 65535"},
    {"D_W:5=2..1", ramp, "expected =LOW..HIGH from -32768 to 65535"},
    {"D_W:5=0..65536", walk, "expected =LOW..HIGH from -32768 to 65535"},
    {"D_W:5=-32769..3", ramp, "expected =LOW..HIGH from -32768 to 65535"},
    {"D_W:5=1..2..3", ramp, "expected =LOW..HIGH from -32768 to 65535"},
    {"M_bit:5.1=0..2", square, "expected =0..1"},
    {"D_W:5@0", ramp, "expected @MS"},
    {"D_W:5@", ramp, "expected @MS"},
    {"D_W:5@1s", sine, "expected @MS"},
    {"D_W:5@3600001", ramp, "expected @MS"},
    {"D_W:5@-1", ramp, "expected @MS"},
    {"D_W:5+1", ramp, "expected a decimal address"},
    {"D_W:5*3", counter, "a counter takes pairs of words"},
    {"M_bit:5.0*2", counter, "a counter takes pairs of words"},
    {"D_W:5=0..4294967296", counter, "expected =LOW..HIGH from 0 to 4294967295"},
    {"D_W:5=-1..2", counter, "expected =LOW..HIGH from 0 to 4294967295"},
    {"D_W:5+0", counter, "expected +STEP from 1 to 1000000"},
    {"D_W:5+1000001", counter, "expected +STEP from 1 to 1000000"},
    {"D_W:5+", counter, "expected +STEP from 1 to 1000000"},
};

class TestMotionText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableFollowsTheKinds()
    {
        QCOMPARE(int(counter) + 1, kMotionKinds);
        for (int i = 0; i < kMotionKinds; ++i) {
            QCOMPARE(int(motionKindTexts()[static_cast<std::size_t>(i)].kind), i);
        }
    }

    void motions_data() { addRows(kMotions); }
    void motions()
    {
        const auto &row = currentRow(kMotions);
        const Parsed<MotionSetting> parsed = parseMotion(row.kind, latin(row.what));
        QCOMPARE(messageOf(parsed), QString());
        const MotionSetting setting = std::get<MotionSetting>(parsed);
        QCOMPARE(setting.station, row.station);
        QVERIFY(setting.motion.kind == row.kind);
        QCOMPARE(setting.motion.first.address, row.address);
        QCOMPARE(setting.motion.count, row.count);
        QCOMPARE(setting.motion.low, row.low);
        QCOMPARE(setting.motion.high, row.high);
        QCOMPARE(setting.motion.increment, row.increment);
        QCOMPARE(setting.motion.stepMs, row.stepMs);
        QCOMPARE(motionText(setting), latin(row.text));
    }

    void wrongMotions_data() { addRows(kWrongMotions); }
    void wrongMotions()
    {
        const auto &row = currentRow(kWrongMotions);
        const QString message = messageOf(parseMotion(row.kind, latin(row.what)));
        QVERIFY2(message.contains(latin(row.message)), qPrintable(message));
    }
};

QTEST_APPLESS_MAIN(TestMotionText)
#include "test_motion_text.moc"
