#pragma once

#include "sparkplug/wire/packet_cutter.h"

#include <vector>

namespace spcheck {

/**
 * Keeps what went between an edge node and its broker, for the checker. Whoever stands between them
 * says what it hears: one connection after the other, also where their ends overlap.
 */
class StreamRecorder
{
public:
    /** A connection came from the node. @return its number */
    int begin();
    void hearNode(int connection, const QByteArray &bytes) { hear(connection, bytes, true); }
    void hearBroker(int connection, const QByteArray &bytes) { hear(connection, bytes, false); }
    void end(int connection);

    /** The node's program was started again. */
    void noteRestart() { m_isRestarted = true; }

    /** All so far, connection by connection. */
    Stream stream() const;

    /** How many messages of a kind the node published: "NBIRTH". */
    int count(const QByteArray &kind) const;

private:
    struct Connection
    {
        Stream packets;
        PacketCutter fromNode;
        PacketCutter fromBroker;
        int protocol = 4;
        bool isOver = false;
        bool isBehindRestart = false;
    };

    void hear(int connection, const QByteArray &bytes, bool isNode);

    std::vector<Connection> m_connections;
    bool m_isRestarted = false;
};

} // namespace spcheck
