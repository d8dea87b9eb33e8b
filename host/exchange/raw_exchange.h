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

    /**
     * Sends once the line is quiet; ended() follows. Only while not busy.
     *
     * An answer counts where it names the frame's own station and command; where the frame names
     * none, any does.
     *
     * @param patienceMs how long the answer may take, 1 or more
     */
    void send(const QByteArray &frame, int patienceMs);

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
    bool isWhole() const;
    void takeAnswer();
    void finish(bool whole);

    Link &m_link;
    Clock &m_clock;
    std::unique_ptr<Alarm> m_alarm;
    Phase m_phase = Phase::Idle;
    int m_patienceMs = 0;
    qint64 m_sinceMs = 0;    ///< when the quiet was first waited for
    qint64 m_lastByteMs = 0; ///< or when the line opened
    qint64 m_sentNs = 0;
    AnswerCollector m_collector;
    RawReply m_reply;
};

/**
 * True for a frame that does nothing but read, whatever else is wrong with it: one request, of the
 * command r or R. Of any other it is not known what a PLC does with it.
 */
bool onlyReads(const QByteArray &frame);

} // namespace cnet
