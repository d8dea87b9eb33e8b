#pragma once

#include "plc/servers/server_setup.h"

#include <QHostAddress>
#include <QObject>
#include <QTcpServer>
#include <QTimer>

namespace plc {

/** Serves the stations of a bus to TCP clients; each client has its own line. */
class TcpServer : public QObject
{
    Q_OBJECT

public:
    /** Further clients are disconnected at once. */
    static constexpr int kMostClients = 256;
    /** Bytes that one client may leave unread, in addition to the system's buffers. */
    static constexpr qint64 kMostUnreadBytes = 65536;

    /** @param setup must outlive the server. */
    explicit TcpServer(const ServerSetup &setup, QObject *parent = nullptr);

    /**
     * @param port 0 picks a free one
     * @return false if the address is in use or not ours; errorString() tells why.
     */
    bool listen(const QHostAddress &address, quint16 port);

    QString errorString() const { return m_server.errorString(); }
    /** "127.0.0.1:8000", with the actual port. */
    QString address() const;
    quint16 port() const { return m_server.serverPort(); }
    int clients() const { return m_clients; }

Q_SIGNALS:
    /** A client has left or was disconnected; clients() is already one less. */
    void clientGone();

private:
    void acceptAll();

    const ServerSetup &m_setup;
    QTcpServer m_server;
    QTimer m_acceptAgain;
    int m_clients = 0;
};

/** "HOST:PORT", with brackets around an IPv6 address. */
QString addressText(const QHostAddress &address, quint16 port);

} // namespace plc
