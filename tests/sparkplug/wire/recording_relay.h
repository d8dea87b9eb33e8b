#pragma once

#include "sparkplug/wire/stream_recorder.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

namespace spcheck {

/** Stands between a client and its broker, and keeps what goes through. */
class RecordingRelay
{
public:
    /** @return false when it cannot listen */
    bool start(quint16 brokerPort)
    {
        m_brokerPort = brokerPort;
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
        return m_server.listen(QHostAddress::LocalHost);
    }

    quint16 port() const { return m_server.serverPort(); }
    Stream stream() const { return m_recorder.stream(); }
    int count(const QByteArray &kind) const { return m_recorder.count(kind); }
    void noteRestart() { m_recorder.noteRestart(); }

    /** Cuts the connection behind so many more bytes of the client; negative: never. */
    void cutAfter(int bytes) { m_left = bytes; }

private:
    /** One connection, with both of its sides. */
    struct Pair
    {
        QTcpSocket *client = nullptr;
        QTcpSocket broker;
        int number = 0;
        bool isOver = false;
    };

    void accept()
    {
        auto pair = std::make_shared<Pair>();
        pair->client = m_server.nextPendingConnection();
        pair->number = m_recorder.begin();
        const auto end = [this, pair] { finish(*pair); };
        QObject::connect(pair->client, &QTcpSocket::readyRead, pair->client, [this, pair] {
            QByteArray bytes = pair->client->readAll();
            const bool isCut = m_left >= 0 && bytes.size() > m_left;
            bytes = isCut ? bytes.left(m_left) : bytes;
            m_left = m_left < 0 ? m_left : m_left - int(bytes.size());
            m_recorder.hearNode(pair->number, bytes);
            pair->broker.write(bytes);
            if (isCut) {
                m_left = -1;
                pair->broker.flush();
                finish(*pair);
            }
        });
        QObject::connect(&pair->broker, &QTcpSocket::readyRead, pair->client, [this, pair] {
            const QByteArray bytes = pair->broker.readAll();
            m_recorder.hearBroker(pair->number, bytes);
            pair->client->write(bytes);
        });
        QObject::connect(pair->client, &QTcpSocket::disconnected, pair->client, end);
        QObject::connect(&pair->broker, &QTcpSocket::disconnected, pair->client, end);
        QObject::connect(&pair->broker, &QTcpSocket::stateChanged, pair->client,
                         [end](QAbstractSocket::SocketState state) {
                             if (state == QAbstractSocket::UnconnectedState) {
                                 end();
                             }
                         });
        pair->broker.connectToHost(QHostAddress::LocalHost, m_brokerPort);
    }

    void finish(Pair &pair)
    {
        if (!pair.isOver) {
            pair.isOver = true;
            m_recorder.end(pair.number);
            pair.broker.disconnectFromHost();
            pair.client->disconnectFromHost();
            pair.client->deleteLater();
        }
    }

    StreamRecorder m_recorder;
    quint16 m_brokerPort = 0;
    int m_left = -1;
    QTcpServer m_server; ///< its sockets tell of their end
};

} // namespace spcheck
