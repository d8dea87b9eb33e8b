#include "plc/device_name.h"

#include <QtTest>

using namespace plc;

class TestDeviceName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void good_data();
    void good();
    void refused_data();
    void refused();
};

void TestDeviceName::good_data()
{
    QTest::addColumn<char>("device");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("address");
    const int word = int(PointKind::Word);
    const int bit = int(PointKind::Bit);
    const int contact = int(PointKind::Contact);
    QTest::newRow("%DW0100") << 'D' << word << 100;
    QTest::newRow("%DW1") << 'D' << word << 1;
    QTest::newRow("%DW0000000000100") << 'D' << word << 100;
    QTest::newRow("%Dw100") << 'D' << word << 100;
    QTest::newRow("%PW1") << 'P' << word << 1;
    QTest::newRow("%MW1") << 'M' << word << 1;
    QTest::newRow("%KW1") << 'K' << word << 1;
    QTest::newRow("%LW1") << 'L' << word << 1;
    QTest::newRow("%FW1") << 'F' << word << 1;
    QTest::newRow("%TW12") << 'T' << word << 12;
    QTest::newRow("%CW12") << 'C' << word << 12;
    QTest::newRow("%MX00001A") << 'M' << bit << 26;
    QTest::newRow("%MX1a") << 'M' << bit << 26;
    QTest::newRow("%Mx1F") << 'M' << bit << 31;
    QTest::newRow("%MXF") << 'M' << bit << 15;
    QTest::newRow("%PX10") << 'P' << bit << 16;
    QTest::newRow("%KX250") << 'K' << bit << 400;
    QTest::newRow("%LX0") << 'L' << bit << 0;
    QTest::newRow("%FX11") << 'F' << bit << 17;
    QTest::newRow("%TX000012") << 'T' << contact << 12;
    QTest::newRow("%Cx255") << 'C' << contact << 255;
    QTest::newRow("%DW9999999999999") << 'D' << word << 1000000;
    QTest::newRow("%MX999999999999F") << 'M' << bit << 16000015;
}

void TestDeviceName::good()
{
    QFETCH(int, kind);
    const auto named = readDeviceName(QTest::currentDataTag());
    QVERIFY(std::holds_alternative<Point>(named));
    const Point point = std::get<Point>(named);
    QTEST(point.device, "device");
    QCOMPARE(int(point.kind), kind);
    QTEST(point.address, "address");
}

void TestDeviceName::refused_data()
{
    QTest::addColumn<int>("code");
    for (const char *malformed : {"", "%", "%D", "%DW", "DW0100", "%DW01A0", "%DW-100", "%DW 100",
                                  "%MXG", "%MX1AF", "%MXA1", "%TX1A", "%TX", "$DW100", "%DW1.5"}) {
        QTest::newRow(malformed) << 0x0011;
    }
    for (const char *unknownDevice : {"%ZW0100", "%SW0100", "%dW100", "%%W100"}) {
        QTest::newRow(unknownDevice) << 0x1132;
    }
    for (const char *unknownType : {"%DB100", "%DD100", "%DX1000", "%Dx1000", "%MB10", "%TB10"}) {
        QTest::newRow(unknownType) << 0x0007;
    }
}

void TestDeviceName::refused()
{
    QFETCH(int, code);
    const auto named = readDeviceName(QTest::currentDataTag());
    QVERIFY(std::holds_alternative<Refusal>(named));
    QCOMPARE(int(std::get<Refusal>(named)), code);
}

QTEST_APPLESS_MAIN(TestDeviceName)
#include "test_device_name.moc"
