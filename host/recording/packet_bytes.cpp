#include "host/recording/packet_bytes.h"

#include "host/capture/pcapng_numbers.h"

#include <QtEndian>

namespace cnet {

namespace {

quint16 numberAt(const QByteArray &data, int at)
{
    return qFromBigEndian<quint16>(data.constData() + at);
}

// Tags of a number, a length and a value, up to the one that ends them.
std::optional<PacketBytes> readExportedPdu(const QByteArray &data)
{
    constexpr int kHead = 4;
    const auto size = static_cast<int>(data.size());
    PacketBytes packet;
    bool ours = false;
    int at = 0;
    while (at <= size - kHead) {
        const quint16 tag = numberAt(data, at);
        const int length = numberAt(data, at + 2);
        at += kHead;
        if (length > size - at) {
            return std::nullopt;
        }
        if (tag == kEndTag) {
            packet.bytes = data.mid(at + length);
            return ours ? std::optional<PacketBytes>(packet) : std::nullopt;
        }
        const QByteArray value = data.mid(at, length);
        if (tag == kDissectorName) {
            // Some programs fill it up with zeros.
            ours = QByteArray(value.constData()) == kCnetDissector;
        } else if (tag == kPointToPointDirection && length == kHead) {
            packet.direction = qFromBigEndian<quint32>(value.constData()) == 0
                                   ? CaptureDirection::Sent
                                   : CaptureDirection::Received;
        }
        at += length;
    }
    return std::nullopt;
}

// A recorder notes other events, too, among them the beginning and the end of what it heard.
std::optional<PacketBytes> readRtacSerial(const QByteArray &data)
{
    constexpr int kHeader = 12;
    constexpr int kEventAt = 8;
    constexpr char kHighestEventOfBytes = 4; // 1 and 3 sent, 2 and 4 received
    if (data.size() < kHeader) {
        return std::nullopt;
    }
    const char event = data.at(kEventAt);
    if (event < 1 || event > kHighestEventOfBytes) {
        return std::nullopt;
    }
    PacketBytes packet;
    packet.bytes = data.mid(kHeader);
    packet.direction = event % 2 == 1 ? CaptureDirection::Sent : CaptureDirection::Received;
    return packet;
}

const char *nameOf(quint16 linkType)
{
    switch (linkType) {
    case 0:
        return ", loopback";
    case 1:
        return ", Ethernet";
    case 101:
        return ", IP";
    case 113:
    case 276:
        return ", all interfaces of a Linux system";
    case kRtacSerial:
        return ", serial line";
    case kExportedPdu:
        return ", exported PDU";
    default:
        return "";
    }
}

} // namespace

bool isLineType(quint16 linkType)
{
    return linkType == kExportedPdu || linkType == kRtacSerial;
}

std::optional<PacketBytes> readPacketBytes(quint16 linkType, const QByteArray &data)
{
    if (linkType == kExportedPdu) {
        return readExportedPdu(data);
    }
    return linkType == kRtacSerial ? readRtacSerial(data) : std::nullopt;
}

QString linkTypeText(quint16 linkType)
{
    return QString::fromLatin1("link type %1%2").arg(linkType).arg(QLatin1String(nameOf(linkType)));
}

} // namespace cnet
