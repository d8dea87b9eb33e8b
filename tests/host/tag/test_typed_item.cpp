#include "host/tag/typed_item.h"

#include "host/support/test_types.h"
#include "support/rows.h"

using namespace cnet;

class TestTypedItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parses_data();
    void parses();
    void refuses_data();
    void refuses();
    void namesOneValue();
    void seesTypes();
    void parsesAssignments_data();
    void parsesAssignments();
    void refusesAssignments_data();
    void refusesAssignments();
};

namespace {

struct Parsed
{
    const char *what; // and the text
    const char *text; // as it comes back
    int start;
    int units;
    int count;
    double scale;
    double offset;
};

const Parsed kParsed[] = {
    {"D_W:100", "7/D_W:100", 100, 1, 1, 1, 0},
    {"D_W:100*3", "7/D_W:100*3", 100, 3, 3, 1, 0},
    {"D_W:100*3@raw", "7/D_W:100*3", 100, 3, 3, 1, 0},
    {"D_W:100@f32", "7/D_W:100@f32", 100, 2, 1, 1, 0},
    {"2/D_W:100*3@f64", "2/D_W:100*3@f64", 100, 12, 3, 1, 0},
    {"D_W:200@string11", "7/D_W:200@string11", 200, 6, 1, 1, 0},
    {"D_W:0*4@i16*0.1", "7/D_W:0*4@i16*0.1", 0, 4, 4, 0.1, 0},
    {"D_W:0@i16*0.1-5", "7/D_W:0@i16*0.1-5", 0, 1, 1, 0.1, -5},
    {"D_W:0@i16*-2+1e-3", "7/D_W:0@i16*-2+0.001", 0, 1, 1, -2, 0.001},
    {"D_W:0@i16+.5", "7/D_W:0@i16+0.5", 0, 1, 1, 1, 0.5},
    {"D_W:0@raw*0.1", "7/D_W:0@raw*0.1", 0, 1, 1, 0.1, 0},
    {"1/D_W:5@bit3", "1/D_W:5@bit3", 5, 1, 1, 1, 0},
    {"D_W:7@u32 high-first", "7/D_W:7@u32 high-first", 7, 2, 1, 1, 0},
    {"D_W:7@u32,high-first*10-1", "7/D_W:7@u32 high-first*10-1", 7, 2, 1, 10, -1},
    {"M_bit:3.5*2@bool", "7/M_bit:3.5*2@bool", 53, 2, 2, 1, 0},
    {"D_W:9998@f32", "7/D_W:9998@f32", 9998, 2, 1, 1, 0},
};

const Case<const char *, const char *> kMistakes[] = {
    {"no item", "@f32", "expected [STATION/]REGISTER:ADDRESS[*COUNT]"},
    {"a wrong item", "D_W:x@f32", "an address of D_W is a number from 0 to 9999"},
    {"no type", "D_W:1@", "'D_W:1@': '' is no type"},
    {"a type unknown", "D_W:1@float", "'float' is no type; expected bool"},
    {"a type twice", "D_W:1@f32@f32", "'f32@f32' is no type"},
    {"a count behind the type", "D_W:1@f32*4*2",
     "expected ITEM@TYPE[*SCALE][+OFFSET], for example"},
    {"no scale", "D_W:1@f32*", "expected ITEM@TYPE[*SCALE]"},
    {"a scale of 0", "D_W:1@f32*0", "a scale is a number other than 0, for example 0.1"},
    {"a scale beyond all numbers", "D_W:1@f32*1e999", "a scale is a number other than 0"},
    {"letters for a scale", "D_W:1@f32*x", "expected ITEM@TYPE[*SCALE]"},
    {"a scale of a text", "D_W:1@string4*2", "a scale is for numbers, and string4 is none"},
    {"an offset of a bit", "D_W:1@bit3+1", "bit3 is none"},
    {"a number of a bit", "M_bit:1.0@u16", "u16 takes words, and M_bit has bits"},
    {"a scale of bits", "M_bit:1.0@raw*2", "M_bit is none"},
    {"a type longer than what is left", "D_W:9999@f32",
     "1 value of f32 would take 2 words, and 1 can be had from there"},
    {"values longer than what is left", "D_W:9990*4@f64",
     "4 values of f64 would take 16 words, and 10 can"},
    {"far longer", "D_W:0*10000@string65535", "take 327680000 words"},
};

struct Assigned
{
    const char *what; // and the text
    const char *item;
    QVector<Scalar> values;
};

const Assigned kAssigned[] = {
    {"D_W:100@f32=12.5", "1/D_W:100@f32", {12.5}},
    {"D_W:100@f32=12.5,3", "1/D_W:100*2@f32", {12.5, 3.0}},
    {"D_W:100*2@i16=-1,2", "1/D_W:100*2@i16", {qint64(-1), qint64(2)}},
    {"D_W:100*2@i16=7", "1/D_W:100*2@i16", {qint64(7), qint64(7)}},
    {"D_W:100*1@i16=7", "1/D_W:100@i16", {qint64(7)}},
    {"D_W:5@bit3=1", "1/D_W:5@bit3", {true}},
    {"D_W:0@string4=\"a,=\"", "1/D_W:0@string4", {QStringLiteral("a,=")}},
    {"D_W:0@i16*2=@", "", {}}, // a type in front of the value only
};

const Case<const char *, const char *> kWrong[] = {
    {"nothing", "", "expected ITEM@TYPE=VALUE[,VALUE...], for example D_W:100@f32=12.5"},
    {"no value", "D_W:100@f32", "expected ITEM@TYPE=VALUE"},
    {"an empty value", "D_W:100@f32=", "'' is no value of f32"},
    {"too few", "D_W:100*3@i16=1,2", "expected 1 or 3 values, not 2"},
    {"too many", "D_W:100*1@i16=1,2", "'D_W:100*1@i16=1,2': expected 1 value, not 2"},
    {"more than fit", "D_W:9998@f32=1,2", "2 values of f32 would take 4 words"},
    {"a wrong type", "D_W:100@f33=1", "'f33' is no type"},
};

} // namespace

void TestTypedItem::parses_data()
{
    addRows(kParsed);
}

void TestTypedItem::parses()
{
    const Parsed &row = currentRow(kParsed);
    QString error;
    const auto tag = parseTypedItem(QLatin1String(row.what), 7, testCatalog(), error);
    QVERIFY2(tag.has_value(), qPrintable(error));
    QCOMPARE(tag->item.start, row.start);
    QCOMPARE(tag->item.count, row.units);
    QCOMPARE(tag->count, row.count);
    QCOMPARE(tag->scale, row.scale);
    QCOMPARE(tag->offset, row.offset);
    QCOMPARE(typedItemText(*tag), QLatin1String(row.text));
    const auto again = parseTypedItem(typedItemText(*tag), 9, testCatalog(), error);
    QVERIFY2(again.has_value(), qPrintable(error));
    QCOMPARE(typedItemText(*again), QLatin1String(row.text));
    QVERIFY(again->type == tag->type);
}

void TestTypedItem::refuses_data()
{
    addRows(kMistakes);
}

void TestTypedItem::refuses()
{
    const auto &row = currentRow(kMistakes);
    QString error;
    QVERIFY(!parseTypedItem(QLatin1String(row.given), 1, testCatalog(), error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

void TestTypedItem::namesOneValue()
{
    QCOMPARE(typedItemText(testTag("D_W:100*3@f32"), 2), QLatin1String("1/D_W:104@f32"));
    QCOMPARE(typedItemText(testTag("D_W:100*3"), 2), QLatin1String("1/D_W:102"));
    QVERIFY(isPlain(testTag("D_W:100@raw")));
    QVERIFY(!isPlain(testTag("D_W:100@u16")));
    QVERIFY(!isPlain(testTag("D_W:100@raw+1")));
    Tag tag = testTag("D_W:100*3");
    QCOMPARE(tagText(tag), QLatin1String("1/D_W:100*3"));
    QCOMPARE(tagText(tag, 2), QLatin1String("1/D_W:102"));
    tag.name = QLatin1String("zones");
    QVERIFY(!isPlain(tag));
    QCOMPARE(tagText(tag), QLatin1String("zones"));
    QCOMPARE(tagText(tag, 2), QLatin1String("zones[2]"));
    tag.count = 1;
    QCOMPARE(tagText(tag, 0), QLatin1String("zones"));
}

void TestTypedItem::seesTypes()
{
    QVERIFY(hasType(QStringLiteral("D_W:1@f32")));
    QVERIFY(hasType(QStringLiteral("D_W:1@f32=1")));
    QVERIFY(!hasType(QStringLiteral("D_W:1=1@2")));
    QVERIFY(!hasType(QStringLiteral("@f32")));
    QVERIFY(!hasType(QStringLiteral("D_W:1")));
}

void TestTypedItem::parsesAssignments_data()
{
    addRows(kAssigned);
}

void TestTypedItem::parsesAssignments()
{
    const Assigned &row = currentRow(kAssigned);
    QString error;
    const auto read = parseTypedAssignment(QLatin1String(row.what), 1, testCatalog(), error);
    QCOMPARE(read.has_value(), !row.values.isEmpty());
    if (read) {
        QCOMPARE(typedItemText(read->tag), QLatin1String(row.item));
        QVERIFY(read->values == row.values);
    }
}

void TestTypedItem::refusesAssignments_data()
{
    addRows(kWrong);
}

void TestTypedItem::refusesAssignments()
{
    const auto &row = currentRow(kWrong);
    QString error;
    QVERIFY(!parseTypedAssignment(QLatin1String(row.given), 1, testCatalog(), error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

QTEST_APPLESS_MAIN(TestTypedItem)
#include "test_typed_item.moc"
