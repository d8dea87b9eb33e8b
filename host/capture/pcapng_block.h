#pragma once

#include <QByteArray>
#include <QString>

namespace cnet {

/** Which way bytes went, as the program sees it that writes the capture. */
enum class CaptureDirection { Received, Sent };

/** One packet of a capture, as a block of the file says it. */
struct CapturePacket
{
    quint32 interfaceNumber = 0; ///< of this file, from 0 in the order of the interface blocks
    qint64 timeNs = 0;           ///< since 1970 in UTC
    CaptureDirection direction = CaptureDirection::Received;
    QByteArray data;  ///< as the link type of its interface wants it
    QString comment;  ///< empty: none
    quint64 lost = 0; ///< packets of the interface that are missing before this one
};

/**
 * The blocks of a pcapng file, little-endian on every machine. By hand, since libpcap writes
 * neither several interfaces nor directions nor comments.
 */

/** The block that a file begins with. @param program that writes it, with its version */
QByteArray sectionBlock(const QString &program);

/** Describes an interface, whose times are in nanoseconds. @param linkType as pcap numbers them */
QByteArray interfaceBlock(quint16 linkType, const QString &name);

/** A packet with its direction, and with its comment where it has one. */
QByteArray packetBlock(const CapturePacket &packet);

} // namespace cnet
