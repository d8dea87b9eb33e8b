#include "plc/servers/tcp_server.h"

#include "plc/servers/chunk_sender.h"

#include <QPointer>
#include <QTcpSocket>

#include <optional>
#include <utility>

#ifdef Q_OS_LINUX
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#endif

namespace plc {

namespace {

constexpr int kReadBufferBytes = 4096;
constexpr int kSystemBufferBytes = 65536;
constexpr int kAcceptAgainMs = 200;

/**
 * Notices clients whose machine is gone; they would occupy a connection for ever. The system probes
 * an idle connection, and drops one whose packets are not acknowledged.
 */
void enableKeepAlive([[maybe_unused]] QTcpSocket &socket)
{
    socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
#ifdef Q_OS_LINUX
    const auto set = [&socket](int option, int value) {
        setsockopt(static_cast<int>(socket.socketDescriptor()), IPPROTO_TCP, option, &value,
                   sizeof value);
    };
    set(TCP_KEEPIDLE, 30);
    set(TCP_KEEPINTVL, 10);
    set(TCP_KEEPCNT, 3);
    set(TCP_USER_TIMEOUT, 60000);
#endif
}

/** The connection of one client; deletes itself when the client disconnects. */
class Client : public QObject
{
public:
    Client(QTcpSocket *socket, const ServerSetup &setup, QObject *parent)
        : QObject(parent)
        , m_socket(socket)
        , m_setup(setup)
        , m_line(*setup.bus)
        , m_served(setup, m_line, "tcp", addressText(socket->peerAddress(), socket->peerPort()))
        , m_sender([this](const QByteArray &bytes) { send(bytes); }, this)
    {
        socket->setParent(this);
        socket->setReadBufferSize(kReadBufferBytes);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        // Fixed sizes: the system would let its buffers grow for a client that does not read.
        socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, kSystemBufferBytes);
        socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, kSystemBufferBytes);
        enableKeepAlive(*socket);
        connect(socket, &QTcpSocket::readyRead, this, &Client::receive);
        connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    }

private:
    void receive()
    {
        const QByteArray bytes = m_socket->readAll();
        const std::vector<Chunk> answers = m_line.receive(bytes, m_setup.clock.elapsed());
        m_served.received(bytes);
        if (!m_sender.add(answers)) {
            m_socket->abort();
        }
    }

    void send(const QByteArray &bytes)
    {
        m_served.sent(bytes);
        // Disconnect a client that sends requests but never reads, before its answers fill the
        // memory.
        if (m_socket->bytesToWrite() + bytes.size() > TcpServer::kMostUnreadBytes) {
            m_socket->abort();
            return;
        }
        m_socket->write(bytes);
        // At once: Qt drops its buffer when the client closes its end of the connection.
        m_socket->flush();
    }

    QTcpSocket *m_socket;
    const ServerSetup &m_setup;
    Line m_line;
    ServedConnection m_served;
    ChunkSender m_sender;
};

} // namespace

TcpServer::TcpServer(const ServerSetup &setup, QObject *parent)
    : QObject(parent)
    , m_setup(setup)
{
    connect(&m_server, &QTcpServer::newConnection, this, &TcpServer::acceptAll);
    // For example, no file descriptor is left. Qt then stops accepting until it is resumed.
    m_acceptAgain.setSingleShot(true);
    connect(&m_server, &QTcpServer::acceptError, this,
            [this] { m_acceptAgain.start(kAcceptAgainMs); });
    connect(&m_acceptAgain, &QTimer::timeout, this, [this] { m_server.resumeAccepting(); });
}

bool TcpServer::listen(const QHostAddress &address, quint16 port)
{
    if (!m_server.listen(address, port)) {
        return false;
    }
#ifdef Q_OS_LINUX
    // Qt's backlog is 50; connections beyond it would wait for a second or more.
    ::listen(static_cast<int>(m_server.socketDescriptor()), kMostClients);
#endif
    return true;
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
