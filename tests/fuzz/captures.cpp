// Captures: files of any bytes, files of sound blocks with any content, and what the project
// writes. The first character of an input says which.
#include "fuzz/input.h"
#include "host/capture/packet_format.h"
#include "host/recording/packet_bytes.h"
#include "host/recording/pcapng_reader.h"
#include "host/recording/recording.h"
#include "plc/replay/replay.h"
#include "plc/wire/wire.h"

#include <QHash>
#include <QtEndian>

#include <vector>

namespace {

using namespace fuzz;
using namespace cnet;

std::vector<PacketRecord> packetsOf(const QByteArray &content)
{
    PcapngReader reader(content);
    std::vector<PacketRecord> packets;
    PacketRecord packet;
    qint64 bytes = 0;
    while (reader.next(packet)) {
        const auto interfaces = static_cast<int>(reader.interfaces().size());
        packets.push_back(packet);
        bytes += packet.data.size() + packet.comment.size();
        require(packet.number == static_cast<int>(packets.size()), "packets are counted");
        require(packet.interfaceNumber >= 0 && packet.interfaceNumber < interfaces,
                "a packet has its interface");
        require(packet.timeNs >= 0, "a packet has a time that is one");
        // Two comments of one byte are joined by two characters.
        require(bytes <= content.size(), "packets are no longer than their file");
        require(packet.number <= content.size() / 16, "packets are no more than fit");
    }
    require(!reader.next(packet), "the end is the end");
    require(reader.interfaces().size() <= PcapngReader::kMostInterfaces, "interfaces are bounded");
    return packets;
}

void requireExchanges(const RecordedLine &line, int &frames, int packets)
{
    require(!line.name.isEmpty() && !line.exchanges.empty(), "a line has a name and a request");
    int last = 0;
    for (const RecordedExchange &exchange : line.exchanges) {
        const bool isLast = &exchange == &line.exchanges.back();
        require(exchange.isOpen == (isLast && exchange.answers.empty()), "the last may be open");
        require(exchange.request.number > last, "frames come in their order");
        require(!exchange.request.bytes.isEmpty(), "a request has bytes");
        last = exchange.request.number;
        ++frames;
        for (const RecordedFrame &frame : exchange.answers) {
            require(frame.number > last && frame.number <= packets, "frames come in their order");
            require(!frame.bytes.isEmpty(), "a frame has bytes");
            last = frame.number;
            ++frames;
        }
    }
}

/** The simulated PLC answers with what the capture has, and no more than it has. */
void requireReplay(const RecordedLine &line)
{
    const plc::Replay replay(line, 2);
    QHash<QByteArray, int> times;
    for (const RecordedExchange &exchange : line.exchanges) {
        const QByteArray &request = exchange.request.bytes;
        const std::vector<plc::Chunk> *const chunks = replay.answer(request, times[request]++);
        require(chunks != nullptr, "each request is known");
        require(exchange.isOpen || chunks->size() <= exchange.answers.size(), "no more than came");
        for (std::size_t i = 0; i < chunks->size() && !exchange.isOpen; ++i) {
            const plc::Chunk &chunk = chunks->at(i);
            require(chunk.bytes == exchange.answers.at(i).bytes, "to the byte");
            require(chunk.delayMs >= 0 && chunk.delayMs <= plc::Replay::kLongestPauseMs,
                    "pauses are bounded");
        }
    }
    for (const int station : replay.stations()) {
        require(station >= 0 && station <= plc::kMaxStation, "a station has a number");
    }
    for (const plc::RecordedChange &change : replay.changes()) {
        require(change.atMs >= 0, "a change has its time");
    }
}

void readFile(const QByteArray &content)
{
    const auto packets = static_cast<int>(packetsOf(content).size());
    const Recording recording = readRecording(content);
    require(recording.lines.empty() != recording.error.isEmpty(), "no line without a reason");
    require(recording.error.size() + recording.remarks.join(QString()).size() <= 100000,
            "what is said is bounded");
    int frames = 0;
    QString error;
    for (const RecordedLine &line : recording.lines) {
        requireExchanges(line, frames, packets);
        require(findLine(recording, line.name, error) == &line, "a line is found by its name");
        requireReplay(line);
    }
    require(frames <= packets, "no packet comes twice");
    require((findLine(recording, QString(), error) != nullptr) == (recording.lines.size() == 1),
            "one line needs no name");
}

template <typename Number>
QByteArray number(Number value, bool bigEndian)
{
    char bytes[sizeof value];
    if (bigEndian) {
        qToBigEndian(value, bytes);
    } else {
        qToLittleEndian(value, bytes);
    }
    return QByteArray(bytes, sizeof bytes);
}

/** Blocks whose lengths are right, so that what is in them counts. */
QByteArray soundBlocks(Input &input)
{
    constexpr quint32 kSection = 0x0A0D0D0A;
    constexpr quint32 kTypes[] = {kSection, 1, 3, 6, 6, 6, 5, 0xBAD};
    QByteArray file;
    bool big = false;
    while (!input.atEnd()) {
        const quint32 type = file.isEmpty() ? kSection : kTypes[input.below(8)];
        const int flags = input.byte();
        QByteArray body = input.bytes();
        if (type == kSection && (flags & 2) == 0) {
            big = (flags & 1) != 0;
            body = number(quint32(0x1A2B3C4D), big) + number(quint16(1), big) +
                   number(quint16(0), big) + number(qint64(-1), big) + body;
        } else if (type == 1 && (flags & 2) == 0) {
            body = number(quint16((flags & 1) != 0 ? 250 : 252), big) + QByteArray(6, '\0') + body;
        } else if (type == 6 && (flags & 2) == 0) {
            const auto size = static_cast<quint32>(flags >> 2);
            body = number(quint32(flags & 1), big) + QByteArray(8, '\1') + number(size, big) +
                   number(size, big) + body;
        }
        body += QByteArray(static_cast<int>((4 - body.size() % 4) % 4), '\0');
        const QByteArray length = number(static_cast<quint32>(body.size() + 12), big);
        file += number(type, big) + length + body + length;
    }
    return file;
}

/** What is written is read back, all of it. */
void writeAndRead(Input &input)
{
    std::vector<CaptureFormat> formats;
    std::vector<CapturePacket> written;
    std::vector<QByteArray> bytes;
    QByteArray file = sectionBlock(QString::fromUtf8(input.bytes()));
    while (!input.atEnd()) {
        const int what = input.byte();
        if (formats.empty() || what % 8 == 0) {
            formats.push_back((what & 8) != 0 ? CaptureFormat::RtacSerial
                                              : CaptureFormat::ExportedPdu);
            file += interfaceBlock(linkTypeOf(formats.back()), QString::fromUtf8(input.bytes()));
        }
        CapturePacket packet;
        packet.interfaceNumber =
            static_cast<quint32>(input.below(static_cast<int>(formats.size())));
        packet.timeNs = qAbs(qint64(what) << 40 | input.number());
        packet.direction = (what & 1) != 0 ? CaptureDirection::Sent : CaptureDirection::Received;
        packet.lost = (what & 2) != 0 ? static_cast<quint64>(input.byte()) : 0;
        packet.comment = QString::fromUtf8(input.bytes());
        bytes.push_back(input.bytes());
        packet.data = packetData(formats.at(packet.interfaceNumber), packet.direction,
                                 packet.timeNs, bytes.back());
        file += packetBlock(packet);
        written.push_back(packet);
    }
    const std::vector<PacketRecord> read = packetsOf(file);
    require(read.size() == written.size(), "each packet is there");
    for (std::size_t i = 0; i < read.size(); ++i) {
        const CapturePacket &one = written.at(i);
        const PacketRecord &other = read.at(i);
        const auto content =
            readPacketBytes(linkTypeOf(formats.at(one.interfaceNumber)), other.data);
        require(static_cast<int>(one.interfaceNumber) == other.interfaceNumber, "its interface");
        require(one.timeNs == other.timeNs, "its time");
        require(other.direction == one.direction && content->direction == one.direction,
                "its direction");
        require(content->bytes == bytes.at(i), "its bytes");
        require(one.comment.toUtf8() == other.comment.toUtf8(), "its comment");
        require(one.lost == other.lost, "how many are missing");
    }
    readFile(file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const int kind = input.byte();
    if (kind == 'f') {
        readFile(input.rest());
    } else if (kind == 'b') {
        readFile(soundBlocks(input));
    } else if (kind == 'w') {
        writeAndRead(input);
    } else {
        return -1; // not worth keeping
    }
    return 0;
}
