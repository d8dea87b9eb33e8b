#include "host/tag/scaling.h"

#include "host/support/test_types.h"
#include "host/value/value_codec.h"
#include "support/rows.h"

#include <cmath>
#include <limits>
#include <random>

using namespace cnet;

class TestScaling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scales_data();
    void scales();
    void unscales_data();
    void unscales();
    void refuses_data();
    void refuses();
    void bringsEveryRawValueBack_data();
    void bringsEveryRawValueBack();
    void tellsOfBounds();
    void writesWithinBoundsOnly();
    void takesNumbersOnly();
};

namespace {

const qint64 kHighest = std::numeric_limits<qint64>::max();
const qint64 kLowest = std::numeric_limits<qint64>::min();
const quint64 kGreatest = std::numeric_limits<quint64>::max();

struct Scaled
{
    const char *what;
    const char *item;
    Scalar raw;
    TypedValue value;
};

TypedValue good(const Scalar &value)
{
    return {value, ValueFault::None};
}

const TypedValue kTooLarge = {Scalar(), ValueFault::TooLarge};

const Scaled kScaled[] = {
    {"as it is", "D_W:0@i16", qint64(-7), good(qint64(-7))},
    {"a decimal", "D_W:0@i16*0.1", qint64(123), good(12.3)},
    {"a decimal that a product misses", "D_W:0@i16*0.1", qint64(3), good(0.3)},
    {"an offset", "D_W:0@i16*0.1-5", qint64(123), good(7.3)},
    {"a fraction as offset", "D_W:0@u16+0.25", qint64(3), good(3.25)},
    {"a whole scale", "D_W:0@u16*10+5", qint64(65535), good(qint64(655355))},
    {"the greatest", "D_W:0@u64", kGreatest, good(kGreatest)},
    {"the greatest less 5", "D_W:0@u64-5", kGreatest, good(kGreatest - 5)},
    {"back into 63 bits", "D_W:0@u64-5", (quint64(1) << 63) + 1, good(kHighest - 3)},
    {"beyond the greatest", "D_W:0@u64+1", kGreatest, kTooLarge},
    {"beyond 63 bits", "D_W:0@i64+1", kHighest, good(quint64(1) << 63)},
    {"below the lowest", "D_W:0@i64-1", kLowest, kTooLarge},
    {"a product too large", "D_W:0@i64*10", kHighest, kTooLarge},
    {"too many digits for a fraction", "D_W:0@i64*0.1", kHighest, kTooLarge},
    {"a float", "D_W:0@f32*0.5+1", 3.0, good(2.5)},
    {"a float too large", "D_W:0@f64*1e10", 1e300, kTooLarge},
    {"below 0", "D_W:0@i16*-0.1", qint64(5), good(-0.5)},
};

struct Unscaled
{
    const char *what;
    const char *item;
    Scalar wanted;
    Scalar raw;
};

const Unscaled kUnscaled[] = {
    {"as it is", "D_W:0@i16", qint64(-7), qint64(-7)},
    {"a fraction is left to the type", "D_W:0@i16", 12.5, 12.5},
    {"a decimal", "D_W:0@i16*0.1", 12.3, qint64(123)},
    {"a whole number", "D_W:0@i16*0.1", qint64(12), qint64(120)},
    {"the nearest step", "D_W:0@i16*0.1", 12.34, qint64(123)},
    {"half a step up", "D_W:0@i16*0.1", 12.35, qint64(124)},
    {"half a step down below 0", "D_W:0@i16*0.1", -12.35, qint64(-124)},
    {"half of a whole step", "D_W:0@i16*10", qint64(25), qint64(3)},
    {"less than half of it", "D_W:0@i16*10", qint64(-24), qint64(-2)},
    {"half of it below 0", "D_W:0@i16*10", qint64(-25), qint64(-3)},
    {"a fraction of it", "D_W:0@i16*10", 14.9, qint64(1)},
    {"an offset", "D_W:0@i16*0.1-5", 7.3, qint64(123)},
    {"a scale below 0", "D_W:0@i16*-2", qint64(5), qint64(-3)},
    {"the greatest", "D_W:0@u64-5", kGreatest - 5, kGreatest},
    {"above 63 bits", "D_W:0@u64-5", kHighest - 3, (quint64(1) << 63) + 1},
    {"back from above 63 bits", "D_W:0@i64+1", quint64(1) << 63, kHighest},
    {"a whole number with a point", "D_W:0@u16+5", 12.0, qint64(7)},
    {"a float", "D_W:0@f32*0.5+1", 2.5, 3.0},
};

struct Mistake
{
    const char *what;
    const char *item;
    Scalar wanted;
    const char *expected;
};

const Mistake kMistakes[] = {
    {"not a number", "D_W:0@f32", std::nan(""), "must be a number"},
    {"infinite", "D_W:0@i16*0.1", std::numeric_limits<double>::infinity(), "must be a number"},
    {"a text", "D_W:0@i16*0.1", QStringLiteral("1"), "a scaled value is a number"},
    {"a fraction beside whole steps of 1", "D_W:0@i16+5", 12.5, "12.5 is no whole number"},
    {"too many digits", "D_W:0@i64*0.1", 1e18, "more than fifteen digits"},
    {"beyond what is exact", "D_W:0@u64*2", kGreatest, "more than fifteen digits"},
    {"a step that goes too far", "D_W:0@u64*10", kHighest, "more than fifteen digits"},
    {"an offset that swallows the scale", "D_W:0@u16*0.001+900000000000000", 1.5, "fifteen digits"},
    {"the one that has no opposite", "D_W:0@i64*-1", kLowest, "more than fifteen digits"},
};

} // namespace

void TestScaling::scales_data()
{
    addRows(kScaled);
}

void TestScaling::scales()
{
    const Scaled &row = currentRow(kScaled);
    QVERIFY(scaledValue(testTag(row.item), good(row.raw)) == row.value);
}

void TestScaling::unscales_data()
{
    addRows(kUnscaled);
}

void TestScaling::unscales()
{
    const Unscaled &row = currentRow(kUnscaled);
    QString error;
    const auto raw = unscaledValue(testTag(row.item), row.wanted, error);
    QVERIFY2(raw.has_value(), qPrintable(error));
    QVERIFY(*raw == row.raw);
}

void TestScaling::refuses_data()
{
    addRows(kMistakes);
}

void TestScaling::refuses()
{
    const Mistake &row = currentRow(kMistakes);
    QString error;
    QVERIFY(!unscaledValue(testTag(row.item), row.wanted, error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

void TestScaling::bringsEveryRawValueBack_data()
{
    QTest::addColumn<int>("unused");
    for (const char *item :
         {"D_W:0@i16*0.1", "D_W:0@u16*0.01-40", "D_W:0@i16*0.25+0.5", "D_W:0@i16*-0.001",
          "D_W:0@i16*0.123456", "D_W:0@u32*0.1", "D_W:0@i32*3-7", "D_W:0@u64", "D_W:0@u64+1000",
          "D_W:0@i64-1000", "D_W:0@i64*2+1", "D_W:0@u64*0.001", "D_W:0@bcd8*0.01"}) {
        QTest::newRow(item) << 0;
    }
}

// What is shown, written as it is shown, is what was there: all of 16 bits, and a sample of more.
void TestScaling::bringsEveryRawValueBack()
{
    const Tag tag = testTag(QTest::currentDataTag());
    std::mt19937_64 random(7);
    int exact = 0;
    const int rounds = tag.item.count == 1 ? 65536 : 8192;
    for (int round = 0; round < rounds; ++round) {
        QVector<quint16> units{static_cast<quint16>(round)};
        const quint64 more = random() >> (round % 40);
        for (int i = 1; i < tag.type.unitsPerValue(); ++i) {
            units.append(static_cast<quint16>(more >> (16 * (i - 1))));
        }
        const TypedValue raw = decodeValue(tag.type, units);
        const TypedValue shown = scaledValue(tag, raw);
        if (shown.fault != ValueFault::None) {
            continue;
        }
        QString error;
        const auto back = unscaledValue(tag, shown.value, error);
        QVERIFY2(back.has_value(), qPrintable(error));
        QVERIFY(*back == raw.value);
        ++exact;
    }
    QVERIFY(exact > 100);
}

void TestScaling::tellsOfBounds()
{
    Tag tag = testTag("D_W:0@i16*0.1");
    tag.min = -1.5;
    tag.max = 2;
    QCOMPARE(scaledValue(tag, good(qint64(-15))).fault, ValueFault::None);
    QCOMPARE(scaledValue(tag, good(qint64(-16))).fault, ValueFault::BelowMin);
    QCOMPARE(scaledValue(tag, good(qint64(20))).fault, ValueFault::None);
    const TypedValue above = scaledValue(tag, good(qint64(21)));
    QCOMPARE(above.fault, ValueFault::AboveMax);
    QVERIFY(above.value == Scalar(2.1));
}

void TestScaling::writesWithinBoundsOnly()
{
    Tag tag = testTag("D_W:0@u64");
    tag.max = 9007199254740992.0;
    QString error;
    QVERIFY(unscaledValue(tag, qint64(1) << 53, error));
    QVERIFY(!unscaledValue(tag, (qint64(1) << 53) + 1, error));
    QVERIFY2(error.contains(QLatin1String("above the maximum of 1/D_W:0*4")), qPrintable(error));
    tag.min = 3;
    QVERIFY(!unscaledValue(tag, qint64(2), error));
    QVERIFY2(error.contains(QLatin1String("2 is below the minimum")), qPrintable(error));
}

void TestScaling::takesNumbersOnly()
{
    Tag tag = testTag("D_W:0@string4");
    QVERIFY(scaleMisfit(tag).isEmpty());
    tag.scale = 2;
    QVERIFY(scaleMisfit(tag).contains(QLatin1String("string4 is none")));
    tag = testTag("D_W:0@i16");
    for (const double wrong : {0.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        tag.scale = wrong;
        QVERIFY(scaleMisfit(tag).contains(QLatin1String("other than 0")));
    }
    QVERIFY(scaledValue(testTag("D_W:0@bool"), good(true)) == good(true));
}

QTEST_APPLESS_MAIN(TestScaling)
#include "test_scaling.moc"
