#include "sparkplug/wire/stream_recorder.h"

#include <utility>

namespace spcheck {

namespace {

Packet eventOf(Packet::Kind kind)
{
    Packet packet;
    packet.kind = kind;
    return packet;
}

} // namespace

int StreamRecorder::begin()
{
    m_connections.emplace_back();
    m_connections.back().isBehindRestart = std::exchange(m_isRestarted, false);
    return static_cast<int>(m_connections.size()) - 1;
}

void StreamRecorder::hear(int connection, const QByteArray &bytes, bool isNode)
{
    Connection &own = m_connections.at(static_cast<size_t>(connection));
    for (const RawPacket &raw : (isNode ? own.fromNode : own.fromBroker).feed(bytes)) {
        const auto from = isNode ? Packet::From::Node : Packet::From::Broker;
        if (const auto packet = readPacket(raw, from, own.protocol)) {
            own.packets.append(*packet);
        }
    }
}

void StreamRecorder::end(int connection)
{
    m_connections.at(static_cast<size_t>(connection)).isOver = true;
}

Stream StreamRecorder::stream() const
{
    Stream all;
    for (const Connection &own : m_connections) {
        if (own.isBehindRestart) {
            all.append(eventOf(Packet::Kind::Restarted));
        }
        all += own.packets;
        const bool isLast = &own == &m_connections.back();
        if (own.packets.isEmpty()) {
            all.append(eventOf(Packet::Kind::Attempted));
        } else if (own.isOver || !isLast) {
            all.append(eventOf(Packet::Kind::Closed));
        }
    }
    return all;
}

int StreamRecorder::count(const QByteArray &kind) const
{
    int count = 0;
    for (const Connection &own : m_connections) {
        for (const Packet &packet : own.packets) {
            const bool isPublished =
                packet.kind == Packet::Kind::Publish && packet.from == Packet::From::Node;
            count += isPublished && packet.message.topic.split('/').value(2) == kind ? 1 : 0;
        }
    }
    return count;
}

} // namespace spcheck
