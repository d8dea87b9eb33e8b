#pragma once

#include "host/capture/pcapng_block.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace cnet {

/** An interface as a block of the file describes it. */
struct InterfaceRecord
{
    QString name;                     ///< empty: it has none
    quint16 linkType = 0;             ///< as pcap numbers them
    quint64 unitsPerSecond = 1000000; ///< of its times, if nothing is said; 0: nobody knows
    qint64 offsetSeconds = 0;         ///< added to them
};

/** A packet as a block of the file has it. */
struct PacketRecord
{
    int number = 0;                            ///< in the file, from 1, as Wireshark counts
    int interfaceNumber = 0;                   ///< index in PcapngReader::interfaces()
    qint64 timeNs = 0;                         ///< since 1970 in UTC; 0 where it has no time
    std::optional<CaptureDirection> direction; ///< as its flags say it
    QByteArray data;                           ///< as the link type of its interface has it
    QString comment;                           ///< empty: none
    quint64 lost = 0; ///< packets of the interface that are missing before this one
};

/**
 * Reads the blocks of a pcapng file of any origin: several sections and interfaces, either byte
 * order, blocks that are not known. It takes any bytes. By hand for the same reason as the writing
 * of blocks: libpcap tells neither names of interfaces nor directions nor comments.
 */
class PcapngReader
{
public:
    /** More interfaces than this are no capture of lines. */
    static constexpr int kMostInterfaces = 10000;

    explicit PcapngReader(const QByteArray &content);

    /** @return false at the end, and where the file goes wrong: errorText() is not empty then */
    bool next(PacketRecord &packet);

    /** Those of all sections so far, in their order. */
    const std::vector<InterfaceRecord> &interfaces() const { return m_interfaces; }

    /** Why what follows cannot be read, for people: "it ends within a block, at byte 120". */
    QString errorText() const { return m_error; }

private:
    struct Block;

    bool readBlock(Block &block);
    void readSection(const Block &block);
    void readInterface(const Block &block);
    bool readPacket(const Block &block, PacketRecord &packet);
    bool readSimplePacket(const Block &block, PacketRecord &packet);
    bool takeInterface(quint32 numberInSection, PacketRecord &packet);
    bool fail(const char *text);
    bool failAtStart();

    QByteArray m_content;
    int m_position = 0;
    int m_blockAt = 0; ///< where the present block begins, for messages
    bool m_bigEndian = false;
    bool m_inSection = false;
    int m_packets = 0;
    int m_firstOfSection = 0; ///< index of the section's first interface
    std::vector<InterfaceRecord> m_interfaces;
    QString m_error;
};

} // namespace cnet
