#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace cnet::gateway {

/**
 * What the service manager is told, by systemd's protocol: short datagrams to a socket that it
 * names in $NOTIFY_SOCKET. Without one, all of it does nothing.
 */
class ServiceManager
{
public:
    /** Reads the environment, and takes out of it what only this process may use. */
    ServiceManager();
    ~ServiceManager();
    ServiceManager(const ServiceManager &) = delete;
    ServiceManager &operator=(const ServiceManager &) = delete;

    /** It has begun, or has taken a changed configuration. */
    void tellReady() { send("READY=1"); }
    /** It takes a changed configuration; tellReady() follows. */
    void tellReloading();
    void tellStopping() { send("STOPPING=1"); }
    /** It lives. */
    void tellAlive() { send("WATCHDOG=1"); }
    /** In a few words, for `systemctl status`. Sent when it differs from before. */
    void tellStatus(const QString &text);

    /** How often the manager wants to hear that it lives; nothing: never. */
    std::optional<qint64> watchdogMs() const { return m_watchdogMs; }

private:
    void send(const QByteArray &message) const;

    int m_descriptor = -1;
    QByteArray m_address; ///< of the socket, as the system has it
    std::optional<qint64> m_watchdogMs;
    QString m_status;
};

} // namespace cnet::gateway
