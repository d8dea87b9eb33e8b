#include "plc/wire/device_name.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const PointKind word = PointKind::Word;
static const PointKind bit = PointKind::Bit;
static const PointKind contact = PointKind::Contact;

static const struct
{
    const char *what;
    char device;
    PointKind kind;
    int address;
} kGood[] = {
    {"%DW0100", 'D', word, 100},
    {"%DW1", 'D', word, 1},
    {"%DW0000000000100", 'D', word, 100},
    {"%Dw100", 'D', word, 100},
    {"%PW1", 'P', word, 1},
    {"%MW1", 'M', word, 1},
    {"%KW1", 'K', word, 1},
    {"%LW1", 'L', word, 1},
    {"%FW1", 'F', word, 1},
    {"%TW12", 'T', word, 12},
    {"%CW12", 'C', word, 12},
    {"%MX00001A", 'M', bit, 26},
    {"%MX1a", 'M', bit, 26},
    {"%Mx1F", 'M', bit, 31},
    {"%MXF", 'M', bit, 15},
    {"%PX10", 'P', bit, 16},
    {"%KX250", 'K', bit, 400},
    {"%LX0", 'L', bit, 0},
    {"%FX11", 'F', bit, 17},
    {"%TX000012", 'T', contact, 12},
    {"%Cx255", 'C', contact, 255},
    {"%DW9999999999999", 'D', word, 1000000},
    {"%MX999999999999F", 'M', bit, 16000015},
};

class TestDeviceName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void good_data() { addRows(kGood); }
    void good()
    {
        const auto &row = currentRow(kGood);
        const auto named = readDeviceName(row.what);
        QVERIFY(std::holds_alternative<Point>(named));
        const Point point = std::get<Point>(named);
        QCOMPARE(point.device, row.device);
        QVERIFY(point.kind == row.kind);
        QCOMPARE(point.address, row.address);
    }

    void refused_data()
    {
        QTest::addColumn<int>("code");
        for (const char *malformed :
             {"", "%", "%D", "%DW", "DW0100", "%DW01A0", "%DW-100", "%DW 100", "%MXG", "%MX1AF",
              "%MXA1", "%TX1A", "%TX", "$DW100", "%DW1.5"}) {
            QTest::newRow(malformed) << 0x0011;
        }
        for (const char *unknownDevice : {"%ZW0100", "%SW0100", "%dW100", "%%W100"}) {
            QTest::newRow(unknownDevice) << 0x1132;
        }
        for (const char *unknownType :
             {"%DB100", "%DD100", "%DX1000", "%Dx1000", "%MB10", "%TB10"}) {
            QTest::newRow(unknownType) << 0x0007;
        }
    }

    void refused()
    {
        QFETCH(int, code);
        const auto named = readDeviceName(QTest::currentDataTag());
        QVERIFY(std::holds_alternative<Refusal>(named));
        QCOMPARE(int(std::get<Refusal>(named)), code);
    }
};

QTEST_APPLESS_MAIN(TestDeviceName)
#include "test_device_name.moc"
