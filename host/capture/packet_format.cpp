#include "host/capture/packet_format.h"

#include "host/capture/pcapng_numbers.h"

#include <QtEndian>

namespace cnet {

namespace {

// Big-endian, unlike the blocks around it.
template <typename Number>
void append(QByteArray &to, Number number)
{
    char bytes[sizeof number];
    qToBigEndian(number, bytes);
    to.append(bytes, static_cast<int>(sizeof number));
}

// Tags begin at multiples of four bytes; the name has just four.
QByteArray exportedPduHeader(CaptureDirection direction)
{
    const QByteArray dissector(kCnetDissector);
    const quint32 sent = 0;
    const quint32 received = 1;
    QByteArray header;
    append(header, kDissectorName);
    append(header, static_cast<quint16>(dissector.size()));
    header += dissector;
    append(header, kPointToPointDirection);
    append(header, static_cast<quint16>(sizeof sent));
    append(header, direction == CaptureDirection::Sent ? sent : received);
    append(header, kEndTag);
    append(header, quint16(0));
    return header;
}

QByteArray rtacHeader(CaptureDirection direction, qint64 sinceStartNs)
{
    constexpr qint64 kNsPerSecond = 1000000000;
    constexpr qint64 kNsPerMicrosecond = 1000;
    const quint8 transmission = 1;
    const quint8 reception = 2;
    QByteArray header;
    append(header, static_cast<quint32>(sinceStartNs / kNsPerSecond));
    append(header, static_cast<quint32>(sinceStartNs % kNsPerSecond / kNsPerMicrosecond));
    append(header, direction == CaptureDirection::Sent ? transmission : reception);
    append(header, quint8(0));  // control lines are not watched
    append(header, quint16(0)); // reserved
    return header;
}

} // namespace

quint16 linkTypeOf(CaptureFormat format)
{
    return format == CaptureFormat::ExportedPdu ? kExportedPdu : kRtacSerial;
}

QByteArray packetData(CaptureFormat format, CaptureDirection direction, qint64 sinceStartNs,
                      const QByteArray &bytes)
{
    return (format == CaptureFormat::ExportedPdu ? exportedPduHeader(direction)
                                                 : rtacHeader(direction, sinceStartNs)) +
           bytes;
}

} // namespace cnet
