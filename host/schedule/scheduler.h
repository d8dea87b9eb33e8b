#pragma once

#include "host/jobs/job_queue.h"
#include "host/schedule/frame_carrier.h"
#include "host/schedule/greeter.h"
#include "host/schedule/job_request.h"
#include "host/schedule/poller.h"
#include "host/schedule/station_health.h"

#include <QHash>
#include <QObject>

#include <memory>

namespace cnet {

/** How a session uses its line. */
struct ScheduleSettings
{
    PollSettings poll;
    int attempts = 3; ///< how often a station is greeted for a job before the job fails
    SilentStation silentStation = SilentStation::Greet;
};

/**
 * Decides what is asked next: recipes and writes, one-off reads, a greeting for a station that may
 * be back, the blocks of the monitored items.
 *
 * A station is greeted before it is used; while it does not answer, nothing else is asked of it,
 * and its items leave the cyclic reads.
 */
class Scheduler : public QObject
{
    Q_OBJECT

public:
    /** All but `settings` must outlive this object. */
    Scheduler(DriverCore &driver, const RegisterCatalog &registers, Conversation &conversation,
              ResponseTimes &times, Clock &clock, const ScheduleSettings &settings,
              QObject *parent = nullptr);
    ~Scheduler() override;

    /** Puts a job into the queue; it remains its parent's. */
    void add(Job *job);
    /** Has the items of a monitor read from now on, until it is deleted. */
    void add(Monitor *monitor);

    void lineOpened();
    void lineLost();
    /** After stop(): what monitors show is not read any more. */
    void lineClosed();
    /** Ends all jobs; nothing is sent from here on. */
    void stop();

    const StationHealth &health() const { return m_health; }
    const Poller &poller() const { return m_poller; }

Q_SIGNALS:
    void exchangeEnded(const cnet::ExchangeReport &report);
    /** A station has stopped or resumed answering. */
    void stationChanged(int station);
    void roundEnded(int rounds);

private:
    void proceedSoon() { m_alarm->set(0); }
    void proceed();
    bool askNext();
    void rest();
    bool resume();
    bool serveJobs();
    void handleConversationEnded(const Reply &reply);
    void handleFenceEnded(const Reply &reply);
    void handleGreeting(const Reply &reply);
    void handleFrame(const Reply &reply);
    void handleFinalFrame(const ExchangeReport &report);
    void finishRequest(const Failure &failure);
    void stationHeard(int station);
    void stationMissed(int station, const Failure &failure);
    void watchWrites(Job *job);
    void cancelJob(Job *job);
    bool stopTalking();
    void dropRequest();

    Conversation &m_conversation;
    ResponseTimes &m_times;
    Clock &m_clock;
    std::unique_ptr<Alarm> m_alarm; ///< when there is something to do again
    StationHealth m_health;
    FrameCarrier m_carrier;
    Poller m_poller;
    Greeter m_greeter;
    JobQueue m_jobs;
    JobRequest m_request;
    QHash<int, Failure::Kind> m_silence; ///< by station: why it was given up
    bool m_lineOpen = false;
    bool m_lineLost = false; ///< it was open
    bool m_stopped = false;
    int m_requestsInARow = 0; ///< of jobs
    qint64 m_lookedMs = 0;
};

} // namespace cnet
