#pragma once

#include "host/link/link.h"

#include <QSerialPort>

namespace cnet {

/** A Cnet line at a serial device, or at a pseudo-terminal that stands for one. */
class LinkSerial : public Link
{
    Q_OBJECT

public:
    LinkSerial(const QString &device, const LineSettings &line, QObject *parent = nullptr);
    ~LinkSerial() override;

    void open() override;
    void close() override;
    bool isOpen() const override { return m_open; }
    void send(const QByteArray &bytes) override;
    QString name() const override;

private:
    void applySettings();
    void handleError(QSerialPort::SerialPortError error);

    QString m_device;
    LineSettings m_line;
    QSerialPort m_port;
    bool m_open = false;
};

} // namespace cnet
