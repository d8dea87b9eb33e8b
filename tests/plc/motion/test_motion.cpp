#include "plc/motion/motion.h"
#include "support/rows.h"

#include <QtTest>

#include <cmath>

using namespace plc;

namespace {

Motion motionOf(MotionKind kind, int count, qint64 low, qint64 high, int stepMs)
{
    return {{'D', PointKind::Word, 100}, count, low, high, stepMs, kind};
}

} // namespace

static const MotionKind ramp = MotionKind::Ramp;
static const MotionKind sine = MotionKind::Sine;
static const MotionKind square = MotionKind::Square;

static const struct
{
    const char *what;
    MotionKind kind;
    qint64 low, high;
    qint64 nowMs;
    int first, second;
} kValues[] = {
    {"ramp: start", ramp, 10, 12, 0, 10, 11},
    {"ramp: just before a step", ramp, 10, 12, 99, 10, 11},
    {"ramp: one step", ramp, 10, 12, 100, 11, 12},
    {"ramp: second at the top", ramp, 10, 12, 150, 11, 12},
    {"ramp: second begins again", ramp, 10, 12, 200, 12, 10},
    {"ramp: first begins again", ramp, 10, 12, 300, 10, 11},
    {"ramp: long after", ramp, 10, 12, 2000000000, 10 + 20000000 % 3, 10 + 20000001 % 3},
    {"ramp: negative time is the start", ramp, 10, 12, -5, 10, 11},
    {"ramp: below zero", ramp, -2, 0, 100, 0xFFFF, 0},
    {"sine: start, and half a turn ahead", sine, 0, 1000, 0, 0, 1000},
    {"sine: a quarter", sine, 0, 1000, 25, 500, 500},
    {"sine: half", sine, 0, 1000, 50, 1000, 0},
    {"sine: a turn", sine, 0, 1000, 100, 0, 1000},
    {"sine: below zero", sine, -1000, 1000, 0, 0x10000 - 1000, 1000},
    {"square: start", square, 3, 9, 99, 3, 9},
    {"square: other half", square, 3, 9, 100, 9, 3},
    {"square: again", square, 3, 9, 200, 3, 9},
};

static const struct
{
    const char *what;
    qint64 low, high;
    int increment;
    qint64 nowMs;
    quint32 value;
} kCounters[] = {
    {"start", 65530, 4294967295LL, 1, 0, 65530},
    {"into the upper word", 65530, 4294967295LL, 1, 600, 65536},
    {"by more than one", 0, 4294967295LL, 70000, 300, 210000},
    {"at its end", 4294967290LL, 4294967295LL, 1, 500, 4294967295U},
    {"over its end", 4294967290LL, 4294967295LL, 1, 600, 4294967290U},
    {"by more than its span", 10, 12, 1000, 100, 11},
    {"long after", 0, 4294967295LL, 65536, 400000000000000LL, 0x40000000},
};

class TestMotion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data() { addRows(kValues); }
    void values()
    {
        const auto &row = currentRow(kValues);
        Memory memory;
        Motion motion = motionOf(row.kind, 2, row.low, row.high, 100);
        motion.advance(memory, row.nowMs);
        QCOMPARE(int(*memory.word('D', 100)), row.first);
        QCOMPARE(int(*memory.word('D', 101)), row.second);
        QCOMPARE(*memory.word('D', 102), quint16(0));
    }

    void counters_data() { addRows(kCounters); }
    void counters()
    {
        const auto &row = currentRow(kCounters);
        Memory memory;
        Motion motion = motionOf(MotionKind::Counter, 4, row.low, row.high, 100);
        motion.increment = row.increment;
        motion.advance(memory, row.nowMs);
        for (const int address : {100, 102}) {
            const quint32 low = *memory.word('D', address);
            const quint32 high = *memory.word('D', address + 1);
            QCOMPARE(high << 16U | low, row.value);
        }
    }

    void walkStaysNear()
    {
        for (quint64 series = 0; series < 20; ++series) {
            double least = 1;
            double most = 0;
            double before = walkAt(series, 0);
            for (qint64 step = 1; step < 5000; ++step) {
                const double now = walkAt(series, step);
                QVERIFY(now >= 0 && now <= 1 && std::abs(now - before) <= 1.0 / 16);
                least = qMin(least, now);
                most = qMax(most, now);
                before = now;
            }
            QVERIFY2(least < 0.2 && most > 0.8, qPrintable(QString::number(series)));
        }
    }

    void walkFollowsItsSeed()
    {
        const auto valuesOf = [](quint32 seed, qint64 stopMs) {
            Memory memory;
            Motion motion = motionOf(MotionKind::Walk, 2, 0, 60000, 100);
            motion.seed = seed;
            for (qint64 nowMs = 0; nowMs <= 10000; nowMs += stopMs) {
                motion.advance(memory, nowMs);
            }
            return QList<int>() << *memory.word('D', 100) << *memory.word('D', 101);
        };
        // However often somebody looks.
        QCOMPARE(valuesOf(1, 10000), valuesOf(1, 50));
        QVERIFY(valuesOf(1, 10000) != valuesOf(2, 10000));
        QVERIFY(valuesOf(1, 10000).at(0) != valuesOf(1, 10000).at(1));
    }

    void bitsAlternate()
    {
        Memory memory;
        Motion motion{{'M', PointKind::Bit, 16}, 16, 0, 1, 1000};
        motion.advance(memory, 0);
        QCOMPARE(*memory.word('M', 1), quint16(0xAAAA));
        motion.advance(memory, 1000);
        QCOMPARE(*memory.word('M', 1), quint16(0x5555));
    }

    void writtenValueStaysUntilNextStep()
    {
        Memory memory;
        Motion motion{{'D', PointKind::Word, 0}, 1, 0, 9, 1000};
        motion.advance(memory, 0);
        memory.setWord('D', 0, 777);
        motion.advance(memory, 999);
        QCOMPARE(*memory.word('D', 0), quint16(777));
        motion.advance(memory, 1000);
        QCOMPARE(*memory.word('D', 0), quint16(1));
    }

    void beginsWhenItStarts()
    {
        Memory memory;
        Motion motion = motionOf(MotionKind::Ramp, 1, 5, 9, 100);
        motion.startMs = 1230;
        motion.advance(memory, 1329);
        QCOMPARE(*memory.word('D', 100), quint16(5));
        motion.advance(memory, 1330);
        QCOMPARE(*memory.word('D', 100), quint16(6));
    }

    void endsWithTheDevice()
    {
        Memory memory;
        Motion motion{{'D', PointKind::Word, 9999}, 0x7FFFFFFF, 1, 9, 1000};
        motion.advance(memory, 0);
        QCOMPARE(*memory.word('D', 9999), quint16(1));
    }

    void senselessSpansAreHarmless()
    {
        for (const MotionKind kind : {ramp, sine, square, MotionKind::Walk, MotionKind::Counter}) {
            Memory memory;
            Motion motion = motionOf(kind, 1, 9, 3, 0);
            motion.advance(memory, 6);
            const int value = *memory.word('D', 100);
            QVERIFY2(value == 9 || (kind == square && value == 3),
                     qPrintable(QString::number(int(kind))));
        }
    }
};

QTEST_APPLESS_MAIN(TestMotion)
#include "test_motion.moc"
