#include "plc/control/control_server.h"

#include "plc/control/control_session.h"
#include "plc/servers/tcp_server.h"

#include <QFile>
#include <QLocalSocket>
#include <QTcpSocket>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace plc {

namespace {

constexpr int kReadBytes = 4096;
constexpr int kAcceptAgainMs = 200;

/** Makes way for a socket. @return false if something else, or somebody, is there. */
bool removeOldSocket(const QString &path)
{
    struct stat file = {};
    if (lstat(QFile::encodeName(path).constData(), &file) != 0) {
        return errno == ENOENT;
    }
    if (!S_ISSOCK(file.st_mode)) {
        errno = EEXIST;
        return false;
    }
    QLocalSocket other;
    other.connectToServer(path);
    if (other.state() == QLocalSocket::ConnectedState || other.waitForConnected(1000)) {
        errno = EADDRINUSE;
        return false;
    }
    return QFile::remove(path);
}

void endBehindReplies(QTcpSocket &socket)
{
    socket.disconnectFromHost();
}

void endBehindReplies(QLocalSocket &socket)
{
    socket.disconnectFromServer();
}

} // namespace

/** The conversation with one client. */
class ControlServer::Client : public QObject
{
public:
    Client(ControlServer &server, QIODevice *device, std::function<void()> flush,
           std::function<void()> leave)
        : QObject(&server)
        , m_server(server)
        , m_device(device)
        , m_session(server.m_target, server.m_format)
        , m_heardMs(server.nowMs())
        , m_flush(std::move(flush))
        , m_leave(std::move(leave))
    {
        device->setParent(this);
        connect(device, &QIODevice::readyRead, this, &Client::work);
        connect(device, &QIODevice::bytesWritten, this, &Client::work);
    }

    /** Goes on until the client has to send, or to read. */
    void work()
    {
        while (!m_session.isOver() && m_device->bytesToWrite() < ControlServer::kMostUnreadBytes) {
            if (const auto reply = m_session.next()) {
                m_device->write(*reply);
                // At once: the command may have been the one that ends the program.
                m_flush();
                continue;
            }
            const QByteArray bytes = m_device->read(kReadBytes);
            if (bytes.isEmpty()) {
                return;
            }
            m_heardMs = m_server.nowMs();
            m_session.add(bytes);
        }
        if (m_session.isOver()) {
            m_leave();
        }
    }

    /** When it sent something, or came. */
    qint64 heardMs() const { return m_heardMs; }

private:
    ControlServer &m_server;
    QIODevice *m_device;
    ControlSession m_session;
    qint64 m_heardMs;
    std::function<void()> m_flush;
    std::function<void()> m_leave; ///< closes the connection behind what is written
};

ControlServer::ControlServer(const ControlTarget &target, ReplyFormat format, QObject *parent)
    : QObject(parent)
    , m_target(target)
    , m_format(format)
{
    connect(&m_tcp, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *const socket = m_tcp.nextPendingConnection()) {
            // A fixed size: the system would let its buffer grow for a client that does not read.
            socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption,
                                    static_cast<int>(kMostUnreadBytes));
            take(socket);
        }
    });
    // For example, no file descriptor is left. Qt then stops accepting until it is resumed.
    m_acceptAgain.setSingleShot(true);
    connect(&m_acceptAgain, &QTimer::timeout, &m_tcp, &QTcpServer::resumeAccepting);
    connect(&m_tcp, &QTcpServer::acceptError, this,
            [this] { m_acceptAgain.start(kAcceptAgainMs); });
    connect(&m_local, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *const socket = m_local.nextPendingConnection()) {
            take(socket);
        }
    });
}

bool ControlServer::listen(const QHostAddress &address, quint16 port)
{
    const bool good = m_tcp.listen(address, port);
    m_error = m_tcp.errorString();
    return good;
}

bool ControlServer::listenLocally(const QString &path)
{
    if (!removeOldSocket(path)) {
        m_error = qt_error_string(errno);
        return false;
    }
    m_local.setSocketOptions(QLocalServer::UserAccessOption);
    const bool good = m_local.listen(path);
    m_error = m_local.errorString();
    return good;
}

QString ControlServer::address() const
{
    return m_tcp.isListening() ? addressText(m_tcp.serverAddress(), m_tcp.serverPort())
                               : m_local.fullServerName();
}

bool ControlServer::makeRoom()
{
    if (clients() < kMostClients) {
        return true;
    }
    const auto longest = std::min_element(
        m_clients.begin(), m_clients.end(),
        [](const Client *one, const Client *other) { return one->heardMs() < other->heardMs(); });
    if (nowMs() - (*longest)->heardMs() < kIdleMs) {
        return false;
    }
    delete *longest;
    return true;
}

template <typename Socket>
void ControlServer::take(Socket *socket)
{
    if (!makeRoom()) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    // Qt reads no more than this ahead; the rest waits with the sender.
    socket->setReadBufferSize(kReadBytes);
    auto *const client = new Client(
        *this, socket, [socket] { socket->flush(); }, [socket] { endBehindReplies(*socket); });
    m_clients.push_back(client);
    connect(socket, &Socket::disconnected, client, &QObject::deleteLater);
    connect(client, &QObject::destroyed, this, [this, client] {
        m_clients.erase(std::find(m_clients.begin(), m_clients.end(), client));
    });
    client->work();
}

} // namespace plc
