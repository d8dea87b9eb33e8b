#pragma once

#include "gateway/service/listening.h"
#include "gateway/status/http_server.h"
#include "gateway/support/snapshots.h"
#include "host/support/virtual_clock.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <memory>

namespace cnet::gateway {

/** The pages of someSnapshot() on a port of their own, and somebody who asks for them. */
class ServedPages
{
public:
    ServedPages() { board.put(std::make_shared<const Snapshot>(someSnapshot())); }

    bool start()
    {
        QString error;
        const auto address = parseListenAddress(QLatin1String("127.0.0.1:0"));
        const auto socket = listenOnLoopback(*address, error);
        if (!socket) {
            return false;
        }
        m_port = static_cast<quint16>(socket->port);
        return server.start(socket->descriptor, "127.0.0.1:" + QByteArray::number(m_port));
    }

    /** A connection; where none came about, it is not connected. */
    std::unique_ptr<QTcpSocket> connected() const
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
        socket->waitForConnected(5000);
        return socket;
    }

    /** @return all that comes until the server closes */
    static QByteArray rest(QTcpSocket &socket)
    {
        QByteArray answer;
        while (socket.state() == QAbstractSocket::ConnectedState &&
               socket.waitForReadyRead(10000)) {
            answer += socket.readAll();
        }
        return answer + socket.readAll();
    }

    /** @return the whole answer */
    QByteArray ask(const QByteArray &request) const
    {
        const auto socket = connected();
        socket->write(request);
        return rest(*socket);
    }

    bool servesOthers() const
    {
        return ask("GET /health HTTP/1.1\r\nHost: localhost\r\n\r\n")
            .startsWith("HTTP/1.1 200 OK\r\n");
    }

    VirtualClock clock;
    SnapshotBoard board;
    HttpServer server{board, clock};

private:
    quint16 m_port = 0;
};

} // namespace cnet::gateway
