#pragma once

#include "host/capture/packet_format.h"

#include <QFile>

/** A capture in the making, as cnet-panel writes it: requests are sent. */
class CaptureFile
{
public:
    CaptureFile()
        : m_bytes(cnet::sectionBlock(QLatin1String("test")))
    {}

    CaptureFile &line(const char *name)
    {
        m_bytes += cnet::interfaceBlock(cnet::linkTypeOf(m_format), QLatin1String(name));
        ++m_lines;
        return *this;
    }

    /** A request, or what comes for it, so many milliseconds after the packet before. */
    CaptureFile &sent(const QByteArray &bytes, int afterMs = 1)
    {
        return packet(cnet::CaptureDirection::Sent, bytes, afterMs);
    }
    CaptureFile &received(const QByteArray &bytes, int afterMs = 1)
    {
        return packet(cnet::CaptureDirection::Received, bytes, afterMs);
    }

    QByteArray bytes() const { return m_bytes; }

    bool store(const QString &path) const
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(m_bytes) == m_bytes.size();
    }

private:
    CaptureFile &packet(cnet::CaptureDirection direction, const QByteArray &bytes, int afterMs)
    {
        m_ms += afterMs;
        cnet::CapturePacket packet;
        packet.interfaceNumber = m_lines - 1;
        packet.timeNs = (1763781000000 + m_ms) * 1000000;
        packet.direction = direction;
        packet.data = cnet::packetData(m_format, direction, m_ms * 1000000, bytes);
        m_bytes += cnet::packetBlock(packet);
        return *this;
    }

    cnet::CaptureFormat m_format = cnet::CaptureFormat::ExportedPdu;
    QByteArray m_bytes;
    quint32 m_lines = 0;
    qint64 m_ms = 0;
};
