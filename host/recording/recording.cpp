#include "host/recording/recording.h"

#include "host/recording/packet_bytes.h"
#include "host/recording/pcapng_reader.h"

#include <QFile>
#include <QMap>

#include <algorithm>
#include <array>

namespace cnet {

namespace {

constexpr char kEnq = 0x05;
// Of more lines or link types than these, only the first ones are told.
constexpr int kMostNames = 10;

/** A packet of a line whose side is not known yet. */
struct Heard
{
    RecordedFrame frame;
    CaptureDirection direction;
};

/** What is found on the interfaces of one name. */
struct HeardLine
{
    QString name;
    std::vector<Heard> all;
};

/** The packets of a file by their lines. */
class LineSorter
{
public:
    void add(const PacketRecord &packet, const InterfaceRecord &interface)
    {
        if (!isLineType(interface.linkType)) {
            ++m_elsewhere[interface.linkType];
            return;
        }
        const auto bytes = readPacketBytes(interface.linkType, packet.data);
        if (!bytes) {
            ++m_foreign;
            return;
        }
        m_lost += packet.lost;
        if (bytes->bytes.isEmpty()) {
            return;
        }
        // Where nothing says it: a request is what a panel sends.
        const CaptureDirection guess =
            bytes->bytes.at(0) == kEnq ? CaptureDirection::Sent : CaptureDirection::Received;
        const CaptureDirection direction =
            bytes->direction ? *bytes->direction : packet.direction.value_or(guess);
        lineOf(packet, interface)
            .all.push_back(
                {{packet.number, packet.timeNs, bytes->bytes, packet.comment}, direction});
    }

    std::vector<HeardLine> &lines() { return m_lines; }

    QStringList remarks() const
    {
        QStringList all;
        const auto say = [&all](quint64 count, const QString &what) {
            if (count > 0) {
                all << QString::fromLatin1("%1: %2").arg(what, QString::number(count));
            }
        };
        QStringList types;
        quint64 elsewhere = 0;
        for (auto it = m_elsewhere.cbegin(); it != m_elsewhere.cend(); ++it) {
            elsewhere += it.value();
            if (types.size() < kMostNames) {
                types << linkTypeText(it.key());
            }
        }
        say(elsewhere, QString::fromLatin1("packets left out, of no Cnet line (%1)")
                           .arg(types.join(QLatin1String("; "))));
        say(m_foreign, QLatin1String("packets left out, of another protocol or cut"));
        say(m_lost, QLatin1String("packets missing, which the capture's reader was too slow for"));
        return all;
    }

private:
    // By their names, since a line that is in several files of a ring is one when they are joined.
    HeardLine &lineOf(const PacketRecord &packet, const InterfaceRecord &interface)
    {
        const QString name = interface.name.isEmpty()
                                 ? QString::fromLatin1("interface %1").arg(packet.interfaceNumber)
                                 : interface.name;
        const auto place = m_places.constFind(name);
        if (place != m_places.cend()) {
            return m_lines.at(*place);
        }
        m_places.insert(name, m_lines.size());
        m_lines.push_back({name, {}});
        return m_lines.back();
    }

    std::vector<HeardLine> m_lines;
    QMap<QString, std::size_t> m_places;
    QMap<quint16, quint64> m_elsewhere; ///< packets by link type
    quint64 m_foreign = 0;
    quint64 m_lost = 0;
};

// The way that most frames with ENQ go. With an echo they go both ways, and the first one counts.
CaptureDirection directionOfRequests(const HeardLine &line)
{
    std::array<int, 2> requests{};
    CaptureDirection first = CaptureDirection::Sent;
    for (const Heard &heard : line.all) {
        if (heard.frame.bytes.at(0) == kEnq) {
            first = requests[0] + requests[1] == 0 ? heard.direction : first;
            ++requests.at(static_cast<std::size_t>(heard.direction));
        }
    }
    const auto most = std::max_element(requests.cbegin(), requests.cend());
    return requests[0] == requests[1] ? first
                                      : static_cast<CaptureDirection>(most - requests.cbegin());
}

bool hasRequest(const HeardLine &line)
{
    return std::any_of(line.all.cbegin(), line.all.cend(),
                       [](const Heard &heard) { return heard.frame.bytes.at(0) == kEnq; });
}

RecordedLine exchangesOf(HeardLine &line)
{
    const CaptureDirection requests = directionOfRequests(line);
    RecordedLine result;
    result.name = line.name;
    for (Heard &heard : line.all) {
        if (heard.direction == requests) {
            result.exchanges.push_back({std::move(heard.frame), {}, false});
        } else if (!result.exchanges.empty()) {
            result.exchanges.back().answers.push_back(std::move(heard.frame));
        }
    }
    result.exchanges.back().isOpen = result.exchanges.back().answers.empty();
    return result;
}

} // namespace

Recording readRecording(const QByteArray &content)
{
    Recording recording;
    PcapngReader reader(content);
    LineSorter sorter;
    PacketRecord packet;
    while (reader.next(packet)) {
        sorter.add(packet,
                   reader.interfaces().at(static_cast<std::size_t>(packet.interfaceNumber)));
    }
    for (HeardLine &line : sorter.lines()) {
        if (hasRequest(line)) {
            recording.lines.push_back(exchangesOf(line));
        }
    }
    recording.remarks = sorter.remarks();
    if (!recording.lines.empty()) {
        if (!reader.errorText().isEmpty()) {
            recording.remarks << QString::fromLatin1("%1; what stands before that is used")
                                     .arg(reader.errorText());
        }
    } else if (!reader.errorText().isEmpty()) {
        recording.error = reader.errorText();
    } else {
        recording.error = QLatin1String("there is no request in it");
        if (!recording.remarks.isEmpty()) {
            recording.error += QLatin1String(": ") + recording.remarks.join(QLatin1String(", "));
        }
    }
    return recording;
}

Recording readRecordingFile(const QString &path)
{
    Recording recording;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        recording.error = file.errorString();
    } else {
        const QByteArray content = file.read(kMostRecordingBytes + 1LL);
        if (file.error() != QFileDevice::NoError) {
            recording.error = file.errorString();
        } else if (content.size() > kMostRecordingBytes) {
            recording.error = QString::fromLatin1("longer than %1 bytes").arg(kMostRecordingBytes);
        } else {
            recording = readRecording(content);
        }
    }
    const QString before = path + QLatin1String(": ");
    if (!recording.error.isEmpty()) {
        recording.error.prepend(before);
    }
    for (QString &remark : recording.remarks) {
        remark.prepend(before);
    }
    return recording;
}

const RecordedLine *findLine(const Recording &recording, const QString &name, QString &error)
{
    QStringList names;
    for (const RecordedLine &line : recording.lines) {
        if (line.name == name || (name.isEmpty() && recording.lines.size() == 1)) {
            return &line;
        }
        names << QLatin1Char('\'') + line.name + QLatin1Char('\'');
    }
    const auto count = names.size();
    if (count > kMostNames) {
        names = names.mid(0, kMostNames) << QString::fromLatin1("%1 more").arg(count - kMostNames);
    }
    error = name.isEmpty() ? QString::fromLatin1("%1 lines in it, expected the name of one: %2")
                                 .arg(count)
                                 .arg(names.join(QLatin1String(", ")))
                           : QString::fromLatin1("no line '%1' in it; there is %2")
                                 .arg(name, names.join(QLatin1String(", ")));
    return nullptr;
}

} // namespace cnet
