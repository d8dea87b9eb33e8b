#include "support/rows.h"

#include <host/capture/packet_format.h>
#include <host/recording/packet_bytes.h>

using namespace cnet;

class TestPacketBytes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsWritten();
    void readsWhatOthersWrite_data();
    void readsWhatOthersWrite();
    void leavesTheRestOut_data();
    void leavesTheRestOut();
    void namesLinkTypes();
};

namespace {

const quint16 kPdu = 252;
const quint16 kRtac = 250;
const int kNotSaid = -1;

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

struct Other
{
    const char *what;
    quint16 linkType;
    QByteArray data;
    int direction; ///< CaptureDirection
};

const Other kOthers[] = {
    {"no direction", kPdu, hex("000c0004") + "cnet" + hex("00000000") + "abc", kNotSaid},
    {"a name that is filled up", kPdu,
     hex("000c0008") + QByteArray("cnet\0\0\0\0", 8) + hex("0023000400000001 00000000") + "abc",
     static_cast<int>(CaptureDirection::Received)},
    {"tags between", kPdu,
     hex("0001000400000000 000c0004") + "cnet" + hex("0023000400000000 00000000") + "abc",
     static_cast<int>(CaptureDirection::Sent)},
    {"the end of what was sent", kRtac, hex("00000000 00000000 03 00 0000") + "abc",
     static_cast<int>(CaptureDirection::Sent)},
    {"the end of what was received", kRtac, hex("00000000 00000000 04 00 0000") + "abc",
     static_cast<int>(CaptureDirection::Received)},
};

const Case<quint16, QByteArray> kRest[] = {
    {"another protocol", kPdu, hex("000c0004") + "http" + hex("00000000") + "abc"},
    {"no protocol", kPdu, hex("00000000") + "abc"},
    {"no end tag", kPdu, hex("000c0004") + "cnet"},
    {"a tag longer than the packet", kPdu, hex("000c00ff") + "cnet"},
    {"half a tag", kPdu, hex("000c")},
    {"nothing", kPdu, QByteArray()},
    {"half a header", kRtac, QByteArray(11, '\1')},
    {"a change of control lines", kRtac, QByteArray(12, '\0')},
    {"another event", kRtac, hex("00000000 00000000 05 00 0000")},
    {"an event of 128", kRtac, hex("00000000 00000000 80 00 0000")},
    {"Ethernet", 1, QByteArray(60, '\0')},
};

} // namespace

void TestPacketBytes::readsWhatIsWritten()
{
    for (const CaptureFormat format : {CaptureFormat::ExportedPdu, CaptureFormat::RtacSerial}) {
        for (const auto direction : {CaptureDirection::Sent, CaptureDirection::Received}) {
            for (const QByteArray &bytes : {QByteArray(), QByteArray("\0\5abc", 5)}) {
                const auto read =
                    readPacketBytes(linkTypeOf(format), packetData(format, direction, 1234, bytes));
                QVERIFY(read);
                QCOMPARE(read->bytes, bytes);
                QVERIFY(read->direction == direction);
            }
        }
    }
}

void TestPacketBytes::readsWhatOthersWrite_data()
{
    addRows(kOthers);
}

void TestPacketBytes::readsWhatOthersWrite()
{
    const Other &row = currentRow(kOthers);
    const auto read = readPacketBytes(row.linkType, row.data);
    QVERIFY(read);
    QCOMPARE(read->bytes, QByteArray("abc"));
    QCOMPARE(read->direction ? static_cast<int>(*read->direction) : kNotSaid, row.direction);
}

void TestPacketBytes::leavesTheRestOut_data()
{
    addRows(kRest);
}

void TestPacketBytes::leavesTheRestOut()
{
    const auto &row = currentRow(kRest);
    QVERIFY(!readPacketBytes(row.given, row.expected));
}

void TestPacketBytes::namesLinkTypes()
{
    QVERIFY(isLineType(kPdu) && isLineType(kRtac) && !isLineType(1));
    QCOMPARE(linkTypeText(1), QLatin1String("link type 1, Ethernet"));
    QCOMPARE(linkTypeText(999), QLatin1String("link type 999"));
}

QTEST_APPLESS_MAIN(TestPacketBytes)
#include "test_packet_bytes.moc"
