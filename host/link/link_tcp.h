#pragma once

#include "host/link/link.h"

#include <QTcpSocket>
#include <QTimer>

namespace cnet {

/** A Cnet line behind a TCP port: a communication module, a serial server or a simulated PLC. */
class LinkTcp : public Link
{
    Q_OBJECT

public:
    LinkTcp(const QString &host, quint16 port, QObject *parent = nullptr);
    ~LinkTcp() override;

    void open() override;
    void close() override;
    bool isOpen() const override { return m_open; }
    void send(const QByteArray &bytes) override;
    void expect(int bytes) override;
    QString name() const override;

private:
    void report();
    void connected();
    void lose(const QString &reason);

    QString m_host;
    quint16 m_port;
    QTcpSocket m_socket;
    QTimer m_connectLimit;
    bool m_busy = false; ///< connecting or open
    bool m_open = false;
    bool m_isReporting = false;
    int m_leastBytes = 1; ///< that the system waits for before it tells of them
};

} // namespace cnet
