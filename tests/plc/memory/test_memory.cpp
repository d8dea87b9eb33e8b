#include "plc/memory/memory.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const struct
{
    const char *what;
    char device;
    int full, k120s, contacts;
} kSizes[] = {
    // clang-format off
    {"P", 'P', 256, 64, 0},
    {"M", 'M', 256, 192, 0},
    {"K", 'K', 256, 32, 0},
    {"L", 'L', 256, 64, 0},
    {"F", 'F', 256, 64, 0},
    {"T", 'T', 256, 256, 256},
    {"C", 'C', 256, 256, 256},
    {"D", 'D', 10000, 5000, 0},
    {"no device S", 'S', 0, 0, 0},
    {"lower case is none", 'd', 0, 0, 0},
    // clang-format on
};

static const struct
{
    const char *what;
    char device;
    PointKind kind;
    int address;
} kOutside[] = {
    {"negative word", 'D', PointKind::Word, -1},
    {"negative bit", 'M', PointKind::Bit, -1},
    {"bit beyond", 'M', PointKind::Bit, 256 * 16},
    {"negative contact", 'T', PointKind::Contact, -1},
    {"contact beyond", 'T', PointKind::Contact, 256},
    {"contact of a relay", 'M', PointKind::Contact, 0},
    {"device unknown", 'Z', PointKind::Word, 0},
    {"far beyond", 'D', PointKind::Word, 0x7FFFFFFF},
};

static const struct
{
    const char *what;
    char device;
    PointKind kind;
    int address, written, read;
} kPointsReachTheSame[] = {
    {"word", 'D', PointKind::Word, 100, 0xBEEF, 0xBEEF},
    {"bit 3.5", 'M', PointKind::Bit, 53, 1, 1},
    {"bit: all but 0 is 1", 'M', PointKind::Bit, 53, 0x100, 1},
    {"contact", 'C', PointKind::Contact, 255, 2, 1},
};

class TestMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizes_data() { addRows(kSizes); }
    void sizes()
    {
        const auto &row = currentRow(kSizes);
        for (const Model model : {Model::Full, Model::K120s}) {
            Memory memory(model);
            const int words = model == Model::Full ? row.full : row.k120s;
            QCOMPARE(memory.wordCount(row.device), words);
            QCOMPARE(memory.contactCount(row.device), row.contacts);
            QCOMPARE(memory.word(row.device, words - 1).has_value(), words > 0);
            QCOMPARE(memory.setWord(row.device, words - 1, 1), words > 0);
            QCOMPARE(memory.word(row.device, words).has_value(), false);
            QCOMPARE(memory.setWord(row.device, words, 1), false);
        }
    }

    void wordsKeepTheirValue()
    {
        Memory memory;
        QCOMPARE(*memory.word('D', 9999), quint16(0));
        QVERIFY(memory.setWord('D', 9999, 0xBEEF));
        QVERIFY(memory.setWord('M', 9, 0x1234));
        QCOMPARE(*memory.word('D', 9999), quint16(0xBEEF));
        QCOMPARE(*memory.word('M', 9), quint16(0x1234));
        QCOMPARE(*memory.word('K', 9), quint16(0));
    }

    void outside_data() { addRows(kOutside); }
    void outside()
    {
        const auto &row = currentRow(kOutside);
        Memory memory;
        const Point point{row.device, row.kind, row.address};
        QCOMPARE(memory.value(point).has_value(), false);
        QCOMPARE(memory.setValue(point, 1), false);
    }

    void bitsArePartsOfWords()
    {
        Memory memory;
        QVERIFY(memory.setWord('M', 3, 0x8001));
        QCOMPARE(*memory.bit('M', 3, 0), true);
        QCOMPARE(*memory.bit('M', 3, 1), false);
        QCOMPARE(*memory.bit('M', 3, 15), true);
        QVERIFY(memory.setBit('M', 3, 5, true));
        QVERIFY(memory.setBit('M', 3, 15, false));
        QCOMPARE(*memory.word('M', 3), quint16(0x0021));
        QCOMPARE(memory.bit('M', 3, 16).has_value(), false);
        QCOMPARE(memory.bit('M', 3, -1).has_value(), false);
        QCOMPARE(memory.setBit('M', 3, 16, true), false);
        QCOMPARE(memory.setBit('M', 256, 0, true), false);
    }

    void contactsAreNoPartsOfWords()
    {
        Memory memory;
        QVERIFY(memory.setContact('T', 7, true));
        QCOMPARE(*memory.contact('T', 7), true);
        QCOMPARE(*memory.contact('C', 7), false);
        QCOMPARE(*memory.word('T', 7), quint16(0));
        QVERIFY(memory.setWord('C', 7, 0xFFFF));
        QCOMPARE(*memory.contact('C', 7), false);
    }

    void pointsReachTheSame_data() { addRows(kPointsReachTheSame); }
    void pointsReachTheSame()
    {
        const auto &row = currentRow(kPointsReachTheSame);
        Memory memory;
        const Point point{row.device, row.kind, row.address};
        QVERIFY(memory.setValue(point, static_cast<quint16>(row.written)));
        QCOMPARE(int(*memory.value(point)), row.read);
        if (point.kind == PointKind::Word) {
            QCOMPARE(int(*memory.word(row.device, row.address)), row.read);
        } else if (point.kind == PointKind::Bit) {
            QCOMPARE(*memory.bit(row.device, 3, 5), true);
        } else {
            QCOMPARE(*memory.contact(row.device, row.address), true);
        }
        QVERIFY(memory.setValue(point, 0));
        QCOMPARE(int(*memory.value(point)), 0);
    }
};

QTEST_APPLESS_MAIN(TestMemory)
#include "test_memory.moc"
