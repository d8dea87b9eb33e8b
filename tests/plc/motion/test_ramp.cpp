#include "plc/motion/ramp.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const struct
{
    const char *what;
    int nowMs, first, second;
} kValues[] = {
    {"start", 0, 10, 11},
    {"just before a step", 99, 10, 11},
    {"one step", 100, 11, 12},
    {"second at the top", 150, 11, 12},
    {"second begins again", 200, 12, 10},
    {"first begins again", 300, 10, 11},
    {"long after", 2000000000, 10 + 20000000 % 3, 10 + 20000001 % 3},
    {"negative time is the start", -5, 10, 11},
};

class TestRamp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data() { addRows(kValues); }
    void values()
    {
        const auto &row = currentRow(kValues);
        Memory memory;
        Ramp ramp{{'D', PointKind::Word, 100}, 2, 10, 12, 100};
        ramp.advance(memory, row.nowMs);
        QCOMPARE(int(*memory.word('D', 100)), row.first);
        QCOMPARE(int(*memory.word('D', 101)), row.second);
        QCOMPARE(*memory.word('D', 102), quint16(0));
    }

    void bitsAlternate()
    {
        Memory memory;
        Ramp ramp{{'M', PointKind::Bit, 16}, 16, 0, 1, 1000};
        ramp.advance(memory, 0);
        QCOMPARE(*memory.word('M', 1), quint16(0xAAAA));
        ramp.advance(memory, 1000);
        QCOMPARE(*memory.word('M', 1), quint16(0x5555));
    }

    void writtenValueStaysUntilNextStep()
    {
        Memory memory;
        Ramp ramp{{'D', PointKind::Word, 0}, 1, 0, 9, 1000};
        ramp.advance(memory, 0);
        memory.setWord('D', 0, 777);
        ramp.advance(memory, 999);
        QCOMPARE(*memory.word('D', 0), quint16(777));
        ramp.advance(memory, 1000);
        QCOMPARE(*memory.word('D', 0), quint16(1));
    }

    void endsWithTheDevice()
    {
        Memory memory;
        Ramp ramp{{'D', PointKind::Word, 9999}, 0x7FFFFFFF, 1, 9, 1000};
        ramp.advance(memory, 0);
        QCOMPARE(*memory.word('D', 9999), quint16(1));
    }

    void senselessSpansAreHarmless()
    {
        Memory memory;
        Ramp ramp{{'D', PointKind::Word, 0}, 1, 9, 3, 0};
        ramp.advance(memory, 5);
        QCOMPARE(*memory.word('D', 0), quint16(9));
    }
};

QTEST_APPLESS_MAIN(TestRamp)
#include "test_ramp.moc"
