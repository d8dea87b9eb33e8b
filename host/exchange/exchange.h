#pragma once

#include "host/wire/answer_collector.h"
#include "host/exchange/deadline.h"
#include "host/driver/driver_library.h"
#include "host/exchange/exchange_report.h"
#include "host/wire/late_answers.h"
#include "host/link/link.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace cnet {

/** All in milliseconds unless said otherwise. */
struct ExchangeSettings
{
    int timeoutMs = 0;  ///< for an answer, from handing over its request on; 0: see timeoutFor()
    int intervalMs = 0; ///< pause between two rounds of cyclic reads
    int quietMs = 20;   ///< silence after which the line counts as empty
    int characterMicroseconds = 10000000 / 38400; ///< time of a character on the line
};

/**
 * The request-reply loop: asks the driver for a frame, sends it, collects the answer, hands it
 * back.
 *
 * It runs on the event loop of its thread and nowhere else. Nothing in it waits. The next request
 * goes out once everybody was told how the last one ended; no link reports an answer from within
 * send(), so an answer never leads to a call from within a call.
 *
 * After a time-out or a bad answer the line is emptied before anything is sent again. Where a
 * request was answered only at a later attempt, the earlier ones may still be answered too; the
 * line is then kept quiet until they were, or for twice the time-out.
 *
 * While the link is down the frame in flight stays with the driver, which hands it out again
 * afterwards; a broken link costs no attempt.
 */
class Exchange : public QObject
{
    Q_OBJECT

public:
    /** @param driver,link must outlive this object */
    Exchange(const DriverFunctions &driver, Link &link, const ExchangeSettings &settings,
             QObject *parent = nullptr);

    /** Starts exchanging as soon as the link is open. */
    void start();

    /** Sends no more; an answer that is still underway is not waited for. */
    void stop();

    /** Asks the driver at once instead of at the end of a pause: there is something new to send. */
    void wake();

    /** @param blocks what intf_addrMerge returned: a round is over when as many blocks were read */
    void setRoundLength(int blocks);

    /** Rounds in which every block was answered or given up once. */
    int rounds() const { return m_rounds; }

    /** Milliseconds on the clock that ExchangeReport::sentMs is taken from. */
    qint64 nowMs() const { return m_clock.elapsed(); }

    /**
     * How long an answer may take: the set time or, where there is none, half a second for the
     * PLC's own time and twice what both frames take on the line.
     */
    int timeoutFor(int requestLength, int answerLength) const;

Q_SIGNALS:
    void sent(const QByteArray &frame);
    /** A request ended; the driver has dealt with the answer. */
    void ended(const cnet::ExchangeReport &report);
    void roundEnded(int rounds);
    /** The driver has nothing to send now. */
    void idle();

private:
    enum class State {
        Resting,  ///< stopped, or no link
        Telling,  ///< a request ended well: the driver is asked when everybody knows
        Pausing,  ///< the timer says when to ask the driver
        Awaiting, ///< a request is out, and the deadline is set
        Emptying, ///< what comes in is thrown away until the line is quiet
    };

    void handleOpened();
    void handleBytes(const QByteArray &bytes);
    void handleTimer();
    void rest();
    void pause(int ms);
    void emptyLine(qint64 holdMs, int lateUnderway);
    void askDriver();
    void sendFrame();
    void handleAnswer();
    void handleTimeout();
    void judgeAnswer(ExchangeReport &report, int &lateUnderway);
    ExchangeReport beginReport(Outcome outcome) const;
    void schedule(const ExchangeReport &report, int lateUnderway, int intervalMs);
    void finish(const ExchangeReport &report, int lateUnderway);
    bool endsRound(const ExchangeReport &report);
    int deal(QByteArray answer);

    const DriverFunctions &m_driver;
    Link &m_link;
    ExchangeSettings m_settings;
    State m_state = State::Resting;
    bool m_running = false;
    QTimer m_timer; ///< the end of a pause, or of the quiet that is waited for
    Deadline m_deadline;
    QElapsedTimer m_clock;
    FRAME_PRO m_frame{};
    QByteArray m_request;
    QString m_requestText; ///< as the driver describes it
    qint64 m_sentNs = 0;
    AnswerCollector m_collector;
    LateAnswers m_late;
    int m_lateHoldMs = 0;     ///< how long the line is kept quiet for late answers
    int m_lateUnderway = 0;   ///< late answers that have not come yet
    qint64 m_holdUntilMs = 0; ///< nothing is sent before
    qint64 m_lastByteMs = 0;  ///< when the line was last heard
    qint64 m_giveUpAtMs = 0;  ///< a line that is never quiet is used all the same
    int m_roundLength = 0;
    int m_readsOfRound = 0;
    int m_rounds = 0;
};

} // namespace cnet
