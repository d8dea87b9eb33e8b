#include "gateway/main/history_output.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::gateway;

class TestHistoryOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "CET-1"); }
    void showsEachForm_data();
    void showsEachForm();
};

namespace {

HistoryRow rowOf(const Scalar &value, const char *quality = "good", const char *reason = "")
{
    HistoryRow row;
    row.line = QLatin1String("press");
    row.tag.name = QLatin1String("press.speed");
    row.tag.item.station = 2;
    row.tag.unit = QLatin1String("1/min");
    row.tag.type.kind = ValueKind::U16;
    row.tag.scale = 0.1;
    row.atMs = 1700000000123;
    row.value.value = value;
    row.quality = QLatin1String(quality);
    row.reason = QLatin1String(reason);
    return row;
}

struct Shown
{
    const char *what;
    HistoryRow row;
    const char *text;
    const char *csv;
    const char *json;
};

const Shown kRows[] = {
    {"good", rowOf(12.0), "2023-11-14 23:13:20.123  press.speed  12.0 1/min",
     "2023-11-14T22:13:20.123Z,press,2,press.speed,12.0,1/min,good,",
     R"({"line":"press","quality":"good","station":2,"tag":"press.speed",)"
     R"("time":"2023-11-14T22:13:20.123Z","unit":"1/min","value":12})"},
    {"bad", rowOf(12.5, "no answer", "timed out, twice"),
     "2023-11-14 23:13:20.123  press.speed  12.5 1/min  (no answer: timed out, twice)",
     "2023-11-14T22:13:20.123Z,press,2,press.speed,12.5,1/min,no answer,\"timed out, twice\"",
     R"({"line":"press","quality":"no answer","reason":"timed out, twice","station":2,)"
     R"("tag":"press.speed","time":"2023-11-14T22:13:20.123Z","unit":"1/min","value":12.5})"},
    {"never read", rowOf(Scalar(), "line down"),
     "2023-11-14 23:13:20.123  press.speed  -  (line down)",
     "2023-11-14T22:13:20.123Z,press,2,press.speed,,1/min,line down,",
     R"({"line":"press","quality":"line down","station":2,"tag":"press.speed",)"
     R"("time":"2023-11-14T22:13:20.123Z","unit":"1/min","value":null})"},
    {"text", rowOf(QLatin1String("a,\"b")),
     "2023-11-14 23:13:20.123  press.speed  \"a,\\\"b\" 1/min",
     "2023-11-14T22:13:20.123Z,press,2,press.speed,\"a,\"\"b\",1/min,good,",
     R"({"line":"press","quality":"good","station":2,"tag":"press.speed",)"
     R"("time":"2023-11-14T22:13:20.123Z","unit":"1/min","value":"a,\"b"})"},
};

} // namespace

void TestHistoryOutput::showsEachForm_data()
{
    addRows(kRows);
}

void TestHistoryOutput::showsEachForm()
{
    const auto &row = currentRow(kRows);
    const auto line = [&row](HistoryFormat format) {
        return historyLine(format, row.row).trimmed();
    };
    QCOMPARE(line(HistoryFormat::Text), QLatin1String(row.text));
    QCOMPARE(line(HistoryFormat::Csv), QLatin1String(row.csv));
    QCOMPARE(line(HistoryFormat::Json), QLatin1String(row.json));
    QCOMPARE(historyHeader(HistoryFormat::Csv).count(QLatin1Char(',')), 7);
}

QTEST_APPLESS_MAIN(TestHistoryOutput)
#include "test_history_output.moc"
