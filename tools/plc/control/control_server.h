#pragma once

#include "plc/control/commands.h"

#include <QHostAddress>
#include <QLocalServer>
#include <QObject>
#include <QTcpServer>
#include <QTimer>

#include <functional>
#include <vector>

namespace plc {

/** Takes commands from elsewhere, over TCP or a local socket; each connection is a session. */
class ControlServer : public QObject
{
    Q_OBJECT

public:
    /**
     * At a time. A further one takes the place of the one that was silent longest, if that was for
     * kIdleMs at least; otherwise it is closed at once.
     */
    static constexpr int kMostClients = 16;
    /** Who sends nothing for so long may have died without a word. */
    static constexpr qint64 kIdleMs = 60000;
    /** Bytes that one client may leave unread before its next command has to wait. */
    static constexpr qint64 kMostUnreadBytes = 65536;

    /** @param target must outlive the server; its clock tells who is silent. */
    ControlServer(const ControlTarget &target, ReplyFormat format, QObject *parent = nullptr);

    /**
     * @param port 0 picks a free one
     * @return false if the address is in use or not ours; errorString() tells why.
     */
    bool listen(const QHostAddress &address, quint16 port);

    /**
     * Listens at a local socket that only this user may open.
     * @param path replaces a socket that an earlier run left behind, but no other file
     */
    bool listenLocally(const QString &path);

    QString errorString() const { return m_error; }
    /** "127.0.0.1:8001" or the path. */
    QString address() const;
    int clients() const { return static_cast<int>(m_clients.size()); }

private:
    class Client;

    template <typename Socket>
    void take(Socket *socket);
    bool makeRoom();
    qint64 nowMs() const { return m_target.nowMs ? m_target.nowMs() : 0; }

    const ControlTarget &m_target;
    ReplyFormat m_format;
    QTcpServer m_tcp;
    QTimer m_acceptAgain;
    QLocalServer m_local;
    QString m_error;
    std::vector<Client *> m_clients; ///< its children
};

} // namespace plc
