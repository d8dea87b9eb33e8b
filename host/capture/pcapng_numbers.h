#pragma once

#include <QtGlobal>

// What the numbers in a pcapng file mean, for who writes one and who reads one.
namespace cnet {

constexpr quint32 kSectionBlock = 0x0A0D0D0A; ///< the same in either byte order
constexpr quint32 kInterfaceBlock = 1;
constexpr quint32 kSimplePacketBlock = 3;
constexpr quint32 kPacketBlock = 6;
constexpr quint32 kByteOrderMagic = 0x1A2B3C4D;

constexpr int kBlockAlignment = 4;
constexpr int kBesidesBody = 12; ///< bytes of a block: type, length, and the length again

// Options; their numbers begin anew in each kind of block.
constexpr quint16 kEndOfOptions = 0;
constexpr quint16 kComment = 1;
constexpr quint16 kSectionProgram = 4;
constexpr quint16 kInterfaceName = 2;
constexpr quint16 kTimeResolution = 9;
constexpr quint16 kTimeOffset = 14;
constexpr quint16 kPacketFlags = 2;
constexpr quint16 kLostPackets = 4;

// In the flags of a packet.
constexpr quint32 kDirectionBits = 3;
constexpr quint32 kInbound = 1;
constexpr quint32 kOutbound = 2;

// Link types, as pcap numbers them.
constexpr quint16 kRtacSerial = 250;
constexpr quint16 kExportedPdu = 252;

// Tags of an exported PDU.
constexpr quint16 kEndTag = 0;
constexpr quint16 kDissectorName = 12;
constexpr quint16 kPointToPointDirection = 35;
constexpr char kCnetDissector[] = "cnet";

} // namespace cnet
