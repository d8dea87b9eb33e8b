#include "panel/reports/identify_output.h"

#include "host/support/test_registers.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestIdentifyOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text();
    void textOfAll();
    void json();
    void csv();
};

namespace {

// 12.5 as a float; the two words mean little else.
ReadResult floatResult()
{
    return {testItem("D_W", 100, 2), {0, 0x4148}, {true, true}, {}};
}

} // namespace

void TestIdentifyOutput::text()
{
    QCOMPARE(identifyOutput(floatResult(), OutputFormat::Text, Readings::Plausible),
             QByteArray("1/D_W:100  0 0x0000      0000 0000 0000 0000\n"
                        "1/D_W:101  16712 0x4148  0100 0001 0100 1000\n"
                        "\n"
                        "1/D_W:100*2@u16            0, 16712\n"
                        "1/D_W:100*2@i16            0, 16712\n"
                        "1/D_W:100@u32              1095237632\n"
                        "1/D_W:100@u32 high-first   16712\n"
                        "1/D_W:100@i32              1095237632\n"
                        "1/D_W:100@i32 high-first   16712\n"
                        "1/D_W:100@f32              12.5\n"
                        "1/D_W:100*2@bcd4           0, 4148\n"
                        "1/D_W:100@bcd8             41480000\n"
                        "1/D_W:100@bcd8 high-first  4148\n"
                        "1/D_W:100@bit0 to 1/D_W:100@bit15\n"));
}

void TestIdentifyOutput::textOfAll()
{
    const QByteArray text = identifyOutput(floatResult(), OutputFormat::Text, Readings::All);
    QVERIFY2(text.contains("2.3418e-41  (very small)\n"), text.constData());
    QVERIFY2(text.contains("1/D_W:100@string4 "), text.constData());
    QVERIFY2(text.contains("\"\"  (empty)\n"), text.constData());
}

void TestIdentifyOutput::json()
{
    const auto lines = identifyOutput(floatResult(), OutputFormat::Json, Readings::Plausible);
    QVERIFY2(lines.contains("{\"event\":\"reading\",\"item\":\"1/D_W:100@f32\",\"plausible\":true,"
                            "\"type\":\"f32\",\"values\":[12.5]}\n"),
             lines.constData());
    QVERIFY2(lines.contains("{\"doubt\":\"empty\",\"event\":\"reading\","
                            "\"item\":\"1/D_W:100@string4\",\"plausible\":false,"
                            "\"type\":\"string4\",\"values\":[\"\"]}\n"),
             lines.constData());
    QVERIFY2(lines.contains("\"type\":\"bit3\",\"values\":[false,true]}\n"), lines.constData());
}

void TestIdentifyOutput::csv()
{
    const auto rows = identifyOutput(floatResult(), OutputFormat::Csv, Readings::Plausible);
    QVERIFY(rows.startsWith("item,type,plausible,doubt,values\n"
                            "1/D_W:100*2@u16,u16,yes,,\"0, 16712\"\n"));
    QVERIFY2(rows.contains("1/D_W:100@string4,string4,no,empty,\"\"\"\"\"\"\n"), rows.constData());
}

QTEST_APPLESS_MAIN(TestIdentifyOutput)
#include "test_identify_output.moc"
