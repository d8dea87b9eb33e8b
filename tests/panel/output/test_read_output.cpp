#include "host/support/test_types.h"

#include "panel/output/read_output.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

Q_DECLARE_METATYPE(cnet::ReadResult)

class TestReadOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data();
    void prints();
    void printsTyped_data();
    void printsTyped();
    void printsNames_data();
    void printsNames();
    void saysWhenAValueIsNone();
};

namespace {

ReadResult result(const char *reg, int start, const QVector<quint16> &values)
{
    const int count = static_cast<int>(values.size());
    return {testItem(reg, start, count), values, QVector<bool>(count, true), {}};
}

// A row of five of which the first and the last were read.
ReadResult partly()
{
    ReadResult partly = result("D_W", 10, {1, 0, 0, 0, 5});
    for (const int i : {1, 2, 3}) {
        partly.known[i] = false;
    }
    partly.failure.kind = Failure::NoAnswer;
    return partly;
}

QVector<Tag> plainTags(const QVector<ReadResult> &results)
{
    QVector<Tag> tags;
    for (const ReadResult &result : results) {
        Tag tag;
        tag.item = result.item;
        tag.count = result.item.count;
        tags.append(tag);
    }
    return tags;
}

ReadResult resultOf(const Tag &tag, const QVector<quint16> &values)
{
    return {tag.item, values, QVector<bool>(static_cast<int>(values.size()), true), {}};
}

} // namespace

void TestReadOutput::prints_data()
{
    QTest::addColumn<QVector<ReadResult>>("results");
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const QVector<ReadResult> &results, OutputFormat format,
                        const char *text) {
        QTest::newRow(name) << results << static_cast<int>(format) << QByteArray(text);
    };
    const QVector<ReadResult> good{result("D_W", 9, {0x1234, 5}), result("M_bit", 53, {1})};
    row("text", good, OutputFormat::Text,
        "1/D_W:9  4660 0x1234\n1/D_W:10  5 0x0005\n1/M_bit:3.5  1\n");
    row("csv", good, OutputFormat::Csv,
        "station,register,address,value\n1,D_W,9,4660\n1,D_W,10,5\n1,M_bit,3.5,1\n");
    row("json", good, OutputFormat::Json,
        "{\"address\":\"9\",\"count\":2,\"event\":\"value\",\"good\":true,\"item\":\"1/D_W:9*2\","
        "\"register\":\"D_W\",\"station\":1,\"values\":[4660,5]}\n"
        "{\"address\":\"3.5\",\"count\":1,\"event\":\"value\",\"good\":true,"
        "\"item\":\"1/M_bit:3.5\",\"register\":\"M_bit\",\"station\":1,\"values\":[1]}\n");
    row("text, partly read", {partly()}, OutputFormat::Text,
        "1/D_W:10  1 0x0001\n1/D_W:11*3  -\n1/D_W:14  5 0x0005\n");
    row("csv, partly read", {partly()}, OutputFormat::Csv,
        "station,register,address,value\n1,D_W,10,1\n1,D_W,11,\n1,D_W,12,\n1,D_W,13,\n1,D_W,14,"
        "5\n");
    row("json, partly read", {partly()}, OutputFormat::Json,
        "{\"address\":\"10\",\"count\":5,\"event\":\"value\",\"failure\":\"no answer\","
        "\"good\":false,\"item\":\"1/D_W:10*5\",\"register\":\"D_W\",\"station\":1,"
        "\"values\":[1,null,null,null,5]}\n");
}

void TestReadOutput::prints()
{
    QFETCH(QVector<ReadResult>, results);
    QFETCH(int, format);
    QTEST(readOutput(results, plainTags(results), static_cast<OutputFormat>(format)), "text");
}

void TestReadOutput::printsTyped_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, OutputFormat format, const char *text) {
        QTest::newRow(name) << static_cast<int>(format) << QByteArray(text);
    };
    row("text", OutputFormat::Text,
        "1/D_W:0@i16*0.1  12.5\n1/D_W:1@i16*0.1  -0.1\n"
        "1/D_W:9@u64  18446744073709551615\n"
        "1/D_W:20@bcd4  - (wrong BCD digit)\n"
        "1/D_W:30@string4  \"a,\\\"\\x0A\"\n");
    row("csv", OutputFormat::Csv,
        "station,register,address,value\n1,D_W,0,12.5\n1,D_W,1,-0.1\n"
        "1,D_W,9,18446744073709551615\n1,D_W,20,\n1,D_W,30,\"a,\"\"\n\"\n");
    row("json", OutputFormat::Json,
        "{\"address\":\"0\",\"count\":2,\"event\":\"value\",\"good\":true,"
        "\"item\":\"1/D_W:0*2@i16*0.1\",\"register\":\"D_W\",\"station\":1,\"type\":\"i16\","
        "\"values\":[12.5,-0.1],\"words\":[125,65535]}\n"
        "{\"address\":\"9\",\"count\":1,\"event\":\"value\",\"good\":true,"
        "\"item\":\"1/D_W:9@u64\",\"register\":\"D_W\",\"station\":1,\"type\":\"u64\","
        "\"values\":[\"18446744073709551615\"],\"words\":[65535,65535,65535,65535]}\n"
        "{\"address\":\"20\",\"count\":1,\"event\":\"value\",\"faults\":[\"wrong BCD digit\"],"
        "\"good\":false,\"item\":\"1/D_W:20@bcd4\",\"register\":\"D_W\",\"station\":1,"
        "\"type\":\"bcd4\",\"values\":[null],\"words\":[4772]}\n"
        "{\"address\":\"30\",\"count\":1,\"event\":\"value\",\"good\":true,"
        "\"item\":\"1/D_W:30@string4\",\"register\":\"D_W\",\"station\":1,\"type\":\"string4\","
        "\"values\":[\"a,\\\"\\n\"],\"words\":[11361,2594]}\n");
}

void TestReadOutput::printsTyped()
{
    QFETCH(int, format);
    const QVector<Tag> tags{testTag("D_W:0*2@i16*0.1"), testTag("D_W:9@u64"),
                            testTag("D_W:20@bcd4"), testTag("D_W:30@string4")};
    const QVector<ReadResult> results{
        resultOf(tags.at(0), {125, 0xFFFF}), resultOf(tags.at(1), {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}),
        resultOf(tags.at(2), {0x12A4}), resultOf(tags.at(3), {0x2C61, 0x0A22})};
    QTEST(readOutput(results, tags, static_cast<OutputFormat>(format)), "text");
}

void TestReadOutput::printsNames_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, OutputFormat format, const char *text) {
        QTest::newRow(name) << static_cast<int>(format) << QByteArray(text);
    };
    row("text", OutputFormat::Text, "zones[0]  12.5 mm\nzones[1]  -0.1 mm\nwords  7\n");
    row("csv", OutputFormat::Csv,
        "station,register,address,value,name,unit\n1,D_W,0,12.5,zones,mm\n1,D_W,1,-0.1,zones,mm\n"
        "1,D_W,9,7,words,\n");
    row("json", OutputFormat::Json,
        "{\"address\":\"0\",\"count\":2,\"event\":\"value\",\"good\":true,\"group\":\"press\","
        "\"item\":\"1/D_W:0*2@i16*0.1\",\"name\":\"zones\",\"register\":\"D_W\",\"station\":1,"
        "\"type\":\"i16\",\"unit\":\"mm\",\"values\":[12.5,-0.1],\"words\":[125,65535]}\n"
        "{\"address\":\"9\",\"count\":1,\"event\":\"value\",\"good\":true,"
        "\"item\":\"1/D_W:9@raw\",\"name\":\"words\",\"register\":\"D_W\",\"station\":1,"
        "\"type\":\"raw\",\"values\":[7],\"words\":[7]}\n");
}

void TestReadOutput::printsNames()
{
    QFETCH(int, format);
    Tag zones = testTag("D_W:0*2@i16*0.1");
    zones.name = QLatin1String("zones");
    zones.unit = QLatin1String("mm");
    zones.group = QLatin1String("press");
    Tag words = testTag("D_W:9");
    words.name = QLatin1String("words");
    const QVector<ReadResult> results{resultOf(zones, {125, 0xFFFF}), resultOf(words, {7})};
    QTEST(readOutput(results, {zones, words}, static_cast<OutputFormat>(format)), "text");
}

void TestReadOutput::saysWhenAValueIsNone()
{
    const Tag tag = testTag("D_W:0@bcd4");
    QVERIFY(isAllGood({resultOf(tag, {0x1234})}, {tag}));
    QVERIFY(!isAllGood({resultOf(tag, {0x123A})}, {tag}));
    QVERIFY(!isAllGood({partly()}, plainTags({partly()})));
}

QTEST_APPLESS_MAIN(TestReadOutput)
#include "test_read_output.moc"
