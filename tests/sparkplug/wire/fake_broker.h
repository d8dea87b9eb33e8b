#pragma once

#include "sparkplug/wire/stream_recorder.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

namespace spcheck {

/** A broker that answers as it is told to, brings nothing to anybody, and keeps what it is told. */
class FakeBroker
{
public:
    enum class Manner {
        Welcomes, ///< and says yes to everything
        Refuses,  ///< each CONNECT
        HangsUp   ///< at each CONNECT
    };
    Manner manner = Manner::Welcomes;

    bool start()
    {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
        return m_server.listen(QHostAddress::LocalHost);
    }

    quint16 port() const { return m_server.serverPort(); }
    Stream stream() const { return m_recorder.stream(); }
    int count(const QByteArray &kind) const { return m_recorder.count(kind); }

    /** All CONNECT packets, in their order. */
    QList<Packet> connects() const
    {
        QList<Packet> connects;
        for (const Packet &packet : stream()) {
            if (packet.kind == Packet::Kind::Connect) {
                connects.append(packet);
            }
        }
        return connects;
    }

    /** The connection ends, as where a cable is pulled. */
    void cut()
    {
        if (m_socket != nullptr) {
            m_socket->abort();
        }
    }

private:
    void accept()
    {
        QTcpSocket *const socket = m_server.nextPendingConnection();
        m_socket = socket;
        const int number = m_recorder.begin();
        auto cutter = std::make_shared<PacketCutter>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, cutter, number] {
            const QByteArray bytes = socket->readAll();
            m_recorder.hearNode(number, bytes);
            for (const RawPacket &raw : cutter->feed(bytes)) {
                if (raw.type == RawPacket::Connect && manner == Manner::HangsUp) {
                    socket->abort();
                    return;
                }
                socket->write(answerTo(raw));
            }
        });
        QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, socket, number] {
            m_recorder.end(number);
            m_socket = m_socket == socket ? nullptr : m_socket;
            socket->deleteLater();
        });
    }

    QByteArray answerTo(const RawPacket &raw)
    {
        if (raw.type == RawPacket::Connect) {
            m_isFive = raw.body.size() > 6 && raw.body.at(6) == 5;
        }
        const int id = raw.id();
        const QByteArray number{QByteArray(1, static_cast<char>(id >> 8)) +
                                static_cast<char>(id & 255)};
        const QByteArray none = m_isFive ? QByteArray(1, '\0') : QByteArray(); // properties
        const char refusal = m_isFive ? '\x87' : '\5';                         // not authorised
        const char code = manner == Manner::Refuses ? refusal : '\0';
        switch (raw.type) {
        case RawPacket::Connect:
            return RawPacket{RawPacket::Connack, 0, QByteArray(1, '\0') + code + none}.bytes();
        case RawPacket::Subscribe:
            return RawPacket{RawPacket::Suback, 0, number + none + '\1'}.bytes();
        case RawPacket::Publish:
            return (raw.flags & 6) == 0 ? QByteArray()
                                        : RawPacket{RawPacket::Puback, 0, number}.bytes();
        case RawPacket::PingRequest:
            return RawPacket{RawPacket::PingAnswer, 0, QByteArray()}.bytes();
        default:
            return {};
        }
    }

    StreamRecorder m_recorder;
    QTcpSocket *m_socket = nullptr; ///< of the newest connection, as long as it is there
    bool m_isFive = false;
    QTcpServer m_server; ///< its sockets tell of their end
};

} // namespace spcheck
