#include "host/schedule/scheduler.h"

#include "host/jobs/write_job.h"

#include <algorithm>
#include <utility>

namespace cnet {

namespace {

// How often qualities are reviewed: values become stale by time alone.
const int kLookMs = 500;
// How often to check whether enough was saved up for a greeting.
const int kSavingMs = 20;
// Requests of jobs, after which somebody else has a turn.
const int kMostRequestsInARow = 10;

} // namespace

Scheduler::Scheduler(DriverCore &driver, const RegisterCatalog &registers,
                     Conversation &conversation, ResponseTimes &times, Clock &clock,
                     const ScheduleSettings &settings, QObject *parent)
    : QObject(parent)
    , m_conversation(conversation)
    , m_times(times)
    , m_clock(clock)
    , m_alarm(clock.makeAlarm())
    , m_health(clock.nowMs())
    , m_carrier(driver, conversation)
    , m_poller(driver, registers, m_health, clock, settings.poll)
    , m_greeter(conversation, times, m_health, clock, settings.attempts, settings.silentStation)
    , m_request(driver, m_carrier, m_poller)
{
    connect(m_alarm.get(), &Alarm::fired, this, &Scheduler::proceed);
    connect(&conversation, &Conversation::ended, this, &Scheduler::handleConversationEnded);
    connect(&conversation, &Conversation::fenceEnded, this, &Scheduler::handleFenceEnded);
    connect(&conversation, &Conversation::answeredLate, this,
            [this](int station, const QByteArray &, double lateMs) {
                // One whose answers never come in time is of no more use than a silent one.
                if (m_times.patienceMs(station, 0) >= lateMs && m_times.neededMs(station) == 0) {
                    stationHeard(station);
                }
            });
    connect(&m_poller, &Poller::roundEnded, this, &Scheduler::roundEnded);
    connect(&m_poller, &Poller::jobWanted, this, [this](Job *job) { add(job); });
}

Scheduler::~Scheduler()
{
    stop();
}

void Scheduler::add(Job *job)
{
    m_jobs.add(job);
    watchWrites(job);
    connect(job, &Job::cancelRequested, this, [this, job] { cancelJob(job); });
    connect(job, &QObject::destroyed, this, [this] {
        // The driver has forgotten the transfer with its job: what comes in now belongs to nobody.
        if (m_request.isRecipe() && m_request.job() == nullptr) {
            dropRequest();
        }
        proceedSoon();
    });
    proceedSoon();
}

void Scheduler::add(Monitor *monitor)
{
    m_poller.add(monitor);
    connect(monitor, &Monitor::itemsChanged, this, [this] { proceedSoon(); });
    proceedSoon();
}

// What an operator has written shows as waiting from the moment on.
void Scheduler::watchWrites(Job *job)
{
    auto *const write = qobject_cast<WriteJob *>(job);
    if (write == nullptr) {
        return;
    }
    for (const WriteResult &result : write->results()) {
        m_poller.writeBegun(result.assignment.item, result.assignment.values);
    }
    connect(write, &WriteJob::blockSettled, this,
            [this](const Item &item, const QVector<quint16> &values, Confirmation confirmation) {
                m_poller.writeEnded(item, values, confirmation);
            });
}

void Scheduler::lineOpened()
{
    m_lineOpen = true;
    m_lineLost = false;
    m_health.reopen(m_clock.nowMs());
    for (const int station : m_poller.items().stations()) {
        m_poller.stationBack(station);
    }
    m_poller.lineOpened();
    m_poller.tell();
    proceedSoon();
}

// The frame in flight is not sent again when the line is back: nobody knows what is at its other
// end then, and a write may have been carried out.
void Scheduler::lineLost()
{
    m_lineOpen = false;
    m_lineLost = true;
    Failure failure;
    failure.kind = Failure::LineDown;
    failure.sent = stopTalking();
    if (m_request.isOpen()) {
        finishRequest(failure);
    }
    m_jobs.endUnkept();
    m_poller.lineLost();
    m_poller.tell();
}

void Scheduler::lineClosed()
{
    if (std::exchange(m_lineOpen, false)) {
        m_poller.lineLost();
        m_poller.tell();
    }
}

// True when the request that was underway went out.
bool Scheduler::stopTalking()
{
    const bool asked = m_conversation.cancel() && m_carrier.isFrameOpen();
    const bool sent = asked || m_carrier.wasSent();
    m_carrier.giveUp();
    m_greeter.forget();
    return sent;
}

void Scheduler::stop()
{
    if (m_stopped) {
        return;
    }
    m_stopped = true;
    m_alarm->cancel();
    const bool sent = stopTalking();
    const Job *const job = sent ? m_request.job() : nullptr;
    m_request.drop();
    m_jobs.endAll(job);
}

// If no request is out, sends the next one, or sets the alarm for it.
void Scheduler::proceed()
{
    if (m_stopped) {
        m_jobs.endAll(nullptr); // that were added since
        return;
    }
    if (m_conversation.isBusy()) {
        return;
    }
    if (m_lineLost) {
        m_jobs.endUnkept(); // that were added since
    }
    if (m_clock.nowMs() - m_lookedMs >= kLookMs) {
        m_lookedMs = m_clock.nowMs();
        m_poller.look();
    }
    const bool asked = m_lineOpen && askNext();
    m_poller.tell();
    if (!asked && !m_stopped && !m_conversation.isBusy()) {
        rest();
    }
}

// Jobs come first, but those without a pause leave some time for the rest. Whoever is told that one
// is over may close the session: then nothing is asked any more.
bool Scheduler::askNext()
{
    if (resume()) {
        return true;
    }
    const bool jobsWait = m_requestsInARow >= kMostRequestsInARow;
    if (!jobsWait && serveJobs()) {
        return true;
    }
    if (m_stopped) {
        return false;
    }
    m_requestsInARow = 0;
    if (m_greeter.greetDue(m_poller.items().stations())) {
        return true;
    }
    m_poller.prepare();
    if (m_poller.isDue() && m_carrier.carry()) {
        return true;
    }
    return jobsWait && serveJobs();
}

// Goes on with the request that is open. For some the driver has no frame, as for a recipe without
// words.
bool Scheduler::resume()
{
    if (!m_carrier.isFrameOpen() && !m_request.isOpen()) {
        return false;
    }
    if (m_carrier.carry()) {
        return true;
    }
    if (m_request.isOpen()) {
        Failure failure;
        failure.kind = Failure::Cancelled;
        failure.detail = QLatin1String("the driver has nothing to send for it");
        finishRequest(failure);
    }
    return false;
}

void Scheduler::rest()
{
    const qint64 nowMs = m_clock.nowMs();
    qint64 untilMs = nowMs + kLookMs;
    const auto wake = [&](qint64 atMs, int leastMs) {
        if (m_lineOpen && atMs >= 0) {
            untilMs = std::min(untilMs, std::max(atMs, nowMs + leastMs));
        }
    };
    wake(m_poller.nextMs(), 1);
    wake(m_health.nextDueMs(m_poller.items().stations()), kSavingMs);
    m_alarm->set(static_cast<int>(untilMs - nowMs));
}

bool Scheduler::serveJobs()
{
    while (Job *const job = m_stopped ? nullptr : m_jobs.next()) {
        const auto request = job->next();
        if (!request) {
            m_jobs.end(job, Failure());
            continue;
        }
        const QVector<int> stations =
            request->stations.isEmpty() ? QVector<int>{request->item.station} : request->stations;
        switch (m_greeter.admit(stations)) {
        case Greeter::Admission::Granted:
            ++m_requestsInARow;
            if (m_request.begin(job, *request) || resume()) {
                return true;
            }
            continue;
        case Greeter::Admission::Asked:
            return true;
        case Greeter::Admission::Refused:
            break;
        }
        BlockRequest refused = *request;
        refused.item.station = m_greeter.refused();
        BlockResult result;
        result.failure.kind = m_silence.value(m_greeter.refused(), Failure::NoAnswer);
        job->ended(refused, result);
    }
    return false;
}

void Scheduler::handleFenceEnded(const Reply &reply)
{
    ExchangeReport report;
    report.purpose = Purpose::Fence;
    report.reply = reply;
    report.good = reply.outcome == Outcome::Answered || reply.outcome == Outcome::Refused;
    report.final = true;
    Q_EMIT exchangeEnded(report);
}

void Scheduler::handleConversationEnded(const Reply &reply)
{
    if (m_greeter.isUnderway()) {
        handleGreeting(reply);
    } else {
        handleFrame(reply);
    }
    proceed();
}

void Scheduler::handleGreeting(const Reply &reply)
{
    const int station = m_greeter.station();
    const Greeter::Verdict verdict = m_greeter.take(reply);
    handleFenceEnded(reply);
    if (verdict == Greeter::Verdict::Heard) {
        stationHeard(station);
    } else if (verdict == Greeter::Verdict::Missed) {
        Failure failure;
        failure.kind = reply.outcome == Outcome::Bad ? Failure::BadAnswer : Failure::NoAnswer;
        stationMissed(station, failure);
    }
}

void Scheduler::handleFrame(const Reply &reply)
{
    ExchangeReport report = m_carrier.take(reply);
    // The driver's frames of a recipe have no tag of their own.
    if (m_request.isRecipe()) {
        report.purpose = Purpose::Recipe;
    }
    // First of all: whoever ends with what follows from it has counted it.
    Q_EMIT exchangeEnded(report);
    const bool heard =
        report.reply.outcome == Outcome::Answered || report.reply.outcome == Outcome::Refused;
    if (heard) {
        stationHeard(report.station());
    } else {
        m_health.charge(report.reply.tookMs);
    }
    if (report.final) {
        handleFinalFrame(report);
    }
    if (report.final && !heard) {
        stationMissed(report.station(), report.failure());
    }
}

void Scheduler::handleFinalFrame(const ExchangeReport &report)
{
    if (!m_request.concerns(report)) {
        m_poller.blockEnded(report, m_carrier.hasChanges());
    } else if (m_request.take(report)) {
        finishRequest(report.failure());
    }
}

void Scheduler::finishRequest(const Failure &failure)
{
    const QPointer<Job> job = m_request.finish(failure);
    if (job && job->isCancelRequested()) {
        cancelJob(job);
    }
}

void Scheduler::stationHeard(int station)
{
    if (m_health.heard(station)) {
        m_poller.stationBack(station);
        Q_EMIT stationChanged(station);
    }
}

void Scheduler::stationMissed(int station, const Failure &failure)
{
    m_silence[station] = failure.kind;
    if (m_health.missed(station, m_clock.nowMs())) {
        m_poller.stationFailed(station, failure);
        Q_EMIT stationChanged(station);
    }
}

// A request that is out is waited for: the PLC may be carrying it out. Only a recipe takes so long
// that it is interrupted.
void Scheduler::cancelJob(Job *job)
{
    Failure reason;
    reason.kind = Failure::Cancelled;
    if (m_request.isOpen() && m_request.job() == job) {
        if (!m_request.isRecipe()) {
            return;
        }
        dropRequest();
        reason.sent = true;
    }
    m_jobs.end(job, reason);
    proceedSoon();
}

void Scheduler::dropRequest()
{
    stopTalking();
    m_request.drop();
}

} // namespace cnet
