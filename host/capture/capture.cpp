#include "host/capture/capture.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace cnet {

namespace {

constexpr qint64 kNsPerSecond = 1000000000;
// What is older and no frame will not become one.
constexpr qint64 kStaleNs = kNsPerSecond;
// Together with the longest piece of a line, within the longest block.
constexpr int kLongestComment = 800;
constexpr int kLongestName = 100;

template <typename SomeClock>
qint64 nanoseconds()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(SomeClock::now().time_since_epoch())
        .count();
}

// Frames may hold anything, and a comment is shown as it is.
QString printable(QString text, int longest)
{
    text.truncate(longest);
    for (QChar &letter : text) {
        const bool ascii = letter.unicode() >= ' ' && letter.unicode() <= '~';
        if (!ascii && !letter.isPrint()) {
            letter = QLatin1Char('?');
        }
    }
    return text;
}

QString nameOf(const CaptureOptions &options)
{
    return options.path == QLatin1String("-") ? QLatin1String("standard output") : options.path;
}

} // namespace

CaptureClock systemCaptureClock()
{
    return {nanoseconds<std::chrono::system_clock>, nanoseconds<std::chrono::steady_clock>};
}

Capture::Capture(const CaptureOptions &options, const CaptureClock &clock)
    : m_options(options)
    , m_clock(clock)
{}

std::unique_ptr<Capture> Capture::open(const CaptureOptions &options, QString &error,
                                       const CaptureClock &clock)
{
    std::unique_ptr<Capture> capture(new Capture(options, clock));
    return capture->openOutput(error) ? std::move(capture) : nullptr;
}

Capture::~Capture()
{
    if (m_created && !m_begun) {
        QFile::remove(m_options.path);
    }
}

bool Capture::openOutput(QString &error)
{
    const bool isNew = !QFileInfo::exists(m_options.path);
    const bool opened = m_options.path == QLatin1String("-") ? m_output.openStandardOutput()
                                                             : m_output.open(m_options.path);
    if (!opened) {
        error = m_output.errorText();
    } else if (m_options.isRing() && !m_output.isRegular()) {
        error = QLatin1String("it is no regular file, which a size or an age needs");
    } else {
        m_created = isNew && m_output.isRegular();
        return true;
    }
    error = QString::fromLatin1("cannot write the capture to %1: %2").arg(nameOf(m_options), error);
    return false;
}

void Capture::addSource(CaptureSource *source)
{
    m_sources.push_back(source);
    begin();
}

void Capture::begin()
{
    if (std::exchange(m_begun, true)) {
        return;
    }
    // What an earlier run left behind in a ring is older, and not worthless.
    const bool older = m_options.isRing() && m_output.size() > 0;
    if (older ? !rotate() : !beginFile()) {
        end(m_output.errorText());
    }
}

void Capture::removeSource(CaptureSource *source)
{
    m_sources.erase(std::remove(m_sources.begin(), m_sources.end(), source), m_sources.end());
}

void Capture::flushStale(qint64 nowNs)
{
    for (CaptureSource *source : m_sources) {
        source->flushOlderThan(nowNs - kStaleNs);
    }
}

bool Capture::beginFile()
{
    ++m_file;
    m_interfaces = 0;
    m_packets = 0;
    m_startWallNs = m_clock.wallNs();
    m_startSteadyNs = m_clock.steadyNs();
    m_lastSteadyNs = m_startSteadyNs;
    return m_output.empty() && m_output.writeAll(sectionBlock(m_options.program));
}

// Of the first packet of a file it is not asked, so that each has one.
bool Capture::isFull(qint64 more) const
{
    if (m_packets == 0) {
        return false;
    }
    const bool tooLong = m_options.fileBytes > 0 && m_output.size() + more > m_options.fileBytes;
    const bool tooOld = m_options.fileSeconds > 0 &&
                        steadyNs() - m_startSteadyNs >= m_options.fileSeconds * kNsPerSecond;
    return tooLong || tooOld;
}

bool Capture::rotate()
{
    const bool moved = makeRoomInRing(m_options.path, m_options.files);
    const QString reason = moved ? QString() : qt_error_string(errno);
    if (moved && m_output.open(m_options.path) && beginFile()) {
        return true;
    }
    end(moved ? m_output.errorText() : reason);
    return false;
}

// The wall clock is asked once for each file. From there on time only goes forward.
void Capture::record(CaptureInterface &line, CaptureDirection direction, qint64 byteNs,
                     const QByteArray &bytes, const QString &remark)
{
    if (!isRunning() || (isFull(CaptureOutput::kLongestBlock) && !rotate())) {
        return;
    }
    m_lastSteadyNs = std::max(m_lastSteadyNs, byteNs);
    CapturePacket packet;
    packet.timeNs = m_startWallNs + (m_lastSteadyNs - m_startSteadyNs);
    packet.direction = direction;
    packet.comment = comment(bytes, direction, remark);
    packet.lost = line.lost;
    switch (writePacket(line, packet, bytes)) {
    case CaptureWrite::Done:
        ++m_packets;
        line.lost = 0;
        break;
    case CaptureWrite::Dropped:
        ++line.lost;
        m_incomplete = true;
        if (!std::exchange(m_toldSlow, true)) {
            tellTrouble(QLatin1String("the reader of the capture is too slow; frames are missing"));
        }
        break;
    case CaptureWrite::Failed:
        end(m_output.errorText());
        break;
    }
}

// With the description of its line where the file has none, in one go: a reader gets both or none.
CaptureWrite Capture::writePacket(CaptureInterface &line, CapturePacket packet,
                                  const QByteArray &bytes)
{
    const bool known = line.file == m_file;
    QByteArray blocks;
    packet.interfaceNumber = line.number;
    if (!known) {
        packet.interfaceNumber = m_interfaces;
        blocks = interfaceBlock(linkTypeOf(m_options.format), printable(line.name, kLongestName));
    }
    packet.data =
        packetData(m_options.format, packet.direction, packet.timeNs - m_startWallNs, bytes);
    blocks += packetBlock(packet);
    const CaptureWrite result = m_output.write(blocks);
    if (result == CaptureWrite::Done && !known) {
        line.file = m_file;
        line.number = m_interfaces;
        ++m_interfaces;
    }
    return result;
}

QString Capture::comment(const QByteArray &bytes, CaptureDirection direction,
                         const QString &remark) const
{
    QString text = m_words ? m_words(bytes, direction) : QString();
    if (!remark.isEmpty()) {
        // Never cut off: it may be the only place where the reason of all trouble stands.
        text = printable(text, kLongestComment / 2);
        text += (text.isEmpty() ? QString() : QLatin1String("; ")) + remark;
    }
    return printable(text, kLongestComment);
}

void Capture::end(const QString &reason)
{
    if (!std::exchange(m_ended, true)) {
        m_output.close();
        m_incomplete = true;
        tellTrouble(
            QString::fromLatin1("the capture to %1 has ended: %2").arg(nameOf(m_options), reason));
    }
}

void Capture::tellTrouble(const QString &what)
{
    if (m_trouble) {
        m_trouble(what);
    }
}

} // namespace cnet
