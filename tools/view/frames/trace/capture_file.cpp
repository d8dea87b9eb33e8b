#include "view/frames/trace/capture_file.h"

#include "view/frames/trace/frame_words.h"

#include "host/capture/packet_format.h"
#include "host/decode/frame_decoder.h"
#include "host/decode/frame_text.h"
#include "host/wire/answer_shape.h"
#include "host/wire/block_check.h"
#include "host/wire/characters.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace cnet::view {

namespace {

constexpr CaptureFormat kFormat = CaptureFormat::ExportedPdu;
constexpr double kNsPerMs = 1e6;
// As text in a file, where its length has 16 bits.
constexpr int kLongestComment = 20000;
constexpr int kLongestName = 1000;

QString programName()
{
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? QLatin1String("cnet-view") : QLatin1String("cnet-view ") + version;
}

// What came of a request without any frame is told with the request, or it would be lost.
QString commentOf(const FrameLog &log, qint64 number)
{
    const FrameRow &row = *log.find(number);
    if (row.packet > 0 && !row.note.isEmpty()) {
        return row.note.left(kLongestComment);
    }
    QString text = frameSummary(log.decode(number, Detail::Summary));
    const auto add = [&text](const FrameRow &of) {
        if (of.faults != FrameFaults() || of.isDoubted) {
            text += QLatin1String("; ") + resultWords(of);
        }
    };
    add(row);
    const FrameRow *const answer = row.request == number ? log.find(row.answer) : nullptr;
    if (answer != nullptr && answer->bytes.isEmpty()) {
        add(*answer);
    }
    return text.left(kLongestComment);
}

/** Makes rows of the exchanges of a file. */
class Reader
{
public:
    void add(const RecordedExchange &exchange)
    {
        const QByteArray &asked = exchange.request.bytes;
        FrameRow row = rowOf(exchange.request, FrameWay::Sent);
        row.request = m_log.end();
        row.station = stationOf(asked);
        row.kind = kindOfRequest(asked);
        row.faults.setFlag(FrameFault::Repeated, asked == m_unanswered);
        const qint64 request = m_log.append(std::move(row));
        for (const RecordedFrame &frame : exchange.answers) {
            addAnswer(frame, exchange.request, request);
        }
        if (exchange.answers.empty() && !exchange.isOpen) {
            addSilence(request);
        }
        const bool answered = isAnswered(request);
        m_unanswered = answered ? QByteArray() : asked;
        m_open = answered ? m_open : request;
    }

    FrameLog take() { return std::move(m_log); }

private:
    static FrameRow rowOf(const RecordedFrame &frame, FrameWay way)
    {
        FrameRow row;
        row.timeNs = frame.timeNs == 0 ? -1 : frame.timeNs;
        row.bytes = frame.bytes;
        row.note = frame.comment;
        row.packet = frame.number;
        row.way = way;
        return row;
    }

    void addAnswer(const RecordedFrame &frame, const RecordedFrame &asked, qint64 request)
    {
        FrameRow row = rowOf(frame, FrameWay::Received);
        const FrameRow *const open = m_log.find(m_open);
        row.request = request;
        if (!isWholeAnswer(frame.bytes)) {
            row.faults = faultOfPart(frame.bytes);
        } else if (mayAnswer(frame.bytes, asked.bytes) && !isAnswered(request)) {
            row.faults.setFlag(FrameFault::Refused, frame.bytes.at(0) == kNak);
        } else if (open != nullptr && mayAnswer(frame.bytes, open->bytes)) {
            row.faults = FrameFault::Late;
            row.request = std::exchange(m_open, -1);
        } else {
            row.faults = FrameFault::Unusable;
        }
        tie(row);
        m_log.append(std::move(row));
    }

    /** Notes a row that is to come with its request. */
    void tie(FrameRow &row)
    {
        FrameRow &its = *m_log.find(row.request);
        row.kind = its.kind;
        row.station = stationOf(row.bytes);
        if (row.timeNs >= 0 && its.timeNs >= 0) {
            row.tookMs = static_cast<double>(row.timeNs - its.timeNs) / kNsPerMs;
        }
        if (row.faults.testFlag(FrameFault::Late)) {
            its.late = m_log.end();
        } else if (its.answer < 0 || isGood(row)) {
            its.answer = m_log.end();
        }
    }

    static bool isGood(const FrameRow &answer)
    {
        return !answer.bytes.isEmpty() &&
               (answer.faults & ~FrameFaults(FrameFault::Refused)) == FrameFaults();
    }

    bool isAnswered(qint64 request) const
    {
        const FrameRow *const answer = m_log.find(m_log.find(request)->answer);
        return answer != nullptr && isGood(*answer);
    }

    // What does not begin as an answer is noise, or the echo of a request.
    static FrameFault faultOfPart(const QByteArray &bytes)
    {
        if (bytes.at(0) != kAck && bytes.at(0) != kNak) {
            return FrameFault::Stray;
        }
        const FrameVerdict verdict = decodeFrame(bytes, nullptr, Detail::Summary).verdict;
        return verdict == FrameVerdict::WrongCheck ? FrameFault::WrongCheck : FrameFault::Unusable;
    }

    void addSilence(qint64 request)
    {
        FrameRow &its = *m_log.find(request);
        FrameRow row;
        row.timeNs = -1;
        row.request = request;
        row.way = FrameWay::Received;
        row.station = its.station;
        row.kind = its.kind;
        row.faults = FrameFault::TimedOut;
        its.answer = m_log.end();
        m_log.append(std::move(row));
    }

    FrameLog m_log;
    QByteArray m_unanswered; ///< the request before, where no good answer came
    qint64 m_open = -1;      ///< the last request that may be answered late
};

} // namespace

CaptureMaker::CaptureMaker(FrameLog log, const QString &lineName)
    : m_log(std::move(log))
    , m_next(m_log.first())
    , m_content(sectionBlock(programName()))
{
    m_content += interfaceBlock(linkTypeOf(kFormat), lineName.left(kLongestName));
}

bool CaptureMaker::take(int rows)
{
    const qint64 end = std::min(m_log.end(), m_next + rows);
    for (; m_next < end; ++m_next) {
        const FrameRow &row = *m_log.find(m_next);
        if (row.bytes.isEmpty()) {
            continue;
        }
        CapturePacket packet;
        packet.timeNs = std::max<qint64>(row.timeNs, 0);
        packet.direction =
            row.way == FrameWay::Sent ? CaptureDirection::Sent : CaptureDirection::Received;
        packet.data = packetData(kFormat, packet.direction, packet.timeNs, row.bytes);
        packet.comment = commentOf(m_log, m_next);
        m_content += packetBlock(packet);
    }
    return m_next < m_log.end();
}

int framesOf(const FrameLog &log)
{
    int frames = 0;
    for (int i = 0; i < log.size(); ++i) {
        frames += log.at(i).bytes.isEmpty() ? 0 : 1;
    }
    return frames;
}

FrameLog logOf(const RecordedLine &line)
{
    Reader reader;
    int left = kMostOpened;
    for (const RecordedExchange &exchange : line.exchanges) {
        if (left-- == 0) {
            break;
        }
        reader.add(exchange);
    }
    return reader.take();
}

} // namespace cnet::view
