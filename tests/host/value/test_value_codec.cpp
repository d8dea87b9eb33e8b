#include "host/value/value_codec.h"

#include "host/support/test_registers.h"
#include "host/support/test_types.h"
#include "support/rows.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace cnet;

class TestValueCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodes_data();
    void decodes();
    void refuses_data();
    void refuses();
    void bringsAllWordsBack_data();
    void bringsAllWordsBack();
    void agreesWithTheMachine();
    void takesTheGreatestFloat();
    void knowsNothingOfMissingWords();
    void keepsNumbersOffBits_data();
    void keepsNumbersOffBits();
};

namespace {

struct Words
{
    const char *what; // and the type
    QVector<quint16> units;
    TypedValue value;
};

TypedValue good(const Scalar &value)
{
    return {value, ValueFault::None};
}

const Words kWords[] = {
    {"raw", {0xFFFF}, good(qint64(65535))},
    {"bool", {0x8000}, good(true)},
    {"bool ", {0}, good(false)},
    {"u16", {0xFFFE}, good(qint64(65534))},
    {"i16", {0xFFFE}, good(qint64(-2))},
    {"u32", {0x5678, 0x1234}, good(qint64(0x12345678))},
    {"u32 high-first", {0x1234, 0x5678}, good(qint64(0x12345678))},
    {"i32", {0xFFFF, 0xFFFF}, good(qint64(-1))},
    {"u64", {4, 3, 2, 0x8001}, good((quint64(0x8001) << 48) + (quint64(2) << 32) + 0x30004)},
    {"u64 high-first", {1, 2, 3, 4}, good(qint64(0x0001000200030004))},
    {"i64", {0xFFFD, 0xFFFF, 0xFFFF, 0xFFFF}, good(qint64(-3))},
    {"f32", {0, 0x4148}, good(12.5)},
    {"f32 high-first", {0x4148, 0}, good(12.5)},
    {"f32 ", {0, 0x7FC0}, {Scalar(), ValueFault::NotANumber}},
    {"f32  ", {0, 0x7F80}, {Scalar(), ValueFault::NotANumber}},
    {"f64", {0, 0, 0, 0xC029}, good(-12.5)},
    {"f64 ", {1, 0, 0, 0x7FF0}, {Scalar(), ValueFault::NotANumber}},
    {"bcd4", {0x1234}, good(qint64(1234))},
    {"bcd4 ", {0x12A4}, {Scalar(), ValueFault::NotDecimal}},
    {"bcd8", {0x5678, 0x1234}, good(qint64(12345678))},
    {"bcd8 high-first", {0x9999, 0x9999}, good(qint64(99999999))},
    {"bcd8 ", {0xF000, 0}, {Scalar(), ValueFault::NotDecimal}},
    {"bit0", {1}, good(true)},
    {"bit15", {0x7FFF}, good(false)},
    {"string4", {0x4241, 0x4443}, good(QStringLiteral("ABCD"))},
    {"string4 swapped", {0x4241, 0x4443}, good(QStringLiteral("BADC"))},
    {"string4 ", {0x0041, 0x4443}, good(QStringLiteral("A"))},
    {"string3", {0x4241, 0x4443}, good(QStringLiteral("ABC"))},
    {"string6 spaces", {0x2041, 0x2042, 0x0020}, good(QStringLiteral("A B"))},
    {"string2", {0xE40A}, good(QString::fromLatin1("\n\xE4"))},
    {"enum", {7}, good(qint64(7))},
};

struct Mistake
{
    const char *what;
    const char *type;
    Scalar value;
    const char *expected;
};

const double kInfinite = std::numeric_limits<double>::infinity();

const Mistake kMistakes[] = {
    {"nothing", "u16", Scalar(),
     "nothing does not fit u16, which is a whole number from 0 to 65535"},
    {"above u16", "u16", qint64(65536), "65536 does not fit u16"},
    {"below u16", "u16", qint64(-1), "-1 does not fit u16"},
    {"below i16", "i16", qint64(-32769), "from -32768 to 32767"},
    {"above i64", "i64", quint64(1) << 63, "9223372036854775808 does not fit i64"},
    {"below u64", "u64", qint64(-1), "from 0 to 18446744073709551615"},
    {"a fraction", "i32", 12.5, "12.5 does not fit i32"},
    {"a double beyond 64 bits", "u64", 18446744073709551616.0, "does not fit u64"},
    {"five digits", "bcd4", qint64(10000), "from 0 to 9999"},
    {"a negative BCD number", "bcd8", qint64(-1), "from 0 to 99999999"},
    {"above f32", "f32", 3.5e38, "3.5e+38 does not fit f32"},
    {"next to nothing for f32", "f32", 1e-46, "1e-46 does not fit f32"},
    {"infinite", "f64", kInfinite, "does not fit f64"},
    {"not a number", "f32", std::nan(""), "does not fit f32"},
    {"text for a number", "f32", QStringLiteral("x"), "'x' does not fit f32"},
    {"two for a bit", "bit3", qint64(2), "2 does not fit bit3, which is 0 or 1"},
    {"a number for a text", "string4", qint64(1), "1 is no text, which string4 takes"},
    {"a text too long", "string2", QStringLiteral("abc"),
     "'abc' has 3 characters, and string2 takes 2"},
    {"a letter of another script", "string2", QString(QChar(0x3A9)), "character 1 of"},
    {"a zero in a text", "string2", QString(QChar(0)), "cannot be stored"},
};

quint64 bitsOf(const QVector<quint16> &units, WordOrder order)
{
    quint64 number = 0;
    for (int i = 0; i < units.size(); ++i) {
        const int place = order == WordOrder::LowFirst ? i : static_cast<int>(units.size()) - 1 - i;
        number += quint64(units.at(i)) << (16 * place);
    }
    return number;
}

} // namespace

void TestValueCodec::decodes_data()
{
    addRows(kWords);
}

void TestValueCodec::decodes()
{
    const Words &row = currentRow(kWords);
    const ValueType type = testType(row.what);
    const TypedValue value = decodeValue(type, row.units);
    QVERIFY(value == row.value);
    // In the second place of an array it is the same.
    const auto values = decodeValues(type, row.units + row.units + QVector<quint16>());
    QCOMPARE(static_cast<int>(values.size()), 2);
    QVERIFY(values.at(1) == row.value);
}

void TestValueCodec::refuses_data()
{
    addRows(kMistakes);
}

void TestValueCodec::refuses()
{
    const Mistake &row = currentRow(kMistakes);
    QString error;
    QVERIFY(!encodeValue(testType(row.type), row.value, error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

void TestValueCodec::bringsAllWordsBack_data()
{
    addTypeRows();
}

// Whatever the words: a value that is read goes back as the same words, or reads the same.
void TestValueCodec::bringsAllWordsBack()
{
    const ValueType type = testType(QTest::currentDataTag());
    std::mt19937 random(5);
    for (int round = 0; round < 5000; ++round) {
        QVector<quint16> units(type.unitsPerValue());
        for (quint16 &unit : units) {
            unit = static_cast<quint16>(round % 3 == 0 ? random() & 0x9099U : random());
        }
        const TypedValue value = decodeValue(type, units);
        if (value.fault != ValueFault::None) {
            QVERIFY(!value.isKnown());
            continue;
        }
        QString error;
        const auto back = encodeValue(type, value.value, error);
        QVERIFY2(back.has_value(), qPrintable(error));
        const bool loses = type.kind == ValueKind::String || type.kind == ValueKind::Bool ||
                           type.kind == ValueKind::Bit;
        QVERIFY(loses ? type.kind == ValueKind::Bit || decodeValue(type, *back) == value
                      : *back == units);
    }
}

// The shifts of the codec against what the processor itself makes of the same bits.
void TestValueCodec::agreesWithTheMachine()
{
    std::mt19937 random(6);
    for (int round = 0; round < 5000; ++round) {
        QVector<quint16> units(4);
        for (quint16 &unit : units) {
            unit = static_cast<quint16>(random());
        }
        for (const WordOrder order : {WordOrder::LowFirst, WordOrder::HighFirst}) {
            ValueType type;
            type.words = order;
            type.kind = ValueKind::F64;
            const quint64 bits = bitsOf(units, order);
            double number = 0;
            std::memcpy(&number, &bits, sizeof number);
            const TypedValue value = decodeValue(type, units);
            QVERIFY(std::isfinite(number) ? value.value == Scalar(number) : !value.isKnown());
            type.kind = ValueKind::U64;
            QVERIFY(decodeValue(type, units).value == wholeScalar(bits));
            type.kind = ValueKind::I32;
            const auto half = static_cast<quint32>(bitsOf(units.mid(2), order));
            QVERIFY(decodeValue(type, units, 2).value == Scalar(qint64(static_cast<qint32>(half))));
        }
    }
}

// Its nine digits as a double are a little more than it is.
void TestValueCodec::takesTheGreatestFloat()
{
    QString error;
    const QVector<quint16> greatest{0xFFFF, 0x7F7F};
    QCOMPARE(encodeValue(testType("f32"), 3.40282347e38, error).value_or(QVector<quint16>()),
             greatest);
    QVERIFY(!encodeValue(testType("f32"), 3.4028236e38, error));
}

void TestValueCodec::knowsNothingOfMissingWords()
{
    QVERIFY(!decodeValue(testType("f32"), {1}).isKnown());
    QVERIFY(!decodeValue(testType("f32"), {1, 2}, 1).isKnown());
    QCOMPARE(static_cast<int>(decodeValues(testType("u32"), {1, 2, 3}).size()), 1);
}

void TestValueCodec::keepsNumbersOffBits_data()
{
    addTypeRows();
}

void TestValueCodec::keepsNumbersOffBits()
{
    const ValueType type = testType(QTest::currentDataTag());
    const bool fits =
        type.kind == ValueKind::Raw || type.kind == ValueKind::Bool || type.kind == ValueKind::Enum;
    QCOMPARE(typeMisfit(testRegister("M_bit"), type).isEmpty(), fits);
    QCOMPARE(typeMisfit(testRegister("TX"), type).isEmpty(), fits);
    QVERIFY(typeMisfit(testRegister("D_W"), type).isEmpty());
}

QTEST_APPLESS_MAIN(TestValueCodec)
#include "test_value_codec.moc"
