#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

/** Stands between the gateway and something that it connects to; its connections can be cut. */
class CutRelay
{
public:
    CutRelay() = default;
    ~CutRelay() { drop(); }
    CutRelay(const CutRelay &) = delete;
    CutRelay &operator=(const CutRelay &) = delete;

    /** @return false when it cannot listen */
    bool start(quint16 target)
    {
        m_target = target;
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
        const bool isListening = m_server.listen(QHostAddress::LocalHost);
        m_port = m_server.serverPort();
        return isListening;
    }

    /** Where it listens, or did. */
    quint16 port() const { return m_port; }
    bool isConnected() const { return !m_pairs.empty(); }

    /** Ends all connections. What is on its way gets lost. */
    void drop()
    {
        for (const std::shared_ptr<Pair> &pair : std::exchange(m_pairs, {})) {
            end(*pair);
        }
    }

    /** Takes no connection, until it is told so again. */
    void setRefusing(bool isRefusing)
    {
        m_isRefusing = isRefusing;
        if (isRefusing) {
            drop();
        }
    }

    /** Nobody listens any more. */
    void close()
    {
        m_server.close();
        drop();
    }

    /** Listens again where it did. */
    bool reopen() { return m_server.listen(QHostAddress::LocalHost, m_port); }

    /** Takes connections and bytes, and passes nothing on as long as it is told so. */
    void setSilent(bool isSilent)
    {
        m_isSilent = isSilent;
        for (const std::shared_ptr<Pair> &pair : std::vector<std::shared_ptr<Pair>>(m_pairs)) {
            pass(*pair);
        }
    }

private:
    /** One connection, with both of its sides. */
    struct Pair
    {
        QTcpSocket *client = nullptr;
        QTcpSocket *target = nullptr; ///< goes with the client
    };

    void accept()
    {
        while (QTcpSocket *client = m_server.nextPendingConnection()) {
            if (m_isRefusing) {
                client->abort();
                client->deleteLater();
                continue;
            }
            auto pair = std::make_shared<Pair>();
            pair->client = client;
            pair->target = new QTcpSocket(client);
            const auto on = [this, pair] { pass(*pair); };
            const auto over = [this, pair](QAbstractSocket::SocketState state) {
                if (state == QAbstractSocket::UnconnectedState) {
                    finish(pair);
                }
            };
            QObject::connect(client, &QTcpSocket::readyRead, client, on);
            QObject::connect(pair->target, &QTcpSocket::readyRead, client, on);
            QObject::connect(client, &QTcpSocket::stateChanged, client, over);
            QObject::connect(pair->target, &QTcpSocket::stateChanged, client, over);
            m_pairs.push_back(pair);
            pass(*pair);
        }
    }

    void pass(Pair &pair)
    {
        if (m_isSilent) {
            return;
        }
        if (pair.target->state() == QAbstractSocket::UnconnectedState) {
            pair.target->connectToHost(QHostAddress::LocalHost, m_target);
        }
        pair.target->write(pair.client->readAll());
        pair.client->write(pair.target->readAll());
    }

    void finish(const std::shared_ptr<Pair> &pair)
    {
        const auto it = std::find(m_pairs.begin(), m_pairs.end(), pair);
        if (it != m_pairs.end()) {
            m_pairs.erase(it);
            end(*pair);
        }
    }

    static void end(Pair &pair)
    {
        pair.target->disconnect(pair.client);
        pair.client->disconnect(pair.client);
        pair.client->abort();
        pair.target->abort();
        pair.client->deleteLater();
    }

    QTcpServer m_server;
    quint16 m_port = 0;
    quint16 m_target = 0;
    bool m_isRefusing = false;
    bool m_isSilent = false;
    std::vector<std::shared_ptr<Pair>> m_pairs;
};
