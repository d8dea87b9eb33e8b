#pragma once

#include "sparkplug/checker/packet.h"

namespace spcheck {

/** An MQTT packet as it is on the wire. */
struct RawPacket
{
    enum Type {
        Connect = 1,
        Connack = 2,
        Publish = 3,
        Puback = 4,
        Subscribe = 8,
        Suback = 9,
        PingRequest = 12,
        PingAnswer = 13,
        Disconnect = 14
    };

    int type = 0;
    int flags = 0;
    QByteArray body;

    /** The number by which it is confirmed; of Publish with a QoS, and of Subscribe. */
    int id() const;
    QByteArray bytes() const;
};

/** Cuts what one side of a connection sends into packets. */
class PacketCutter
{
public:
    /** @return all that are whole now */
    QList<RawPacket> feed(const QByteArray &bytes);

private:
    bool cut(RawPacket &packet, int &from) const;

    QByteArray m_bytes; ///< of packets that are not whole yet
};

/**
 * What the checker sees of it.
 * @param protocol of the connection; of Connect its own is taken and kept there
 * @return nothing for what it does not look at
 */
std::optional<Packet> readPacket(const RawPacket &raw, Packet::From from, int &protocol);

} // namespace spcheck
