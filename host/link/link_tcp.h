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
    QString name() const override;

private:
    void connected();
    void lose(const QString &reason);

    QString m_host;
    quint16 m_port;
    QTcpSocket m_socket;
    QTimer m_connectLimit;
    bool m_busy = false; ///< connecting or open
    bool m_open = false;
};

} // namespace cnet
