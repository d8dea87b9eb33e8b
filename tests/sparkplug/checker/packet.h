#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

#include <optional>

namespace spcheck {

/** A message that is published. */
struct Message
{
    QByteArray topic;
    QByteArray payload;
    int qos = 0;
    bool isRetained = false;
};

/** One event between an edge node and its broker, as it went over the wire. */
struct Packet
{
    enum class Kind {
        Connect,
        Subscribe,
        Publish,
        Disconnect,
        Closed,
        Attempted, ///< a connection in which the node said nothing, or nothing that was heard
        Restarted  ///< the node's program was started again
    };
    enum class From { Node, Broker };

    Kind kind = Kind::Publish;
    From from = From::Node;
    Message message; ///< of Publish
    // Of Connect:
    int protocol = 4; ///< 4 for 3.1.1, 5
    bool isClean = true;
    quint32 sessionExpiry = 0; ///< of 5
    int keepAliveS = 0;
    QByteArray clientId;
    QByteArray user;
    std::optional<Message> will;
    // Of Subscribe:
    QList<QPair<QByteArray, int>> filters; ///< with their QoS
};

using Stream = QList<Packet>;

} // namespace spcheck
