#pragma once

#include "host/exchange/conversation.h"
#include "host/scan/probe_frame.h"
#include "host/scan/reach_search.h"
#include "host/scan/scan_result.h"

#include <QObject>
#include <QVector>

#include <optional>

namespace cnet {

/**
 * Finds out which registers a station has and how far they reach. It only reads.
 *
 * A station may also refuse for the moment only, so each refusal is believed when it comes again,
 * and at the end the address behind the last one is asked for once more. A station that was caught
 * at refusing what it has must refuse three times in a row.
 */
class StationSurvey : public QObject
{
    Q_OBJECT

public:
    /**
     * @param conversation on an open line, not busy; must outlive this object
     * @param registers word registers with their limits, one at least
     */
    StationSurvey(Conversation &conversation, int station, const QVector<RegisterInfo> &registers,
                  QObject *parent = nullptr);

    /** Begins; ended() follows, never from within this call. */
    void start();

    /** In the order of the registers; those after the last one that was looked at are Unknown. */
    const QVector<RegisterReach> &reaches() const { return m_reaches; }

    /** Addresses of a register that it asks for at most, however often. */
    static int mostQuestions(const RegisterInfo &reg);

    /** Frames that it sends at most; what does not fit is Unknown. */
    static int mostFrames(const QVector<RegisterInfo> &registers);

Q_SIGNALS:
    /** An address was asked for, which is told once where a refusal is asked for again. */
    void asked();
    void ended();

private:
    void ask();
    void handleEnded(const Reply &reply);
    void handleAnswer(const Reply &reply);
    bool isAbsent() const;
    bool isRepeating() const { return m_absences + m_refusals > 0; }
    void noteContradiction();
    void beginRegister();
    void settle();
    std::optional<int> nextAddress() const;
    void nextRegister();

    Conversation &m_conversation;
    int m_station;
    QVector<RegisterReach> m_reaches;
    int m_current = 0; ///< index of the register that is looked at
    std::optional<ReachSearch> m_search;
    bool m_confirmed = false; ///< the address behind the last one was refused twice
    ProbeForm m_form;
    int m_attempts = 0;
    int m_absences = 0;     ///< times that the address asked for was said not to be there
    int m_refusals = 0;     ///< times that it was refused for other reasons
    bool m_doubted = false; ///< the station has refused what it has
    int m_silent = 0;       ///< registers in a row without an answer
    int m_framesLeft;
};

} // namespace cnet
