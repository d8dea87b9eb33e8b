#include "host/link/link_serial.h"

namespace cnet {

LinkSerial::LinkSerial(const QString &device, const LineSettings &line, QObject *parent)
    : Link(parent)
    , m_device(device)
    , m_line(line)
{
    m_port.setReadBufferSize(kMostBytesAtOnce);
    connect(&m_port, &QSerialPort::readyRead, this, [this] { Q_EMIT received(m_port.readAll()); });
    connect(&m_port, &QSerialPort::errorOccurred, this, &LinkSerial::handleError);
}

LinkSerial::~LinkSerial()
{
    m_port.disconnect(this);
}

void LinkSerial::open()
{
    if (m_open) {
        return;
    }
    // The name is looked up anew each time: a link to a device may lead elsewhere by now.
    m_port.setPortName(m_device);
    if (!m_port.open(QIODevice::ReadWrite)) {
        const bool taken = m_port.error() == QSerialPort::PermissionError &&
                           m_port.errorString().contains(QLatin1String("lock"));
        Q_EMIT failed(taken ? QLatin1String("the device is in use by another program")
                            : m_port.errorString());
        return;
    }
    applySettings();
    m_port.clear();
    m_open = true;
    Q_EMIT opened();
}

// A pseudo-terminal has no line and may refuse any of these; that must not keep it from being used.
// A real device that refuses one shows in its answers, or their absence.
void LinkSerial::applySettings()
{
    m_port.setBaudRate(m_line.baud);
    m_port.setDataBits(m_line.dataBits == 7 ? QSerialPort::Data7 : QSerialPort::Data8);
    m_port.setParity(m_line.parity == Parity::Even  ? QSerialPort::EvenParity
                     : m_line.parity == Parity::Odd ? QSerialPort::OddParity
                                                    : QSerialPort::NoParity);
    m_port.setStopBits(m_line.stopBits == 2 ? QSerialPort::TwoStop : QSerialPort::OneStop);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
}

void LinkSerial::close()
{
    m_open = false;
    if (m_port.isOpen()) {
        m_port.close();
    }
}

void LinkSerial::send(const QByteArray &bytes)
{
    if (m_open) {
        m_port.write(bytes);
    }
}

QString LinkSerial::name() const
{
    return QString::fromLatin1("serial %1,%2").arg(m_device, m_line.text());
}

// Of a device that is gone (an adapter unplugged, the far end of a pseudo-terminal closed) reading
// and writing fail, with varying codes. What a setting reports while opening is no loss.
void LinkSerial::handleError(QSerialPort::SerialPortError error)
{
    if (!m_open || (error != QSerialPort::ResourceError && error != QSerialPort::ReadError &&
                    error != QSerialPort::WriteError && error != QSerialPort::PermissionError &&
                    error != QSerialPort::DeviceNotFoundError)) {
        return;
    }
    close();
    Q_EMIT failed(QLatin1String("the device is gone"));
}

} // namespace cnet
