#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/**
 * A classic pcap file of a TCP connection from 10.0.0.1 to a server at 10.0.0.2, as tcpdump writes
 * it: each segment a packet of raw IPv4, 10 ms after the one before.
 */
class TcpCapture
{
public:
    explicit TcpCapture(quint16 port)
        : m_port(port)
    {
        const int rawIp = 101;
        little(0xa1b2c3d4, 4);
        little(2, 2);
        little(4, 2);
        little(0, 4);
        little(0, 4);
        little(65535, 4);
        little(rawIp, 4);
    }

    void client(const QByteArray &bytes) { segment(0, bytes); }
    void server(const QByteArray &bytes) { segment(1, bytes); }
    /** Bytes that went over the network and were not captured. */
    void lost(int bytes) { m_sent[1] += static_cast<quint32>(bytes); }

    /** @return false when it cannot be written */
    bool write(const QString &path) const
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(m_file) == m_file.size();
    }

private:
    void little(quint32 number, int size)
    {
        for (int i = 0; i < size; ++i) {
            m_file += static_cast<char>(number >> 8 * i & 0xff);
        }
    }

    static QByteArray big(quint32 number, int size)
    {
        QByteArray bytes;
        for (int i = size - 1; i >= 0; --i) {
            bytes += static_cast<char>(number >> 8 * i & 0xff);
        }
        return bytes;
    }

    void segment(int from, const QByteArray &bytes)
    {
        const int client = 40001;
        const quint32 ports[2] = {client, m_port};
        const int headers = 40;
        QByteArray packet;
        const auto size = static_cast<quint32>(headers + bytes.size());
        packet += big(0x4500, 2) + big(size, 2) + big(0, 4);
        packet += big(0x40060000, 4); // time to live, TCP, no checksum
        packet += big(0x0a000001 + static_cast<quint32>(from), 4);
        packet += big(0x0a000002 - static_cast<quint32>(from), 4);
        packet += big(ports[from], 2) + big(ports[1 - from], 2);
        packet += big(1000 + m_sent[from], 4) + big(1000 + m_sent[1 - from], 4);
        packet += big(0x5018, 2) + big(0xffff, 2) + big(0, 4); // data, no checksum
        packet += bytes;
        m_sent[from] += static_cast<quint32>(bytes.size());
        const quint32 gapMicroseconds = 10000;
        m_microseconds += gapMicroseconds;
        little(1700000000, 4);
        little(m_microseconds, 4);
        little(size, 4);
        little(size, 4);
        m_file += packet;
    }

    quint16 m_port;
    QByteArray m_file;
    quint32 m_sent[2] = {0, 0};
    quint32 m_microseconds = 0;
};
