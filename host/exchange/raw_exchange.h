#pragma once

#include "host/link/link.h"
#include "host/time/clock.h"
#include "host/wire/answer_collector.h"

#include <QObject>

#include <memory>

namespace cnet {

/** What came back to a frame that was sent as it is. */
struct RawReply
{
    QByteArray frame;     ///< as sent
    QByteArray answer;    ///< from ACK or NAK on, as far as it came; empty: none came
    bool whole = false;   ///< the answer has its end, and its block check where one is due
    QByteArray elsewhere; ///< answers of other stations or to other commands, in their order
    int strayBytes = 0;   ///< that belong to no answer
    double tookMs = 0;    ///< from the sending until the answer was whole, or until it was given up
};

/**
 * Finds the answer to a frame in what comes back.
 *
 * An answer counts where it names the frame's own station and command; where the frame names none,
 * any does.
 */
class RawAnswer
{
public:
    explicit RawAnswer(const QByteArray &frame = QByteArray());

    /** @return true once the answer is whole; what follows is not looked at */
    bool add(const QByteArray &bytes);

    /** What is known so far, but for the time. */
    RawReply reply() const;

private:
    bool endsHere() const;

    RawReply m_reply;
    AnswerCollector m_collector;
};

/**
 * Sends one frame as it is, right or wrong, and waits for what comes. It is for people who look at
 * the line: nothing is sent again and nothing is made of the answer. Values are for a Session.
 *
 * It runs on the event loop of its thread, and nothing in it waits.
 */
class RawExchange : public QObject
{
    Q_OBJECT

public:
    /** @param link,clock must outlive this object */
    RawExchange(Link &link, Clock &clock, QObject *parent = nullptr);

    /** Milliseconds without a byte after which nothing is on its way any more. */
    static constexpr int kQuietMs = 20;

    /**
     * Sends once the line is quiet; ended() follows. Only while not busy.
     *
     * @param patienceMs how long the answer may take, 1 or more
     * @param quietMs for so long no byte must have come; 0 where nothing more can come
     */
    void send(const QByteArray &frame, int patienceMs, int quietMs = kQuietMs);

    bool isBusy() const { return m_phase != Phase::Idle; }

Q_SIGNALS:
    void sent(const QByteArray &frame);
    void ended(const cnet::RawReply &reply);

private:
    enum class Phase {
        Idle,
        Clearing, ///< waits for the line to be quiet
        Waiting,  ///< for the answer
    };

    void proceed();
    void handleBytes(const QByteArray &bytes);
    void finish();

    Link &m_link;
    Clock &m_clock;
    std::unique_ptr<Alarm> m_alarm;
    Phase m_phase = Phase::Idle;
    int m_patienceMs = 0;
    int m_quietMs = kQuietMs;
    qint64 m_sinceMs = 0;    ///< when the quiet was first waited for
    qint64 m_lastByteMs = 0; ///< or when the line opened
    qint64 m_sentNs = 0;
    QByteArray m_frame;
    RawAnswer m_answer;
};

/**
 * True for a frame that does nothing but read, whatever else is wrong with it: one request, of the
 * command r or R. Of any other it is not known what a PLC does with it.
 */
bool onlyReads(const QByteArray &frame);

} // namespace cnet
