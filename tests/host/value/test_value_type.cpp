#include "host/value/value_type.h"

#include "support/rows.h"

using namespace cnet;

class TestValueType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parses_data();
    void parses();
    void refuses_data();
    void refuses();
    void differsInEveryField();
};

namespace {

struct Type
{
    const char *what; // and the text
    const char *text; // as it comes back
    ValueKind kind;
    int units;
    bool isWhole;
};

const Type kTypes[] = {
    {"raw", "raw", ValueKind::Raw, 1, true},
    {"bool", "bool", ValueKind::Bool, 1, true},
    {"u16", "u16", ValueKind::U16, 1, true},
    {"i16", "i16", ValueKind::I16, 1, true},
    {"u32", "u32", ValueKind::U32, 2, true},
    {"i32 high-first", "i32 high-first", ValueKind::I32, 2, true},
    {"u64,high-first", "u64 high-first", ValueKind::U64, 4, true},
    {"i64", "i64", ValueKind::I64, 4, true},
    {"F32 Low-First", "f32", ValueKind::F32, 2, false},
    {" f64 ", "f64", ValueKind::F64, 4, false},
    {"bcd4", "bcd4", ValueKind::Bcd4, 1, true},
    {"bcd8 high-first", "bcd8 high-first", ValueKind::Bcd8, 2, true},
    {"bit0", "bit0", ValueKind::Bit, 1, true},
    {"bit 15", "bit15", ValueKind::Bit, 1, true},
    {"string1", "string1", ValueKind::String, 1, false},
    {"string 10", "string10", ValueKind::String, 5, false},
    {"string11 spaces swapped", "string11 swapped spaces", ValueKind::String, 6, false},
    {"string65535", "string65535", ValueKind::String, 32768, false},
    {"enum", "enum", ValueKind::Enum, 1, true},
};

const Case<const char *, const char *> kMistakes[] = {
    {"nothing", "", "'' is no type; expected bool, u16"},
    {"another name", "float", "'float' is no type"},
    {"a number behind a name without", "f32 2", "'2' does not fit behind f32"},
    {"a width that is none", "u8", "'u8' is no type"},
    {"a bit without its number", "bit", "'bit': expected the number of a bit, 0 to 15"},
    {"a bit beyond the word", "bit16", "for example bit3"},
    {"a bit below 0", "bit-1", "'bit-1': expected the number of a bit"},
    {"a string without length", "string", "expected a number of characters, 1 to 65535"},
    {"a string of nothing", "string0", "for example string10"},
    {"a string that no memory holds", "string65536", "'string65536': expected"},
    {"a number too long for one", "string99999999999", "expected a number of characters"},
    {"a word order of one word", "i16 high-first",
     "'high-first' does not fit behind i16; expected nothing"},
    {"a word order of a string", "string4 high-first", "expected each of 'swapped' and 'spaces'"},
    {"bytes of a number", "f32 swapped", "expected one of 'low-first' and 'high-first'"},
    {"both word orders", "f32 high-first low-first", "'low-first' does not fit"},
    {"a detail twice", "string4 spaces spaces", "'spaces' does not fit"},
};

} // namespace

void TestValueType::parses_data()
{
    addRows(kTypes);
}

void TestValueType::parses()
{
    const Type &row = currentRow(kTypes);
    QString error;
    const auto type = parseValueType(QLatin1String(row.what), error);
    QVERIFY2(type.has_value(), qPrintable(error));
    QCOMPARE(type->kind, row.kind);
    QCOMPARE(type->unitsPerValue(), row.units);
    QCOMPARE(type->isWhole(), row.isWhole);
    QCOMPARE(type->text(), QLatin1String(row.text));
    QVERIFY(parseValueType(type->text(), error) == type);
}

void TestValueType::refuses_data()
{
    addRows(kMistakes);
}

void TestValueType::refuses()
{
    const auto &row = currentRow(kMistakes);
    QString error;
    QVERIFY(!parseValueType(QLatin1String(row.given), error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

void TestValueType::differsInEveryField()
{
    const ValueType type;
    ValueType others[6];
    others[0].kind = ValueKind::U16;
    others[1].words = WordOrder::HighFirst;
    others[2].bytes = ByteOrder::HighFirst;
    others[3].padding = Padding::Space;
    others[4].bit = 1;
    others[5].characters = 1;
    for (const ValueType &other : others) {
        QVERIFY(type != other);
    }
    QVERIFY(type == ValueType());
}

QTEST_APPLESS_MAIN(TestValueType)
#include "test_value_type.moc"
