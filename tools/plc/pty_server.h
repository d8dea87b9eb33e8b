#pragma once

#include "chunk_sender.h"
#include "server_setup.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace plc {

/**
 * Serves the stations of a bus at a pseudo-terminal, which masters open like a serial device. They
 * may close and open it as often as they like.
 */
class PtyServer : public QObject
{
    Q_OBJECT

public:
    /** @param setup must outlive the server. */
    explicit PtyServer(const ServerSetup &setup, QObject *parent = nullptr);
    ~PtyServer() override;

    /**
     * @param link a symbolic link to the device, made here and removed with this object; it may
     * replace one that an earlier run left behind, but nothing else. Empty: none.
     * @return false where that fails; errorString() tells why.
     */
    bool open(const QString &link);

    QString errorString() const { return m_error; }
    /** The device to open: the link, or the terminal itself. */
    QString device() const { return m_link.isEmpty() ? m_terminal : m_link; }

private:
    bool openTerminal();
    bool makeLink(const QString &link);
    bool fail(const QString &what);
    void receive();
    void send(const QByteArray &bytes);

    const ServerSetup &m_setup;
    Line m_line;
    ChunkSender m_sender;
    int m_master = -1;
    int m_slave =
        -1; ///< kept open: the settings survive, and the last client's leaving goes unseen
    std::unique_ptr<QSocketNotifier> m_notifier;
    QString m_terminal;
    QString m_link;
    QString m_error;
};

} // namespace plc
