#pragma once

#include "host/capture/pcapng_block.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace cnet {

/** What went over a line, without what the link type has in front of it. */
struct PacketBytes
{
    QByteArray bytes;
    std::optional<CaptureDirection> direction; ///< as the link type says it
};

/** Whether packets of a link type can be bytes of a line. */
bool isLineType(quint16 linkType);

/**
 * Takes apart what packetData() puts together, and what other programs do in its place.
 * @return nothing for what is cut, and for the packet of another protocol
 */
std::optional<PacketBytes> readPacketBytes(quint16 linkType, const QByteArray &data);

/** "link type 1, Ethernet". */
QString linkTypeText(quint16 linkType);

} // namespace cnet
