#include "view/frames/trace/line_recorder.h"

#include "host/capture/capture.h"
#include "host/wire/answer_shape.h"

#include <cmath>
#include <cstdlib>
#include <utility>

namespace cnet::view {

namespace {

constexpr int kHandOverMs = 100;
// A line without a wire has more of them in that time than the table should take at once.
constexpr int kHandOvers = 4; // of a full table
constexpr double kNsPerMs = 1e6;
// A conversation has one request and a fence under way; what is left of more was cancelled.
constexpr int kMostOpen = 4;
// A late answer belongs to one of the last requests, if to any.
constexpr int kLookBack = 400;

qint64 nowNs()
{
    static const CaptureClock clock = systemCaptureClock();
    return clock.wallNs();
}

FrameFaults faultsOf(const ExchangeReport &report)
{
    FrameFaults faults;
    const Reply &reply = report.reply;
    switch (reply.outcome) {
    case Outcome::Answered:
        faults.setFlag(FrameFault::Unusable, !report.good);
        break;
    case Outcome::Refused:
        faults |= FrameFault::Refused;
        break;
    case Outcome::Bad:
        faults |=
            reply.defect == Defect::BlockCheck ? FrameFault::WrongCheck : FrameFault::Unusable;
        break;
    case Outcome::TimedOut:
        faults |= FrameFault::TimedOut;
        break;
    }
    faults.setFlag(FrameFault::Stray, reply.strayBytes > 0);
    return faults;
}

} // namespace

LineRecorder::LineRecorder(Line &line, FrameModel &model, QObject *parent)
    : QObject(parent)
    , m_line(line)
    , m_model(model)
    , m_waiting(model.log().end())
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &LineRecorder::flush);
    connect(&line, &Line::sessionBegan, this, &LineRecorder::begin);
    connect(&line, &Line::sessionEnding, this, &LineRecorder::end);
    if (line.session() != nullptr) {
        begin(line.session());
    }
}

void LineRecorder::begin(Session *session)
{
    m_lineName = session->linkName();
    connect(session, &Session::requestSent, this, &LineRecorder::noteRequest);
    connect(session, &Session::exchangeEnded, this, &LineRecorder::noteEnd);
    connect(session, &Session::answeredLate, this, &LineRecorder::noteLate);
    connect(session, &Session::answerDoubted, this, &LineRecorder::noteDoubted);
}

void LineRecorder::end()
{
    if (m_line.session() != nullptr) {
        m_line.session()->disconnect(this);
    }
    for (const Open &open : std::exchange(m_open, {})) {
        leaveOpen(open);
    }
    m_failed.clear();
    m_doubted = {-1, {}};
}

void LineRecorder::setPaused(bool paused)
{
    flush(); // what came before is not held back
    m_paused = paused;
    flush();
}

void LineRecorder::clear()
{
    const qint64 next = m_waiting.end();
    m_waiting = FrameLog(next);
    m_changed.clear();
    m_open.clear();
    m_doubted = {-1, {}};
    m_total = 0;
    m_faulty = 0;
    m_model.show(FrameLog(next));
    Q_EMIT counted();
}

void LineRecorder::flush()
{
    if (!m_paused) {
        const qint64 next = m_waiting.end();
        m_model.add(std::exchange(m_waiting, FrameLog(next)));
        m_model.touch(std::exchange(m_changed, {}));
    }
    Q_EMIT counted();
}

void LineRecorder::append(FrameRow row)
{
    m_faulty += row.faults != FrameFaults() ? 1 : 0;
    const int before = m_waiting.exchanges();
    m_waiting.append(std::move(row));
    m_total += m_waiting.exchanges() - before;
    if (m_waiting.exchanges() > m_model.mostExchanges()) {
        m_waiting.removeOldest(m_waiting.rowsOfOldest(m_model.batch()));
    }
    if (!m_timer.isActive()) {
        m_timer.start(kHandOverMs);
    } else if (!m_paused && m_waiting.exchanges() >= m_model.mostExchanges() / kHandOvers &&
               m_timer.interval() != 0) {
        m_timer.start(0);
    }
}

// A row that is in the table already is shown anew with the next that come.
FrameRow *LineRecorder::find(qint64 number)
{
    if (FrameRow *const row = m_waiting.find(number)) {
        return row;
    }
    FrameRow *const row = m_model.edit(number);
    if (row != nullptr && !m_changed.contains(number)) {
        m_changed.append(number);
    }
    return row;
}

void LineRecorder::leaveOpen(const Open &open)
{
    if (FrameRow *const row = find(open.number)) {
        m_faulty += row->faults == FrameFaults() ? 1 : 0;
        row->faults |= FrameFault::LeftOpen;
    }
    m_failed = open.frame;
}

void LineRecorder::noteRequest(const QByteArray &frame)
{
    if (m_open.size() >= kMostOpen) {
        leaveOpen(m_open.takeFirst());
    }
    FrameRow row;
    row.timeNs = nowNs();
    row.bytes = frame;
    row.request = m_waiting.end();
    row.station = stationOf(frame);
    row.kind = kindOfRequest(frame);
    row.faults.setFlag(FrameFault::Repeated, frame == m_failed);
    m_open.append({row.request, frame});
    if (frame == m_doubted.frame) {
        m_doubted = {-1, {}};
    }
    append(std::move(row));
}

// The requests before it are over, too: the line asks one at a time. Where no fence behind a doubt
// was answered, the request does not go out again, and what is said last belongs to the first one.
qint64 LineRecorder::takeOpen(const QByteArray &frame)
{
    int at = m_open.size() - 1;
    while (at >= 0 && m_open.at(at).frame != frame) {
        --at;
    }
    if (at < 0) {
        return frame == m_doubted.frame ? m_doubted.number : -1;
    }
    for (int i = 0; i < at; ++i) {
        leaveOpen(m_open.at(i));
    }
    const qint64 number = m_open.at(at).number;
    m_open.remove(0, at + 1);
    return number;
}

void LineRecorder::noteEnd(const ExchangeReport &report)
{
    const Reply &reply = report.reply;
    FrameRow row;
    row.request = takeOpen(reply.frame);
    row.timeNs = nowNs();
    row.bytes = reply.answer;
    row.way = FrameWay::Received;
    row.station = reply.station;
    row.kind =
        report.purpose == Purpose::Fence ? FrameKind::SignOfLife : kindOfRequest(reply.frame);
    row.faults = faultsOf(report);
    row.note = reply.note;
    row.tookMs = reply.tookMs;
    if (!reply.sent) {
        row.note = tr("the line never became clear for it");
    }
    if (FrameRow *const request = find(row.request)) {
        // The time of a request that was sent again counts from its first sending, and that of one
        // that was not, after a doubt, from the last fence.
        if (!request->faults.testFlag(FrameFault::Repeated) && request->answer < 0) {
            row.timeNs = request->timeNs + std::llround(reply.tookMs * kNsPerMs);
        }
        request->answer = m_waiting.end();
        request->kind = row.kind;
    }
    if (!report.final) {
        m_failed = reply.frame;
    } else if (m_failed == reply.frame) {
        m_failed.clear();
    }
    append(std::move(row));
}

void LineRecorder::noteDoubted(int station, const QByteArray &answer, double tookMs)
{
    if (m_open.isEmpty()) {
        return;
    }
    FrameRow row;
    m_doubted = m_open.last();
    row.request = takeOpen(m_doubted.frame);
    row.timeNs = nowNs();
    row.bytes = answer;
    row.way = FrameWay::Received;
    row.station = station;
    row.isDoubted = true;
    row.note = tr("the same as the answer before it, byte for byte: it may be a copy");
    row.tookMs = tookMs;
    if (FrameRow *const request = find(row.request)) {
        request->answer = m_waiting.end();
        row.kind = request->kind;
    }
    append(std::move(row));
}

void LineRecorder::noteLate(int station, const QByteArray &answer, double lateMs)
{
    FrameRow row;
    row.timeNs = nowNs();
    row.bytes = answer;
    row.way = FrameWay::Received;
    row.station = station;
    row.tookMs = lateMs;
    row.faults = FrameFault::Late;
    row.request = requestOfLate(station, answer, row.timeNs - std::llround(lateMs * kNsPerMs));
    if (FrameRow *const request = find(row.request)) {
        request->late = m_waiting.end();
        row.kind = request->kind;
    }
    append(std::move(row));
}

// Of those without a good answer, the one that was sent when the late one's was.
qint64 LineRecorder::requestOfLate(int station, const QByteArray &answer, qint64 askedNs)
{
    const auto rowAt = [this](qint64 number) {
        const FrameRow *const row = m_waiting.find(number);
        return row != nullptr ? row : m_model.log().find(number);
    };
    qint64 best = -1;
    qint64 least = 0;
    const qint64 end = m_waiting.end();
    for (qint64 number = end - 1; number >= 0 && number >= end - kLookBack; --number) {
        const FrameRow *const row = rowAt(number);
        if (row == nullptr || row->request != number || row->station != station || row->late >= 0 ||
            !mayAnswer(answer, row->bytes)) {
            continue;
        }
        const FrameRow *const came = rowAt(row->answer);
        const bool unanswered = came == nullptr || came->bytes.isEmpty() || came->isDoubted ||
                                came->faults.testFlag(FrameFault::Unusable);
        const qint64 apart = std::llabs(row->timeNs - askedNs);
        if (unanswered && (best < 0 || apart < least)) {
            best = number;
            least = apart;
        }
    }
    return best;
}

} // namespace cnet::view
