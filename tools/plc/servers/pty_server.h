#pragma once

#include "plc/servers/chunk_sender.h"
#include "plc/servers/server_setup.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <optional>

namespace plc {

/**
 * Serves the stations of a bus at a pseudo-terminal. Masters open it like a serial device, and may
 * close and open it again at any time.
 */
class PtyServer : public QObject
{
    Q_OBJECT

public:
    /** @param setup must outlive the server. */
    explicit PtyServer(const ServerSetup &setup, QObject *parent = nullptr);
    ~PtyServer() override;

    /**
     * @param link path of a symbolic link to the device, removed with this object. It replaces a
     * link left behind by an earlier run, but no other file. Empty: no link.
     * @return false on failure; errorString() tells why.
     */
    bool open(const QString &link);

    QString errorString() const { return m_error; }
    /** The path that masters open: the link if there is one, else the terminal. */
    QString device() const { return m_link.isEmpty() ? m_terminal : m_link; }

private:
    bool openTerminal();
    bool makeLink(const QString &link);
    bool fail(const QString &what);
    void receive();
    void send(const QByteArray &bytes);

    const ServerSetup &m_setup;
    Line m_line;
    std::unique_ptr<ServedConnection> m_served; ///< once it is open
    ChunkSender m_sender;
    int m_master = -1;
    int m_slave = -1; ///< kept open, so that the settings survive when the last client leaves
    std::unique_ptr<QSocketNotifier> m_notifier;
    QString m_terminal;
    QString m_link;
    QString m_error;
};

} // namespace plc
