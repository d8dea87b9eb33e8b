#include "host/link/link_tcp.h"

#include <algorithm>

#ifdef Q_OS_LINUX
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
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
    connect(&m_socket, &QTcpSocket::readyRead, this, &LinkTcp::report);
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

// A serial server hands on an answer as it comes from the line, a few characters at a time. To be
// woken for each of them costs more than all that is done with the answer.
void LinkTcp::expect([[maybe_unused]] int bytes)
{
#ifdef Q_OS_LINUX
    const int least = std::max(1, bytes);
    if (!m_open || least == m_leastBytes) {
        return;
    }
    m_leastBytes = least;
    const auto socket = static_cast<int>(m_socket.socketDescriptor());
    setsockopt(socket, SOL_SOCKET, SO_RCVLOWAT, &least, sizeof least);
    int held = 0;
    // To wait in vain would count as an error of the socket.
    if (least == 1 && !m_isReporting && ioctl(socket, FIONREAD, &held) == 0 && held > 0) {
        m_socket.waitForReadyRead(0);
    }
#endif
}

void LinkTcp::report()
{
    m_isReporting = true;
    Q_EMIT received(m_socket.read(m_socket.bytesAvailable()));
    m_isReporting = false;
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
    m_leastBytes = 1;
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
