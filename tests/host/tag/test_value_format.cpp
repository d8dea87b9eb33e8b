#include "host/tag/value_format.h"

#include "host/support/test_types.h"
#include "host/tag/scaling.h"
#include "host/value/value_codec.h"
#include "support/rows.h"

#include <limits>
#include <random>

using namespace cnet;

class TestValueFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writes_data();
    void writes();
    void showsUnitAndFault();
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void readsWhatItWrites_data();
    void readsWhatItWrites();
};

namespace {

struct Shown
{
    const char *what;
    const char *item;
    Scalar value;
    const char *text;
};

const Shown kShown[] = {
    {"nothing", "D_W:0@i16", Scalar(), "-"},
    {"whole", "D_W:0@i16", qint64(-7), "-7"},
    {"the greatest", "D_W:0@u64", std::numeric_limits<quint64>::max(), "18446744073709551615"},
    {"a truth", "D_W:0@bool", true, "true"},
    {"a bit", "D_W:0@bit3", true, "1"},
    {"a float", "D_W:0@f32", static_cast<double>(0.1F), "0.1"},
    {"a float of nine digits", "D_W:0@f32", static_cast<double>(16777217.0F), "16777216"},
    {"a double", "D_W:0@f64", 0.1, "0.1"},
    {"a decimal of the scale", "D_W:0@i16*0.1", 12.0, "12.0"},
    {"decimals of the offset", "D_W:0@i16+0.25", 3.25, "3.25"},
    {"a whole scale", "D_W:0@i16*10", qint64(120), "120"},
    {"a scaled float", "D_W:0@f32*0.5", 1.25, "1.25"},
    {"a text", "D_W:0@string4", QStringLiteral("a\"b"), "\"a\\\"b\""},
    {"an enum's text", "D_W:0@enum", qint64(1), "running"},
    {"an enum without", "D_W:0@enum", qint64(7), "7"},
    {"a raw bit", "M_bit:0.0", qint64(1), "1"},
};

struct Read
{
    const char *what; // and the text
    const char *item;
    Scalar value;
};

const Read kRead[] = {
    {"12", "D_W:0@i16", qint64(12)},
    {" -12 ", "D_W:0@i16", qint64(-12)},
    {"+12", "D_W:0@i16", qint64(12)},
    {"0x1F", "D_W:0@i16", qint64(31)},
    {"0xFFFF", "D_W:0@i16", qint64(-1)},
    {"0xFFFFFFFF", "D_W:0@i32", qint64(-1)},
    {"0xFFFFFFFFFFFFFFFF", "D_W:0@i64", qint64(-1)},
    {"0XFFFFFFFFFFFFFFFF", "D_W:0@u64", std::numeric_limits<quint64>::max()},
    {"18446744073709551615", "D_W:0@u64", std::numeric_limits<quint64>::max()},
    {"9007199254740993", "D_W:0@i64", qint64(9007199254740993)},
    {"12.5", "D_W:0@f32", 12.5},
    {".5", "D_W:0@f32", 0.5},
    {"1e3", "D_W:0@f32", 1000.0},
    {"12.5 ", "D_W:0@i16*0.1", 12.5},
    {"12 ", "D_W:0@i16*0.1", qint64(12)},
    {"1", "D_W:0@bool", true},
    {"OFF", "D_W:0@bool", false},
    {"true", "D_W:0@bit3", true},
    {"0", "M_bit:0.0@raw", false},
    {"running", "D_W:0@enum", qint64(1)},
    {"RUNNING", "D_W:0@enum", qint64(2)},
    {"Stopped", "D_W:0@enum", qint64(0)},
    {"\"running\"", "D_W:0@enum", qint64(1)},
    {"7", "D_W:0@enum", qint64(7)},
    {"abc", "D_W:0@string4", QStringLiteral("abc")},
    {"\" a\"", "D_W:0@string4", QStringLiteral(" a")},
    {"", "D_W:0@string4", QString()},
};

struct Mistake
{
    const char *what;
    const char *item;
    const char *text;
    const char *expected;
};

const Mistake kMistakes[] = {
    {"nothing", "D_W:0@i16", "",
     "'' is no value of i16: expected a number, for example 12 or 0x1F"},
    {"letters", "D_W:0@f32", "abc",
     "'abc' is no value of f32: expected a number, for example 12.5"},
    {"two numbers", "D_W:0@f32", "1 2", "expected a number"},
    {"not a number", "D_W:0@f32", "nan", "expected a number"},
    {"infinite", "D_W:0@f64", "1e999", "expected a number"},
    {"hexadecimal too wide", "D_W:0@i16", "0x10000", "expected a number"},
    {"hexadecimal far too wide", "D_W:0@u64", "0x10000000000000000", "expected a number"},
    {"beyond 64 bits", "D_W:0@u64", "18446744073709551616", "expected a number"},
    {"hexadecimal of a float", "D_W:0@f32", "0x1F", "for example 12.5"},
    {"hexadecimal of BCD", "D_W:0@bcd4", "0x1234", "for example 12.5"},
    {"hexadecimal behind a scale", "D_W:0@i16*0.1", "0x1F", "for example 12.5"},
    {"a truth of another kind", "D_W:0@bool", "yes", "expected 0 or 1, false or true"},
    {"2 as a bit", "M_bit:0.0@raw", "2", "expected 0 or 1"},
    {"another text", "D_W:0@enum", "idle", "expected one of its texts, stopped, running, RUNNING"},
    {"a text without end", "D_W:0@string4", "\"a", "one quotation mark at the end"},
};

Tag tagOf(const char *item)
{
    Tag tag = testTag(item);
    tag.texts = {{0, QStringLiteral("stopped")},
                 {1, QStringLiteral("running")},
                 {2, QStringLiteral("RUNNING")}};
    return tag;
}

} // namespace

void TestValueFormat::writes_data()
{
    addRows(kShown);
}

void TestValueFormat::writes()
{
    const Shown &row = currentRow(kShown);
    QCOMPARE(typedText(tagOf(row.item), {row.value, ValueFault::None}), QLatin1String(row.text));
}

void TestValueFormat::showsUnitAndFault()
{
    Tag tag = testTag("D_W:0@i16*0.1");
    tag.unit = QStringLiteral("mm/s");
    QCOMPARE(shownText(tag, {12.5, ValueFault::None}), QStringLiteral("12.5 mm/s"));
    QCOMPARE(shownText(tag, {12.5, ValueFault::AboveMax}),
             QStringLiteral("12.5 mm/s (above the maximum)"));
    QCOMPARE(shownText(tag, {Scalar(), ValueFault::NotDecimal}),
             QStringLiteral("- (wrong BCD digit)"));
}

void TestValueFormat::reads_data()
{
    addRows(kRead);
}

void TestValueFormat::reads()
{
    const Read &row = currentRow(kRead);
    QString error;
    const auto value = parseTyped(tagOf(row.item), QLatin1String(row.what), error);
    QVERIFY2(value.has_value(), qPrintable(error));
    QVERIFY(*value == row.value);
}

void TestValueFormat::refuses_data()
{
    addRows(kMistakes);
}

void TestValueFormat::refuses()
{
    const Mistake &row = currentRow(kMistakes);
    QString error;
    QVERIFY(!parseTyped(tagOf(row.item), QLatin1String(row.text), error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

void TestValueFormat::readsWhatItWrites_data()
{
    addTypeRows();
}

// The text of a value, typed in again, gives the same words.
void TestValueFormat::readsWhatItWrites()
{
    Tag tag = testTag("D_W:0*32");
    tag.type = testType(QTest::currentDataTag());
    std::mt19937 random(8);
    for (int round = 0; round < 3000; ++round) {
        QVector<quint16> units(tag.type.unitsPerValue());
        for (quint16 &unit : units) {
            unit = static_cast<quint16>(random());
        }
        const TypedValue value = decodeValue(tag.type, units);
        if (value.fault != ValueFault::None) {
            continue;
        }
        QString error;
        const auto read = parseTyped(tag, typedText(tag, value), error);
        const auto back = read ? encodeValue(tag.type, *read, error) : std::nullopt;
        const auto expected = encodeValue(tag.type, value.value, error);
        QVERIFY2(back.has_value(), qPrintable(error));
        QCOMPARE(*back, *expected);
    }
}

QTEST_APPLESS_MAIN(TestValueFormat)
#include "test_value_format.moc"
