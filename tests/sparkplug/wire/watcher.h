#pragma once

#include "sparkplug/wire/packet_cutter.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QTcpSocket>

namespace spcheck {

/** A subscriber of all topics, beside the gateway. */
class Watcher
{
public:
    /** @return false when the broker did not take it */
    bool start(quint16 port)
    {
        m_socket.abort();
        m_cutter = PacketCutter();
        m_isSubscribed = false;
        m_socket.connectToHost(QHostAddress::LocalHost, port);
        const QByteArray name("\0\4MQTT\4\2\0\0\0\7watcher", 19);
        const QByteArray all("\0\1\0\1#\0", 6);
        m_socket.write(RawPacket{RawPacket::Connect, 0, name}.bytes());
        m_socket.write(RawPacket{RawPacket::Subscribe, 2, all}.bytes());
        QElapsedTimer clock;
        clock.start();
        while (!m_isSubscribed && clock.elapsed() < kPatienceMs) {
            m_socket.waitForReadyRead(20);
            seen();
        }
        return m_isSubscribed;
    }

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }

    /** All so far. */
    const QList<Message> &seen()
    {
        for (const RawPacket &raw : m_cutter.feed(m_socket.readAll())) {
            int protocol = 4;
            const auto packet = readPacket(raw, Packet::From::Broker, protocol);
            m_isSubscribed = m_isSubscribed || raw.type == RawPacket::Suback;
            if (packet && packet->kind == Packet::Kind::Publish) {
                m_seen.append(packet->message);
            }
        }
        return m_seen;
    }

    /** Publishes with QoS 0. */
    void publish(const Message &message)
    {
        const auto size = static_cast<int>(message.topic.size());
        const QByteArray topic =
            QByteArray(1, static_cast<char>(size >> 8)) + static_cast<char>(size & 255);
        m_socket.write(RawPacket{RawPacket::Publish, message.isRetained ? 1 : 0,
                                 topic + message.topic + message.payload}
                           .bytes());
        m_socket.flush();
    }

private:
    static constexpr int kPatienceMs = 10000;

    QTcpSocket m_socket;
    PacketCutter m_cutter;
    QList<Message> m_seen;
    bool m_isSubscribed = false;
};

} // namespace spcheck
