#include "host/capture/packet_format.h"

#include <QtTest>

using namespace cnet;

/** What stands in front of the bytes of a packet, byte for byte. */
class TestPacketFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void packet_data();
    void packet();
};

void TestPacketFormat::packet_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("direction");
    QTest::addColumn<int>("linkType");
    QTest::addColumn<QByteArray>("header");
    const auto row = [](const char *name, CaptureFormat format, CaptureDirection direction,
                        int linkType, const char *header) {
        QTest::newRow(name) << static_cast<int>(format) << static_cast<int>(direction) << linkType
                            << QByteArray::fromHex(header);
    };
    row("pdu sent", CaptureFormat::ExportedPdu, CaptureDirection::Sent, 252,
        "000c 0004 636e6574 0023 0004 00000000 0000 0000");
    row("pdu received", CaptureFormat::ExportedPdu, CaptureDirection::Received, 252,
        "000c 0004 636e6574 0023 0004 00000001 0000 0000");
    row("rtac sent", CaptureFormat::RtacSerial, CaptureDirection::Sent, 250,
        "00000102 000f1206 01 00 0000");
    row("rtac received", CaptureFormat::RtacSerial, CaptureDirection::Received, 250,
        "00000102 000f1206 02 00 0000");
}

void TestPacketFormat::packet()
{
    QFETCH(int, format);
    QFETCH(int, direction);
    QFETCH(int, linkType);
    QFETCH(QByteArray, header);
    const auto as = static_cast<CaptureFormat>(format);
    QCOMPARE(static_cast<int>(linkTypeOf(as)), linkType);
    // 258 seconds and 987654 microseconds
    QCOMPARE(packetData(as, static_cast<CaptureDirection>(direction), 258987654321, "frame"),
             header + "frame");
}

QTEST_GUILESS_MAIN(TestPacketFormat)
#include "test_packet_format.moc"
