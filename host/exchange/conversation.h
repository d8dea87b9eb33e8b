#pragma once

#include "host/exchange/answer_memory.h"
#include "host/exchange/repeated_answers.h"
#include "host/exchange/reply.h"
#include "host/link/link.h"
#include "host/time/clock.h"
#include "host/time/response_times.h"
#include "host/wire/answer_collector.h"
#include "host/wire/open_questions.h"

#include <QObject>

#include <memory>

namespace cnet {

/** How a conversation treats its line. */
struct ConversationSettings
{
    int quietMs = 20; ///< silence after which the line counts as empty
    RepeatedAnswers repeatedAnswers = RepeatedAnswers::Confirm;
};

/** A request, and what a positive answer to it looks like. */
struct Question
{
    int station = 0;
    QByteArray request;
    int answerLength = 0; ///< bytes
};

/**
 * Asks one question at a time, and makes sure that the answer it reports is the answer to that one.
 *
 * Answers have no number. Station, command and length are all that tells them apart, so after a
 * time-out the late answer to one question looks like the answer to the next. The way out is a
 * fence: a read that the host builds itself, of a shape that no open question has. A station
 * answers in turn; once the answer to the fence is here, nothing older can come any more. Until
 * then everything is dropped. A fence goes out before a question whose answer could be mistaken
 *
 *  - for that of an open question, which was not answered in time or was sent several times;
 *  - for a copy of the last answer (RepeatedAnswers): between writes, whose answers are all the
 * same, and where both answers are known to be the same. If they are the same unexpectedly, the
 * answer is dropped, and the question repeated after a fence.
 *
 * It runs on the event loop of its thread, and nothing in it waits. No link may report an answer
 * from within send().
 */
class Conversation : public QObject
{
    Q_OBJECT

public:
    /** @param link,clock,times must outlive this object */
    Conversation(Link &link, Clock &clock, ResponseTimes &times,
                 const ConversationSettings &settings, QObject *parent = nullptr);

    /** Asks; ended() follows, never from within this call. Only while not busy. */
    void ask(const Question &question);

    /**
     * Asks only whether the station answers, and clears the line of what is older; ended() follows.
     * @param patienceMs how long it is waited for, 1 or more
     */
    void greet(int station, int patienceMs);

    /**
     * Forgets the question; ended() does not follow. Its answer may still come, and is known as
     * late.
     * @return true when the question itself went out
     */
    bool cancel();

    bool isBusy() const { return m_phase != Phase::Idle; }

Q_SIGNALS:
    /** A frame goes out: the question, or a fence. */
    void sent(const QByteArray &frame);
    /** The question ended. Whoever is told may ask the next one at once. */
    void ended(const cnet::Reply &reply);
    /** A fence ended; the question has not. */
    void fenceEnded(const cnet::Reply &reply);
    /** A station answered to a question that is over. @param lateMs since it was asked */
    void answeredLate(int station, const QByteArray &answer, double lateMs);
    /** The answer to the question may be a copy of the one before it: behind a fence the question
     * goes out once more. @param tookMs since it was asked */
    void answerDoubted(int station, const QByteArray &answer, double tookMs);

private:
    enum class Phase {
        Idle,
        Clearing, ///< waits for the line to be quiet
        Fencing,  ///< a fence is out
        Asking,   ///< the question is out
    };

    /** What happens when the fence is answered. */
    enum class Goal {
        Ask,   ///< the question goes out
        Greet, ///< that was all
    };

    /** What came, since a frame was sent, instead of an answer that could be believed. */
    struct Doubt
    {
        QString note;
        Defect defect = Defect::None;
    };

    void begin(Goal goal);
    bool isWaiting() const { return m_phase == Phase::Asking || m_phase == Phase::Fencing; }
    bool isConfusable(const AnswerShape &shape) const;
    void proceed();
    void send(const QByteArray &request, int patienceMs);
    void sendQuestion();
    void sendFence();
    void handleBytes(const QByteArray &bytes);
    void handleAnswer(const QByteArray &answer);
    void handleAnswerToFence(const QByteArray &answer);
    void takeAnswer(const QByteArray &answer);
    void dropAnswer(const QByteArray &answer);
    void handleAlarm();
    void handleFenceTimeout();
    double tookMs() const { return static_cast<double>(m_clock.nowNs() - m_sentNs) / kNsPerMs; }
    double noteTime();
    Reply beginReply(Outcome outcome) const;
    bool isSilence() const;
    void finish(const Reply &reply);

    Link &m_link;
    Clock &m_clock;
    ResponseTimes &m_times;
    ConversationSettings m_settings;
    std::unique_ptr<Alarm> m_alarm; ///< the time-out, or the end of the quiet that is waited for
    Phase m_phase = Phase::Idle;
    Goal m_goal = Goal::Ask;
    Question m_question;
    AnswerShape m_shape; ///< of what is out: the question or the fence
    QByteArray m_frame;  ///< the same, as sent
    qint64 m_sentNs = 0;
    qint64 m_firstSentNs = 0; ///< of a question that is asked again since it was not answered
    QByteArray m_unanswered;  ///< that question
    quint64 m_sendings = 0;
    int m_patienceMs = 0; ///< of a greeting
    int m_fences = 0;     ///< that went out for this question and were not answered
    bool m_asked = false; ///< the question went out
    Doubt m_doubt;
    OpenQuestions m_open;
    AnswerCollector m_collector;
    AnswerMemory m_memory;
    bool m_disturbed = false; ///< the line has to be quiet before the next frame
    qint64 m_lastByteMs = 0;
    qint64 m_clearingSinceMs = 0;
};

} // namespace cnet
