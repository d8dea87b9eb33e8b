#pragma once

#include "server_setup.h"

#include <QHostAddress>
#include <QObject>
#include <QTcpServer>
#include <QTimer>

namespace plc {

/** Serves the stations of a bus to TCP clients, each with a line of its own. */
class TcpServer : public QObject
{
    Q_OBJECT

public:
    /** Further clients are turned away at once. */
    static constexpr int kMostClients = 256;
    /** Answers that may wait for one client to read them, beside what the system keeps. */
    static constexpr qint64 kMostUnreadBytes = 65536;

    /** @param setup must outlive the server. */
    explicit TcpServer(const ServerSetup &setup, QObject *parent = nullptr);

    /**
     * @param port 0: any free one
     * @return false where the address is not free or not ours; errorString() tells why.
     */
    bool listen(const QHostAddress &address, quint16 port);

    QString errorString() const { return m_server.errorString(); }
    /** "127.0.0.1:8000", with the port that was picked. */
    QString address() const;
    quint16 port() const { return m_server.serverPort(); }
    int clients() const { return m_clients; }

Q_SIGNALS:
    /** A client has left or was dropped; clients() is one less. */
    void clientGone();

private:
    void acceptAll();

    const ServerSetup &m_setup;
    QTcpServer m_server;
    QTimer m_acceptAgain;
    int m_clients = 0;
};

/** "HOST:PORT" with the brackets that an IPv6 address needs. */
QString addressText(const QHostAddress &address, quint16 port);

} // namespace plc
