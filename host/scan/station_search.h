#pragma once

#include "host/exchange/conversation.h"
#include "host/time/clock.h"

#include <QObject>
#include <QVector>

#include <memory>

namespace cnet {

/**
 * Asks stations one after the other whether they are there, with one frame each; where any of them
 * answers, or it is told to be thorough, those that did not are asked once more.
 */
class StationSearch : public QObject
{
    Q_OBJECT

public:
    enum class Effort {
        Once,     ///< silent stations are asked again only where others answer
        Thorough, ///< they are asked again in any case
    };

    /**
     * @param conversation on an open line, not busy, that has asked nothing yet; must outlive this
     * object
     * @param form of the frames, see fenceFrame(); none of which may be open from before
     */
    StationSearch(Conversation &conversation, Clock &clock, const QVector<int> &stations,
                  Effort effort, int form, QObject *parent = nullptr);

    /** Begins; ended() follows. */
    void start();

    /** Frames that it sends at most. */
    static int mostFrames(int stations) { return 2 * stations; }

Q_SIGNALS:
    /**
     * A station is there; once for each.
     * @param tookMs what its answer took; more than the time-out where it came after that
     */
    void found(int station, double tookMs);
    void asked();
    void ended();

private:
    void askNext();
    void handleEnded(const Reply &reply);
    void note(int station, double tookMs);

    Conversation &m_conversation;
    std::unique_ptr<Alarm> m_alarm; ///< the end of the wait for late answers
    QVector<int> m_stations;
    QVector<int> m_waiting; ///< to be asked in this round
    QVector<int> m_found;
    Effort m_effort;
    int m_form;
    int m_round = 1;
};

} // namespace cnet
