#include "sparkplug/wire/packet_cutter.h"

namespace spcheck {

namespace {

/** Reads a packet's body from its begin. */
class Body
{
public:
    explicit Body(const QByteArray &bytes)
        : m_bytes(bytes)
    {}

    bool atEnd() const { return m_at >= m_bytes.size(); }
    int byte() { return atEnd() ? 0 : static_cast<quint8>(m_bytes.at(m_at++)); }
    int word()
    {
        const int high = byte();
        return high * 256 + byte();
    }
    QByteArray text()
    {
        const int size = word();
        return take(size);
    }
    QByteArray take(int size)
    {
        QByteArray taken = m_bytes.mid(m_at, size);
        m_at += size;
        return taken;
    }
    QByteArray rest() { return take(int(m_bytes.size())); }
    int length()
    {
        int value = 0;
        for (int shift = 0; shift < 28; shift += 7) {
            const int part = byte();
            value |= (part & 127) << shift;
            if (part < 128) {
                break;
            }
        }
        return value;
    }

private:
    QByteArray m_bytes;
    int m_at = 0;
};

constexpr int kSessionExpiry = 17;

/** The expiry of the session, as far as it stands in front; other clients are none of ours. */
quint32 expiryIn(const QByteArray &properties)
{
    Body body(properties);
    if (body.byte() != kSessionExpiry) {
        return 0;
    }
    const auto high = static_cast<quint32>(body.word());
    return high << 16 | static_cast<quint32>(body.word());
}

Packet readConnect(const RawPacket &raw, int &protocol)
{
    Packet packet;
    packet.kind = Packet::Kind::Connect;
    Body body(raw.body);
    body.text();
    protocol = packet.protocol = body.byte();
    const int flags = body.byte();
    packet.isClean = (flags & 2) != 0;
    packet.keepAliveS = body.word();
    if (protocol == 5) {
        packet.sessionExpiry = expiryIn(body.take(body.length()));
    }
    packet.clientId = body.text();
    if ((flags & 4) != 0) {
        Message will;
        if (protocol == 5) {
            body.take(body.length());
        }
        will.topic = body.text();
        will.payload = body.text();
        will.qos = flags >> 3 & 3;
        will.isRetained = (flags & 32) != 0;
        packet.will = will;
    }
    packet.user = (flags & 128) != 0 ? body.text() : QByteArray();
    return packet;
}

Packet readPublish(const RawPacket &raw, int protocol)
{
    Packet packet;
    Body body(raw.body);
    packet.message.qos = raw.flags >> 1 & 3;
    packet.message.isRetained = (raw.flags & 1) != 0;
    packet.message.topic = body.text();
    if (packet.message.qos > 0) {
        body.word();
    }
    if (protocol == 5) {
        body.take(body.length());
    }
    packet.message.payload = body.rest();
    return packet;
}

Packet readSubscribe(const RawPacket &raw, int protocol)
{
    Packet packet;
    packet.kind = Packet::Kind::Subscribe;
    Body body(raw.body);
    body.word();
    if (protocol == 5) {
        body.take(body.length());
    }
    while (!body.atEnd()) {
        const QByteArray filter = body.text();
        packet.filters.append({filter, body.byte() & 3});
    }
    return packet;
}

} // namespace

int RawPacket::id() const
{
    Body content(body);
    if (type == Publish) {
        content.text();
    }
    return content.word();
}

QByteArray RawPacket::bytes() const
{
    QByteArray bytes(1, static_cast<char>(type << 4 | flags));
    for (int left = int(body.size());;) {
        const int part = left & 127;
        left >>= 7;
        bytes.append(static_cast<char>(left > 0 ? part | 128 : part));
        if (left == 0) {
            return bytes + body;
        }
    }
}

QList<RawPacket> PacketCutter::feed(const QByteArray &bytes)
{
    m_bytes += bytes;
    QList<RawPacket> packets;
    RawPacket packet;
    int from = 0;
    while (cut(packet, from)) {
        packets.append(packet);
    }
    m_bytes.remove(0, from);
    return packets;
}

bool PacketCutter::cut(RawPacket &packet, int &from) const
{
    int size = 0;
    int at = from + 1;
    for (int shift = 0;; shift += 7, ++at) {
        if (at >= m_bytes.size() || shift > 21) {
            return false;
        }
        size |= (m_bytes.at(at) & 127) << shift;
        if ((m_bytes.at(at) & 128) == 0) {
            break;
        }
    }
    ++at;
    if (m_bytes.size() < at + size) {
        return false;
    }
    packet.type = static_cast<quint8>(m_bytes.at(from)) >> 4;
    packet.flags = m_bytes.at(from) & 15;
    packet.body = m_bytes.mid(at, size);
    from = at + size;
    return true;
}

std::optional<Packet> readPacket(const RawPacket &raw, Packet::From from, int &protocol)
{
    Packet packet;
    switch (raw.type) {
    case RawPacket::Connect:
        packet = readConnect(raw, protocol);
        break;
    case RawPacket::Publish:
        packet = readPublish(raw, protocol);
        break;
    case RawPacket::Subscribe:
        packet = readSubscribe(raw, protocol);
        break;
    case RawPacket::Disconnect:
        packet.kind = Packet::Kind::Disconnect;
        break;
    default:
        return std::nullopt;
    }
    packet.from = from;
    return packet;
}

} // namespace spcheck
