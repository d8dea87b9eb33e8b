#include "host/recording/pcapng_reader.h"

#include "host/capture/pcapng_numbers.h"

#include <QtEndian>

#include <algorithm>
#include <limits>

namespace cnet {

namespace {

constexpr quint32 kSwappedMagic = 0x4D3C2B1A;

constexpr int kBeforeBody = 8; // type, length
constexpr int kSectionFields = 16;
constexpr int kInterfaceFields = 8;
constexpr int kPacketFields = 20;

constexpr quint64 kNsPerSecond = 1000000000;

int padded(int size)
{
    return (size + kBlockAlignment - 1) / kBlockAlignment * kBlockAlignment;
}

// Two to the minus n where the highest bit is set, else ten. @return 0 beyond 64 bits
quint64 unitsPerSecond(quint8 resolution)
{
    constexpr quint8 kBinary = 0x80;
    constexpr int kMostBits = 63;
    constexpr int kMostDigits = 19;
    const int power = resolution & ~kBinary;
    if ((resolution & kBinary) != 0) {
        return power <= kMostBits ? quint64(1) << power : 0;
    }
    quint64 units = power <= kMostDigits ? 1 : 0;
    for (int i = 0; i < power && units > 0; ++i) {
        units *= 10;
    }
    return units;
}

qint64 nanoseconds(const InterfaceRecord &interface, quint64 units)
{
    if (interface.unitsPerSecond == 0) {
        return 0;
    }
    constexpr auto kMostSeconds =
        static_cast<qint64>(std::numeric_limits<qint64>::max() / kNsPerSecond) - 1;
    const quint64 whole = units / interface.unitsPerSecond;
    const quint64 rest = units % interface.unitsPerSecond;
    // Where the product would not fit, a double is fine enough.
    const quint64 restNs =
        rest <= std::numeric_limits<quint64>::max() / kNsPerSecond
            ? rest * kNsPerSecond / interface.unitsPerSecond
            : static_cast<quint64>(static_cast<double>(rest) /
                                   static_cast<double>(interface.unitsPerSecond) * kNsPerSecond);
    const auto bounded = static_cast<qint64>(std::min<quint64>(whole, kMostSeconds));
    const qint64 offset = std::clamp(interface.offsetSeconds, -kMostSeconds, kMostSeconds);
    const qint64 seconds = std::clamp<qint64>(bounded + offset, 0, kMostSeconds);
    return seconds * static_cast<qint64>(kNsPerSecond) + static_cast<qint64>(restNs);
}

} // namespace

/** The body of a block, whose numbers are in the byte order of its section. */
struct PcapngReader::Block
{
    struct Option
    {
        quint16 code = kEndOfOptions;
        QByteArray value;
    };

    quint32 type = 0;
    QByteArray body;
    bool bigEndian = false;

    int size() const { return static_cast<int>(body.size()); }

    template <typename Number>
    Number number(int at) const
    {
        return numberOf<Number>(body.constData() + at);
    }

    template <typename Number>
    Number numberOf(const char *bytes) const
    {
        return bigEndian ? qFromBigEndian<Number>(bytes) : qFromLittleEndian<Number>(bytes);
    }

    /** The options from here on, as far as they are whole. */
    std::vector<Option> options(int at) const
    {
        constexpr int kHead = 4;
        std::vector<Option> all;
        while (at <= size() - kHead) {
            const auto code = number<quint16>(at);
            const int length = number<quint16>(at + kHead / 2);
            if (code == kEndOfOptions || length > size() - at - kHead) {
                break;
            }
            all.push_back({code, body.mid(at + kHead, length)});
            at += kHead + padded(length);
        }
        return all;
    }
};

PcapngReader::PcapngReader(const QByteArray &content)
    : m_content(content)
{}

bool PcapngReader::fail(const char *text)
{
    m_error = QString::fromLatin1("%1, at byte %2").arg(QLatin1String(text)).arg(m_blockAt);
    m_position = static_cast<int>(m_content.size());
    return false;
}

// What people take for a capture, and what helps.
bool PcapngReader::failAtStart()
{
    const auto begins = [this](const char *digits) {
        return m_content.startsWith(QByteArray::fromHex(digits));
    };
    m_position = static_cast<int>(m_content.size());
    if (m_content.isEmpty()) {
        m_error = QLatin1String("it is empty");
    } else if (begins("1f8b")) {
        m_error = QLatin1String("it is compressed; expected pcapng: gunzip it first");
    } else if (begins("d4c3b2a1") || begins("a1b2c3d4") || begins("4d3cb2a1") ||
               begins("a1b23c4d")) {
        m_error = QLatin1String("it is a pcap file; expected pcapng: editcap OLD NEW converts it");
    } else {
        m_error = QLatin1String("it is no pcapng file");
    }
    return false;
}

bool PcapngReader::next(PacketRecord &packet)
{
    Block block;
    while (readBlock(block)) {
        if (block.type == kSectionBlock) {
            readSection(block);
        } else if (block.type == kInterfaceBlock) {
            readInterface(block);
        } else if (block.type == kPacketBlock || block.type == kSimplePacketBlock) {
            packet = PacketRecord();
            packet.number = ++m_packets;
            return block.type == kPacketBlock ? readPacket(block, packet)
                                              : readSimplePacket(block, packet);
        }
    }
    return false;
}

// Of a section's header the type is the same in either byte order, which stands behind it.
bool PcapngReader::readBlock(Block &block)
{
    const int left = static_cast<int>(m_content.size()) - m_position;
    m_blockAt = m_position;
    if (left == 0 && m_inSection) {
        return false;
    }
    const char *const bytes = m_content.constData() + m_position;
    const bool section =
        left >= kBlockAlignment && qFromLittleEndian<quint32>(bytes) == kSectionBlock;
    if (!m_inSection && !section) {
        return m_error.isEmpty() && failAtStart();
    }
    if (left < kBesidesBody) {
        return fail("it ends within a block");
    }
    if (section) {
        const auto magic = qFromLittleEndian<quint32>(bytes + kBeforeBody);
        if (magic != kByteOrderMagic && magic != kSwappedMagic) {
            return fail("a section in no known byte order");
        }
        m_bigEndian = magic == kSwappedMagic;
        m_inSection = true;
    }
    block.bigEndian = m_bigEndian;
    block.type = block.numberOf<quint32>(bytes);
    const auto length = block.numberOf<quint32>(bytes + kBlockAlignment);
    if (length < kBesidesBody || length % kBlockAlignment != 0) {
        return fail("a block of a wrong length");
    }
    if (length > static_cast<quint32>(left)) {
        return fail("it ends within a block");
    }
    const auto size = static_cast<int>(length);
    if (block.numberOf<quint32>(bytes + size - kBlockAlignment) != length) {
        return fail("a block of a wrong length");
    }
    block.body = m_content.mid(m_position + kBeforeBody, size - kBesidesBody);
    m_position += size;
    return true;
}

void PcapngReader::readSection(const Block &block)
{
    if (block.size() < kSectionFields) {
        fail("a section that is too short");
    } else if (block.number<quint16>(kBlockAlignment) != 1) {
        fail("a section of an unknown version");
    }
    m_firstOfSection = static_cast<int>(m_interfaces.size());
}

void PcapngReader::readInterface(const Block &block)
{
    if (block.size() < kInterfaceFields) {
        fail("an interface that is too short");
        return;
    }
    if (m_interfaces.size() == kMostInterfaces) {
        fail("too many interfaces");
        return;
    }
    InterfaceRecord interface;
    interface.linkType = block.number<quint16>(0);
    for (const Block::Option &option : block.options(kInterfaceFields)) {
        if (option.code == kInterfaceName) {
            interface.name = QString::fromUtf8(option.value);
        } else if (option.code == kTimeResolution && option.value.size() == 1) {
            interface.unitsPerSecond = unitsPerSecond(static_cast<quint8>(option.value.at(0)));
        } else if (option.code == kTimeOffset && option.value.size() == sizeof(qint64)) {
            interface.offsetSeconds = block.numberOf<qint64>(option.value.constData());
        }
    }
    m_interfaces.push_back(interface);
}

bool PcapngReader::takeInterface(quint32 numberInSection, PacketRecord &packet)
{
    if (numberInSection >= m_interfaces.size() - static_cast<std::size_t>(m_firstOfSection)) {
        return fail("a packet of an interface that is not there");
    }
    packet.interfaceNumber = m_firstOfSection + static_cast<int>(numberInSection);
    return true;
}

bool PcapngReader::readPacket(const Block &block, PacketRecord &packet)
{
    constexpr int kUpperHalf = 32;
    constexpr int kTimeAt = 4;
    constexpr int kSizeAt = 12;
    if (block.size() < kPacketFields) {
        return fail("a packet that is too short");
    }
    const auto size = block.number<quint32>(kSizeAt);
    if (size > static_cast<quint32>(block.size() - kPacketFields)) {
        return fail("a packet that is longer than its block");
    }
    if (!takeInterface(block.number<quint32>(0), packet)) {
        return false;
    }
    const InterfaceRecord &interface =
        m_interfaces.at(static_cast<std::size_t>(packet.interfaceNumber));
    packet.timeNs = nanoseconds(interface, quint64(block.number<quint32>(kTimeAt)) << kUpperHalf |
                                               block.number<quint32>(kTimeAt + kBlockAlignment));
    packet.data = block.body.mid(kPacketFields, static_cast<int>(size));
    for (const Block::Option &option :
         block.options(kPacketFields + padded(static_cast<int>(size)))) {
        if (option.code == kComment) {
            packet.comment += (packet.comment.isEmpty() ? QString() : QString::fromLatin1("; ")) +
                              QString::fromUtf8(option.value);
        } else if (option.code == kPacketFlags && option.value.size() == sizeof(quint32)) {
            const quint32 direction =
                block.numberOf<quint32>(option.value.constData()) & kDirectionBits;
            if (direction == kInbound || direction == kOutbound) {
                packet.direction =
                    direction == kInbound ? CaptureDirection::Received : CaptureDirection::Sent;
            }
        } else if (option.code == kLostPackets && option.value.size() == sizeof(quint64)) {
            packet.lost = block.numberOf<quint64>(option.value.constData());
        }
    }
    return true;
}

// Of the section's first interface, without a time; padding follows it up to the block's end.
bool PcapngReader::readSimplePacket(const Block &block, PacketRecord &packet)
{
    if (block.size() < kBlockAlignment) {
        return fail("a packet that is too short");
    }
    const quint32 size =
        std::min(block.number<quint32>(0), static_cast<quint32>(block.size() - kBlockAlignment));
    packet.data = block.body.mid(kBlockAlignment, static_cast<int>(size));
    return takeInterface(0, packet);
}

} // namespace cnet
