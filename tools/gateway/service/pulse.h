#pragma once

#include "gateway/delivery/recorder_thread.h"

#include "host/time/clock.h"

#include <QObject>

#include <functional>
#include <memory>

namespace cnet::gateway {

/**
 * Beats as long as both the thread of the lines and that of the recorder run: the one asks, the
 * other answers, and the answer is heard by the one. When either hangs there is no beat.
 */
class Pulse : public QObject
{
    Q_OBJECT

public:
    static constexpr int kUsualMs = 1000;

    /**
     * @param recorder,clock must outlive this object
     * @param everyMs from one beat to the next, 1 or more
     */
    Pulse(RecorderThread &recorder, Clock &clock, int everyMs);

    /** Asks for the first time. */
    void start() { m_next->set(0); }

    /** There are no more beats. */
    void stop();

Q_SIGNALS:
    /** @param state how the recorder stands, as it has just said */
    void beat(const cnet::gateway::RecorderState &state);

private:
    void handleAnswer(const RecorderState &state);

    RecorderThread &m_recorder;
    int m_everyMs;
    std::unique_ptr<Alarm> m_next;
    bool m_isStopped = false;
};

/** How often a pulse beats for a watchdog to be fed at half of its time. */
int pulseMsFor(std::optional<qint64> watchdogMs);

} // namespace cnet::gateway
