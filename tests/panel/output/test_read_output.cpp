#include "host/support/test_registers.h"

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
    QTEST(readOutput(results, static_cast<OutputFormat>(format)), "text");
}

QTEST_APPLESS_MAIN(TestReadOutput)
#include "test_read_output.moc"
