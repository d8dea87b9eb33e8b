#include "host/capture/pcapng_block.h"

#include "host/capture/pcapng_numbers.h"

#include <QtEndian>

namespace cnet {

namespace {

constexpr quint8 kNanoseconds = 9; // ten to the minus ninth

template <typename Number>
void append(QByteArray &to, Number number)
{
    char bytes[sizeof number];
    qToLittleEndian(number, bytes);
    to.append(bytes, static_cast<int>(sizeof number));
}

void appendPadded(QByteArray &to, const QByteArray &bytes)
{
    to += bytes;
    const auto padding = (kBlockAlignment - bytes.size() % kBlockAlignment) % kBlockAlignment;
    to.append(static_cast<int>(padding), '\0');
}

void appendOption(QByteArray &to, quint16 code, const QByteArray &value)
{
    append(to, code);
    append(to, static_cast<quint16>(value.size()));
    appendPadded(to, value);
}

template <typename Number>
void appendNumberOption(QByteArray &to, quint16 code, Number number)
{
    QByteArray value;
    append(value, number);
    appendOption(to, code, value);
}

// The length stands on both ends, so that a file can be read backwards.
QByteArray block(quint32 type, const QByteArray &body)
{
    const auto length = static_cast<quint32>(body.size() + kBesidesBody);
    QByteArray all;
    all.reserve(static_cast<int>(length));
    append(all, type);
    append(all, length);
    all += body;
    append(all, length);
    return all;
}

} // namespace

QByteArray sectionBlock(const QString &program)
{
    QByteArray body;
    append(body, kByteOrderMagic);
    append(body, quint16(1)); // version 1.0
    append(body, quint16(0));
    append(body, qint64(-1)); // a length that is not known yet
    appendOption(body, kSectionProgram, program.toUtf8());
    appendOption(body, kEndOfOptions, {});
    return block(kSectionBlock, body);
}

QByteArray interfaceBlock(quint16 linkType, const QString &name)
{
    QByteArray body;
    append(body, linkType);
    append(body, quint16(0));
    append(body, quint32(0)); // packets are never cut
    appendOption(body, kInterfaceName, name.toUtf8());
    appendNumberOption(body, kTimeResolution, kNanoseconds);
    appendOption(body, kEndOfOptions, {});
    return block(kInterfaceBlock, body);
}

QByteArray packetBlock(const CapturePacket &packet)
{
    constexpr int kUpperHalf = 32;
    const auto size = static_cast<quint32>(packet.data.size());
    constexpr int kMostBesides = 64;
    const QByteArray comment = packet.comment.toUtf8();
    QByteArray body;
    body.reserve(static_cast<int>(packet.data.size() + comment.size()) + kMostBesides);
    append(body, packet.interfaceNumber);
    append(body, static_cast<quint32>(packet.timeNs >> kUpperHalf));
    append(body, static_cast<quint32>(packet.timeNs));
    append(body, size);
    append(body, size);
    appendPadded(body, packet.data);
    appendNumberOption(body, kPacketFlags,
                       packet.direction == CaptureDirection::Received ? kInbound : kOutbound);
    if (packet.lost > 0) {
        appendNumberOption(body, kLostPackets, packet.lost);
    }
    if (!comment.isEmpty()) {
        appendOption(body, kComment, comment);
    }
    appendOption(body, kEndOfOptions, {});
    return block(kPacketBlock, body);
}

} // namespace cnet
