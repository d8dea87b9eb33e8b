#include "host/tag/plausible_readings.h"

#include "host/support/test_types.h"
#include "host/tag/typed_item.h"
#include "host/value/value_codec.h"
#include "support/rows.h"

using namespace cnet;

class TestPlausibleReadings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data();
    void finds();
    void givesItemsThatReadTheSame();
    void takesWhatFits();
};

namespace {

struct Found
{
    const char *what;
    QVector<quint16> words;
    const char *item;
    const char *values;
    const char *doubt;
};

const Found kFound[] = {
    {"without sign", {0xFFFE, 1}, "1/D_W:8*2@u16", "65534, 1", ""},
    {"with sign", {0xFFFE, 1}, "1/D_W:8*2@i16", "-2, 1", ""},
    {"32 bits", {0xFFFE, 1}, "1/D_W:8@u32", "131070", ""},
    {"32 bits, the upper half first", {0xFFFE, 1}, "1/D_W:8@i32 high-first", "-131071", ""},
    {"a float", {0, 0x4148}, "1/D_W:8@f32", "12.5", ""},
    {"a float the wrong way round",
     {0, 0x4148},
     "1/D_W:8@f32 high-first",
     "2.3418e-41",
     "very small"},
    {"a float that is none", {0, 0x7FC0}, "1/D_W:8@f32", "-", "not a number"},
    {"a float too large", {0, 0x7F00}, "1/D_W:8@f32", "1.7014118e+38", "very large"},
    {"a float below 0", {0, 0xC148}, "1/D_W:8@f32", "-12.5", ""},
    {"a double", {0, 0, 0, 0x4029}, "1/D_W:8@f64", "12.5", ""},
    {"BCD", {0x1234}, "1/D_W:8@bcd4", "1234", ""},
    {"no BCD", {0x12A4}, "1/D_W:8@bcd4", "-", "wrong BCD digit"},
    {"no BCD in the second word", {0x1234, 0xA}, "1/D_W:8*2@bcd4", "1234, -", "wrong BCD digit"},
    {"text", {0x4241, 0x0043}, "1/D_W:8@string4", "\"ABC\"", ""},
    {"text the other way, and all of it",
     {0x4241, 0x4300},
     "1/D_W:8@string4 swapped",
     "\"BAC\"",
     ""},
    {"text the other way",
     {0x4241, 0x0043},
     "1/D_W:8@string4 swapped",
     "\"BA\"",
     "more behind its end"},
    {"no text", {0x0041, 0x0A43}, "1/D_W:8@string4 swapped", "\"\"", "empty"},
    {"a letter by chance", {0x0041, 0x0043}, "1/D_W:8@string4", "\"A\"", "more behind its end"},
    {"a large number", {7, 0, 0, 7}, "1/D_W:8@i64", "1970324836974599", "very large"},
    {"a control character", {0x0A41}, "1/D_W:8@string2", "\"A\\x0A\"", "not printable"},
    {"a bit", {0x8000, 0}, "1/D_W:8*2@bit15", "1, 0", ""},
};

const PossibleReading *find(const QVector<PossibleReading> &readings, const char *item)
{
    for (const PossibleReading &reading : readings) {
        if (typedItemText(reading.tag) == QLatin1String(item)) {
            return &reading;
        }
    }
    return nullptr;
}

Item itemOf(const QVector<quint16> &words)
{
    return testItem("D_W", 8, static_cast<int>(words.size()));
}

} // namespace

void TestPlausibleReadings::finds_data()
{
    addRows(kFound);
}

void TestPlausibleReadings::finds()
{
    const Found &row = currentRow(kFound);
    const auto readings = possibleReadings(itemOf(row.words), row.words);
    const PossibleReading *reading = find(readings, row.item);
    QVERIFY(reading != nullptr);
    QCOMPARE(reading->valuesText(), QLatin1String(row.values));
    QCOMPARE(reading->doubt, QLatin1String(row.doubt));
    QCOMPARE(reading->isPlausible, reading->doubt.isEmpty());
}

// What is pasted into another command shows what was seen here.
void TestPlausibleReadings::givesItemsThatReadTheSame()
{
    const QVector<quint16> words{0x4241, 0x4443, 0x1234, 0x4029, 7};
    const auto readings = possibleReadings(itemOf(words), words);
    QVERIFY(readings.size() > 30);
    for (const PossibleReading &reading : readings) {
        const Tag tag = testTag(qPrintable(typedItemText(reading.tag)));
        QCOMPARE(tag.item.count, reading.tag.item.count);
        QVERIFY(decodeValues(tag.type, words.mid(0, tag.item.count)) == reading.values);
    }
}

void TestPlausibleReadings::takesWhatFits()
{
    const QVector<quint16> words{1, 2, 3};
    const auto readings = possibleReadings(itemOf(words), words);
    QVERIFY(find(readings, "1/D_W:8@u32") != nullptr);
    QVERIFY(find(readings, "1/D_W:8@u64") == nullptr);
    QVERIFY(find(readings, "1/D_W:8*3@u16") != nullptr);
}

QTEST_APPLESS_MAIN(TestPlausibleReadings)
#include "test_plausible_readings.moc"
