#include "plc/control/control_server.h"

#include "plc/control/control_session.h"
#include "plc/servers/tcp_server.h"

#include <QFile>
#include <QLocalSocket>
#include <QTcpSocket>
#include <QTimer>

#include <sys/stat.h>

#include <cerrno>

namespace plc {

namespace {

constexpr int kReadBytes = 4096;
constexpr int kAcceptAgainMs = 200;

/** The conversation with one client. */
class ControlClient : public QObject
{
public:
    ControlClient(QIODevice *device, const ControlTarget &target, ReplyFormat format,
                  std::function<void()> flush, std::function<void()> leave, QObject *parent)
        : QObject(parent)
        , m_device(device)
        , m_session(target, format)
        , m_flush(std::move(flush))
        , m_leave(std::move(leave))
    {
        device->setParent(this);
        connect(device, &QIODevice::readyRead, this, &ControlClient::work);
        connect(device, &QIODevice::bytesWritten, this, &ControlClient::work);
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
            m_session.add(bytes);
        }
        if (m_session.isOver()) {
            m_leave();
        }
    }

private:
    QIODevice *m_device;
    ControlSession m_session;
    std::function<void()> m_flush;
    std::function<void()> m_leave; ///< closes the connection behind what is written
};

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
    connect(&m_tcp, &QTcpServer::acceptError, this, [this] {
        QTimer::singleShot(kAcceptAgainMs, this, [this] { m_tcp.resumeAccepting(); });
    });
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

template <typename Socket>
void ControlServer::take(Socket *socket)
{
    if (m_clients >= kMostClients) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    ++m_clients;
    // Qt reads no more than this ahead; the rest waits with the sender.
    socket->setReadBufferSize(kReadBytes);
    auto *const client = new ControlClient(
        socket, m_target, m_format, [socket] { socket->flush(); },
        [socket] { endBehindReplies(*socket); }, this);
    connect(socket, &Socket::disconnected, client, &QObject::deleteLater);
    connect(client, &QObject::destroyed, this, [this] { --m_clients; });
    client->work();
}

} // namespace plc
