#include "host/exchange/conversation.h"

#include "host/wire/block_check.h"
#include "host/wire/characters.h"
#include "host/wire/fence_frame.h"

#include <algorithm>

namespace cnet {

namespace {

const int kMostFences = 3;

} // namespace

Conversation::Conversation(Link &link, Clock &clock, ResponseTimes &times,
                           const ConversationSettings &settings, QObject *parent)
    : QObject(parent)
    , m_link(link)
    , m_clock(clock)
    , m_times(times)
    , m_settings(settings)
    , m_alarm(clock.makeAlarm())
{
    connect(m_alarm.get(), &Alarm::fired, this, &Conversation::handleAlarm);
    connect(&link, &Link::received, this, &Conversation::handleBytes);
    // What a serial server still holds of an earlier connection may come now.
    connect(&link, &Link::opened, this, [this] {
        m_disturbed = true;
        m_lastByteMs = m_clock.nowMs();
        m_collector.clear();
    });
}

void Conversation::ask(const Question &question)
{
    m_question = question;
    begin(Goal::Ask);
}

void Conversation::greet(int station, int patienceMs)
{
    m_question = Question();
    m_question.station = station;
    m_patienceMs = patienceMs;
    begin(Goal::Greet);
}

bool Conversation::cancel()
{
    const bool asked = m_phase != Phase::Idle && m_asked;
    m_phase = Phase::Idle;
    m_alarm->cancel();
    m_link.expect(0);
    return asked;
}

void Conversation::begin(Goal goal)
{
    m_goal = goal;
    m_fences = 0;
    m_asked = false;
    m_clearingSinceMs = m_disturbed ? m_clock.nowMs() : 0;
    proceed();
}

// A line that is never quiet is used all the same.
void Conversation::proceed()
{
    if (m_disturbed) {
        const qint64 nowMs = m_clock.nowMs();
        const qint64 quietMs = m_lastByteMs + m_settings.quietMs - nowMs;
        const qint64 leftMs = std::min(quietMs, m_clearingSinceMs + kLongestBabbleMs - nowMs);
        if (leftMs > 0) {
            m_phase = Phase::Clearing;
            m_alarm->set(static_cast<int>(leftMs));
            return;
        }
        m_disturbed = false;
    }
    const AnswerShape shape = AnswerShape::toRequest(m_question.request, m_question.answerLength);
    if (m_goal == Goal::Ask && !isConfusable(shape)) {
        m_shape = shape;
        sendQuestion();
    } else {
        sendFence();
    }
}

bool Conversation::isConfusable(const AnswerShape &shape) const
{
    return m_open.confusable(m_question.station, m_question.request, shape) ||
           (m_settings.repeatedAnswers == RepeatedAnswers::Confirm &&
            m_memory.wouldRepeat(m_question.station, m_question.request, shape));
}

void Conversation::send(const QByteArray &request, int patienceMs)
{
    m_collector.clear();
    m_doubt = Doubt();
    m_frame = request;
    ++m_sendings;
    m_sentNs = m_clock.nowNs();
    m_firstSentNs = request == m_unanswered ? m_firstSentNs : m_sentNs;
    m_unanswered = request;
    m_open.asked(m_question.station, request, m_shape, m_clock.nowMs());
    // Set now and not when the link reports something: a link may never do so.
    m_alarm->set(patienceMs);
    Q_EMIT sent(request);
    m_link.send(request);
}

void Conversation::sendQuestion()
{
    m_phase = Phase::Asking;
    m_asked = true;
    const int characters = static_cast<int>(m_question.request.size()) + m_question.answerLength;
    send(m_question.request, m_times.timeoutMs(m_question.station, characters));
}

void Conversation::sendFence()
{
    const int station = m_question.station;
    const AnswerShape next = AnswerShape::toRequest(m_question.request, m_question.answerLength);
    const FenceFrame fence =
        fenceFrame(station, m_open.freeFence(station, next, m_memory.last(station)));
    const int characters = static_cast<int>(fence.request.size()) + fence.answerLength;
    m_phase = Phase::Fencing;
    m_shape = AnswerShape::toRequest(fence.request, fence.answerLength);
    send(fence.request,
         m_goal == Goal::Greet ? m_patienceMs : m_times.patienceMs(station, characters));
}

void Conversation::handleBytes(const QByteArray &bytes)
{
    m_lastByteMs = m_clock.nowMs();
    const quint64 sending = m_sendings;
    QByteArray rest = bytes;
    // What came in before a frame was sent is no answer to it.
    while (!rest.isEmpty() && sending == m_sendings) {
        const int taken = m_collector.add(rest, m_shape.length);
        if (m_collector.isComplete()) {
            handleAnswer(m_collector.answer());
        }
        if (taken == rest.size()) {
            break;
        }
        rest.remove(0, taken);
    }
    m_link.expect(isWaiting() ? m_collector.missing(m_shape.length) : 0);
}

void Conversation::handleAnswer(const QByteArray &answer)
{
    const bool whole = isWholeAnswer(answer);
    const bool waits = isWaiting();
    if (whole && m_phase == Phase::Fencing) {
        handleAnswerToFence(answer);
    } else if (whole && waits && m_shape.admits(answer)) {
        takeAnswer(answer);
    } else if (whole || !waits) {
        dropAnswer(answer);
    } else {
        m_doubt = {QLatin1String("block check wrong"), Defect::BlockCheck};
        if (m_phase == Phase::Asking) {
            m_alarm->cancel();
            finish(beginReply(Outcome::Bad));
        }
        m_collector.clear();
    }
}

// A refusal may belong to an open question of the same command.
void Conversation::handleAnswerToFence(const QByteArray &answer)
{
    const int station = m_question.station;
    const bool refused = answer.at(0) == kNak;
    if (!m_shape.admits(answer) || (refused && m_open.confusable(station, m_frame, m_shape))) {
        dropAnswer(answer);
        return;
    }
    m_alarm->cancel();
    Reply fence = beginReply(refused ? Outcome::Refused : Outcome::Answered);
    fence.tookMs = noteTime();
    m_open.clear(station);
    m_memory.remember(station, answer, m_frame);
    m_unanswered.clear();
    m_collector.clear();
    m_fences = 0;
    if (m_goal == Goal::Greet) {
        finish(fence);
        return;
    }
    Q_EMIT fenceEnded(fence);
    if (m_phase == Phase::Fencing) { // else whoever was told cancelled it
        m_shape = AnswerShape::toRequest(m_question.request, m_question.answerLength);
        sendQuestion();
    }
}

void Conversation::takeAnswer(const QByteArray &answer)
{
    const int station = m_question.station;
    const bool repeats =
        m_settings.repeatedAnswers == RepeatedAnswers::Confirm && m_memory.repeats(station, answer);
    if (repeats && !m_memory.isLastRequest(station, m_question.request)) {
        const quint64 sending = m_sendings;
        m_doubt = {QLatin1String("it may be the answer to an earlier request"), Defect::Other};
        m_collector.clear();
        Q_EMIT answerDoubted(station, answer, tookMs());
        if (sending == m_sendings && isWaiting()) { // else whoever was told cancelled it
            sendFence();
        }
        return;
    }
    m_alarm->cancel();
    Reply reply = beginReply(answer.at(0) == kNak ? Outcome::Refused : Outcome::Answered);
    reply.tookMs = noteTime();
    m_collector.clear();
    m_open.settle(station, answer);
    // To the same question once more: no wrong value, but its own answer may still be on the way.
    if (repeats) {
        m_open.keep(station, m_question.request, m_shape);
    }
    m_memory.remember(station, answer, m_question.request);
    m_unanswered.clear();
    finish(reply);
}

// Late, or not for this host. A question that waits goes on waiting.
void Conversation::dropAnswer(const QByteArray &answer)
{
    m_collector.clear();
    const int station = stationOf(answer);
    const auto open =
        isWholeAnswer(answer) ? m_open.settle(station, answer) : std::optional<OpenQuestion>();
    if (!open) {
        m_disturbed = true;
        m_doubt = {QLatin1String("another station or command"), Defect::Other};
        return;
    }
    if (m_memory.repeats(station, answer)) {
        m_open.keep(station, open->request, open->shape);
    }
    m_memory.remember(station, answer, open->request);
    const double lateMs = static_cast<double>(m_clock.nowMs() - open->askedMs);
    m_times.note(station, lateMs);
    if (m_phase == Phase::Fencing && m_goal != Goal::Greet && station == m_question.station) {
        // Known to be slow now: the fence gets the time that it needs.
        const int characters = static_cast<int>(m_frame.size()) + m_shape.length;
        const int leftMs = m_times.patienceMs(station, characters) - static_cast<int>(tookMs());
        m_alarm->set(std::max(1, leftMs));
    }
    Q_EMIT answeredLate(station, answer, lateMs);
}

// The answer to a repeated request may belong to its first sending, so its time counts from there.
// It is not noted as the station's: the answer to the first sending may have been lost.
double Conversation::noteTime()
{
    const qint64 nowNs = m_clock.nowNs();
    const double wentMs = static_cast<double>(nowNs - m_sentNs) / kNsPerMs;
    if (m_firstSentNs != m_sentNs) {
        return static_cast<double>(nowNs - m_firstSentNs) / kNsPerMs;
    }
    m_times.note(m_question.station, wentMs);
    return wentMs;
}

void Conversation::handleAlarm()
{
    // What the link holds back may be all that there is of an answer.
    const quint64 sending = m_sendings;
    m_link.expect(0);
    if (sending != m_sendings) {
        return;
    }
    switch (m_phase) {
    case Phase::Idle:
        break;
    case Phase::Clearing:
        proceed();
        break;
    case Phase::Asking:
        finish(beginReply(isSilence() ? Outcome::TimedOut : Outcome::Bad));
        break;
    case Phase::Fencing:
        handleFenceTimeout();
        break;
    }
}

// An echo of the request is what a two-wire converter makes of a silent station.
bool Conversation::isSilence() const
{
    return m_doubt.note.isEmpty() && !m_collector.hasBegun() &&
           (m_collector.answer().isEmpty() || m_collector.answer() == m_frame);
}

void Conversation::handleFenceTimeout()
{
    Reply reply = beginReply(isSilence() ? Outcome::TimedOut : Outcome::Bad);
    if (m_goal == Goal::Greet) {
        finish(reply);
        return;
    }
    m_disturbed = true;
    Q_EMIT fenceEnded(reply);
    if (m_phase != Phase::Fencing) {
        return;
    }
    ++m_fences;
    if (m_fences < kMostFences) {
        sendFence();
        return;
    }
    reply.frame = m_question.request;
    reply.sent = m_asked;
    finish(reply);
}

Reply Conversation::beginReply(Outcome outcome) const
{
    Reply reply;
    reply.station = m_question.station;
    reply.frame = m_frame;
    reply.answer = m_collector.hasBegun() ? m_collector.answer() : QByteArray();
    reply.strayBytes = m_collector.strayBytes();
    reply.sentMs = m_sentNs / 1000000;
    reply.tookMs = tookMs();
    reply.outcome = outcome;
    if (outcome == Outcome::Bad) {
        reply.defect = m_doubt.defect == Defect::None ? Defect::Other : m_doubt.defect;
    }
    reply.note = m_doubt.note;
    return reply;
}

void Conversation::finish(const Reply &reply)
{
    m_phase = Phase::Idle;
    // Of a part of an answer nothing more is waited for: whatever comes now is to be heard of.
    m_link.expect(0);
    m_disturbed = m_disturbed || reply.outcome == Outcome::Bad ||
                  (reply.outcome == Outcome::TimedOut && !reply.answer.isEmpty());
    Q_EMIT ended(reply);
}

} // namespace cnet
