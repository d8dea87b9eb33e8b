#pragma once

#include "host/capture/pcapng_block.h"

namespace cnet {

/** What a packet has in front of its bytes. */
enum class CaptureFormat {
    ExportedPdu, ///< the name of the dissector: Wireshark needs no setting
    RtacSerial,  ///< what a serial recorder notes: for tools that read such recordings
};

/** The number that pcap has for the link type. */
quint16 linkTypeOf(CaptureFormat format);

/** @param sinceStartNs from the beginning of the file, for formats with a time of their own */
QByteArray packetData(CaptureFormat format, CaptureDirection direction, qint64 sinceStartNs,
                      const QByteArray &bytes);

} // namespace cnet
