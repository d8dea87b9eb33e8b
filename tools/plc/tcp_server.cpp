#include "tcp_server.h"

#include "chunk_sender.h"

#include <QPointer>
#include <QTcpSocket>

#include <utility>

namespace plc {

namespace {

constexpr int kReadBufferBytes = 4096;
/** Answers that may wait for one client to read them. */
constexpr qint64 kMostUnreadBytes = 1048576;

/** One client; it deletes itself when the client is gone. */
class Client : public QObject
{
public:
    Client(QTcpSocket *socket, const ServerSetup &setup, QObject *parent)
        : QObject(parent)
        , m_socket(socket)
        , m_setup(setup)
        , m_line(*setup.bus)
        , m_sender([this](const QByteArray &bytes) { send(bytes); }, this)
    {
        socket->setParent(this);
        socket->setReadBufferSize(kReadBufferBytes);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_line.setBaud(setup.baud);
        if (setup.trace) {
            const QString name = addressText(socket->peerAddress(), socket->peerPort());
            m_line.setObserver(
                [this, name](const Exchange &exchange) { m_setup.trace(name, exchange); });
        }
        connect(socket, &QTcpSocket::readyRead, this, &Client::receive);
        connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    }

private:
    void receive()
    {
        if (!m_sender.add(m_line.receive(m_socket->readAll(), m_setup.clock.elapsed()))) {
            m_socket->abort();
        }
    }

    void send(const QByteArray &bytes)
    {
        // A client that asks but never reads is dropped before its answers fill the memory.
        if (m_socket->bytesToWrite() + bytes.size() > kMostUnreadBytes) {
            m_socket->abort();
            return;
        }
        m_socket->write(bytes);
    }

    QTcpSocket *m_socket;
    const ServerSetup &m_setup;
    Line m_line;
    ChunkSender m_sender;
};

} // namespace

TcpServer::TcpServer(const ServerSetup &setup, QObject *parent)
    : QObject(parent)
    , m_setup(setup)
{
    connect(&m_server, &QTcpServer::newConnection, this, &TcpServer::acceptAll);
}

bool TcpServer::listen(const QHostAddress &address, quint16 port)
{
    return m_server.listen(address, port);
}

QString TcpServer::address() const
{
    return addressText(m_server.serverAddress(), m_server.serverPort());
}

void TcpServer::acceptAll()
{
    while (QTcpSocket *const socket = m_server.nextPendingConnection()) {
        if (m_clients >= kMostClients) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        ++m_clients;
        auto *const client = new Client(socket, m_setup, this);
        connect(client, &QObject::destroyed, this, [this] {
            --m_clients;
            Q_EMIT clientGone();
        });
    }
}

QString addressText(const QHostAddress &address, quint16 port)
{
    const QString host = address.toString();
    const bool v6 = address.protocol() == QAbstractSocket::IPv6Protocol;
    return QString::fromLatin1(v6 ? "[%1]:%2" : "%1:%2").arg(host).arg(port);
}

} // namespace plc
