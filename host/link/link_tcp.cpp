#include "host/link/link_tcp.h"

#ifdef Q_OS_LINUX
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#endif

namespace cnet {

namespace {

const int kConnectLimitMs = 5000;

// A pulled cable closes nothing: without a limit the system keeps sending the same request for a
// quarter of an hour before it gives the connection up.
void limitUnacknowledged([[maybe_unused]] QTcpSocket &socket)
{
#ifdef Q_OS_LINUX
    const unsigned int limitMs = 10000;
    setsockopt(static_cast<int>(socket.socketDescriptor()), IPPROTO_TCP, TCP_USER_TIMEOUT, &limitMs,
               sizeof limitMs);
#endif
}

} // namespace

LinkTcp::LinkTcp(const QString &host, quint16 port, QObject *parent)
    : Link(parent)
    , m_host(host)
    , m_port(port)
{
    m_socket.setReadBufferSize(kMostBytesAtOnce);
    m_connectLimit.setSingleShot(true);
    connect(&m_connectLimit, &QTimer::timeout, this,
            [this] { lose(QLatin1String("no answer to the connection request")); });
    connect(&m_socket, &QTcpSocket::connected, this, &LinkTcp::connected);
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this] { lose(m_socket.errorString()); });
    connect(&m_socket, &QTcpSocket::disconnected, this,
            [this] { lose(QLatin1String("the connection was closed")); });
    connect(&m_socket, &QTcpSocket::readyRead, this,
            [this] { Q_EMIT received(m_socket.read(m_socket.bytesAvailable())); });
}

// A connected socket reports its own end, when part of this object is gone already.
LinkTcp::~LinkTcp()
{
    m_socket.disconnect(this);
}

void LinkTcp::open()
{
    if (m_busy) {
        return;
    }
    m_busy = true;
    m_connectLimit.start(kConnectLimitMs);
    m_socket.connectToHost(m_host, m_port);
}

void LinkTcp::close()
{
    m_busy = false;
    m_open = false;
    m_connectLimit.stop();
    m_socket.abort();
}

void LinkTcp::send(const QByteArray &bytes)
{
    if (m_open) {
        m_socket.write(bytes);
        // Else it would wait for the event loop to ask the system whether it may be sent.
        m_socket.flush();
    }
}

QString LinkTcp::name() const
{
    return QString::fromLatin1("tcp %1:%2").arg(m_host, QString::number(m_port));
}

void LinkTcp::connected()
{
    m_connectLimit.stop();
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    limitUnacknowledged(m_socket);
    m_open = true;
    Q_EMIT opened();
}

void LinkTcp::lose(const QString &reason)
{
    if (!m_busy) {
        return;
    }
    close();
    Q_EMIT failed(reason);
}

} // namespace cnet
