#include "host/schedule/scheduler.h"

#include "host/jobs/write_job.h"
#include "host/recipe/recipe_job.h"
#include "host/wire/fence_frame.h"
#include "host/wire/frame_words.h"

#include <algorithm>
#include <utility>

namespace cnet {

namespace {

// How often values are looked at that nobody reads: a dead line makes them stale, too.
const int kLookMs = 500;
// How often it is looked at whether enough was saved up for a greeting.
const int kSavingMs = 20;

int greetingCharacters()
{
    const FenceFrame fence = fenceFrame(0, 0);
    return static_cast<int>(fence.request.size()) + fence.answerLength;
}

} // namespace

Scheduler::Scheduler(DriverCore &driver, const RegisterCatalog &registers,
                     Conversation &conversation, ResponseTimes &times, Clock &clock,
                     const ScheduleSettings &settings, QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_conversation(conversation)
    , m_times(times)
    , m_clock(clock)
    , m_settings(settings)
    , m_alarm(clock.makeAlarm())
    , m_health(clock.nowMs())
    , m_carrier(driver, conversation)
    , m_poller(driver, registers, m_health, clock, settings.poll)
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
    m_jobs.append(job);
    watchWrites(job);
    connect(job, &Job::cancelRequested, this, [this, job] { cancelJob(job); });
    connect(job, &QObject::destroyed, this, [this] {
        // The driver has forgotten the transfer with its job: what comes in now belongs to nobody.
        if (m_requestOpen && !m_job && m_request.kind == BlockRequest::Recipe) {
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
            [this](const Item &item, const QVector<quint16> &values, bool confirmed) {
                m_poller.writeEnded(item, values, confirmed);
            });
}

void Scheduler::lineOpened()
{
    m_lineOpen = true;
    m_health.reopen(m_clock.nowMs());
    for (const int station : m_poller.items().stations()) {
        m_poller.stationBack(station);
    }
    m_poller.lineChanged(true);
    m_poller.tell();
    proceedSoon();
}

// The frame in flight is not sent again when the line is back: nobody knows what is at its other end
// then, and a write may have been carried out.
void Scheduler::lineLost()
{
    m_lineOpen = false;
    m_conversation.cancel();
    m_carrier.giveUp();
    m_greeted = -1;
    m_forJob = -1;
    Failure failure;
    failure.kind = Failure::LineDown;
    if (m_requestOpen) {
        failure.sent = true;
        finishRequest(failure, nullptr);
    }
    failure.sent = false;
    const QList<QPointer<Job>> jobs = m_jobs;
    for (const QPointer<Job> &job : jobs) {
        if (job && !job->outlivesLine()) {
            endJob(job, failure);
        }
    }
    m_poller.lineChanged(false);
    m_poller.tell();
}

void Scheduler::stop()
{
    if (m_stopped) {
        return;
    }
    m_stopped = true;
    m_alarm->cancel();
    m_conversation.cancel();
    m_carrier.giveUp();
    endAllJobs();
}

void Scheduler::endAllJobs()
{
    Failure reason;
    reason.kind = Failure::Cancelled;
    reason.detail = QLatin1String("the session was closed");
    const bool requestOpen = std::exchange(m_requestOpen, false);
    const QList<QPointer<Job>> jobs = std::exchange(m_jobs, {});
    for (const QPointer<Job> &job : jobs) {
        if (job) {
            reason.sent = requestOpen && job == m_job;
            endJob(job, reason);
        }
    }
}

// Where nothing is out, something is asked, or the alarm is set for when there is.
void Scheduler::proceed()
{
    if (m_stopped) {
        endAllJobs(); // that were added since
        return;
    }
    if (m_conversation.isBusy()) {
        return;
    }
    if (m_clock.nowMs() - m_lookedMs >= kLookMs) {
        m_lookedMs = m_clock.nowMs();
        m_poller.look();
    }
    if (m_lineOpen && !m_stopped) {
        if (resume() || serveJobs() || greetDueStation()) {
            m_poller.tell();
            return;
        }
        m_poller.prepare();
        if (m_poller.isDue() && m_carrier.carry()) {
            m_poller.tell();
            return;
        }
    }
    m_poller.tell();
    if (!m_conversation.isBusy()) {
        rest();
    }
}

// The driver has a frame in flight, or was asked for one.
bool Scheduler::resume()
{
    if (!m_carrier.isFrameOpen() && !m_requestOpen) {
        return false;
    }
    if (m_carrier.carry()) {
        return true;
    }
    if (m_requestOpen) {
        Failure failure;
        failure.kind = Failure::Cancelled;
        failure.detail = QLatin1String("the driver has nothing to send for it");
        finishRequest(failure, nullptr);
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

Job *Scheduler::nextJob(bool first) const
{
    const auto found =
        std::find_if(m_jobs.cbegin(), m_jobs.cend(), [first](const QPointer<Job> &job) {
            return job && job->goesFirst() == first;
        });
    return found == m_jobs.cend() ? nullptr : found->data();
}

bool Scheduler::serveJobs()
{
    m_jobs.removeAll(QPointer<Job>());
    while (Job *const job = nextJob(true) != nullptr ? nextJob(true) : nextJob(false)) {
        const auto request = job->next();
        if (!request) {
            endJob(job, Failure());
            continue;
        }
        switch (admit(*request)) {
        case Admission::Granted:
            return begin(job, *request);
        case Admission::Asked:
            return true;
        case Admission::Refused:
            break;
        }
        BlockResult result;
        result.failure.kind = m_silence.value(request->item.station, Failure::NoAnswer);
        job->ended(*request, result);
    }
    return false;
}

Scheduler::Admission Scheduler::admit(const BlockRequest &request)
{
    QVector<int> stations = request.stations;
    if (stations.isEmpty()) {
        stations.append(request.item.station);
    }
    for (const int station : std::as_const(stations)) {
        const StationHealth::State state = m_health.state(station);
        if (state == StationHealth::State::Alive) {
            continue;
        }
        if (m_forJob != station) {
            m_forJob = station;
            m_greetings = 0;
        }
        const bool silent = state == StationHealth::State::Silent;
        const bool tried = m_greetings >= m_settings.attempts;
        if (tried) {
            m_health.turnDown(station, m_clock.nowMs());
        }
        if (m_health.turnedDownLately(station, m_clock.nowMs()) ||
            (silent && m_settings.silentStation == SilentStation::Fail)) {
            m_forJob = -1;
            return Admission::Refused;
        }
        ++m_greetings;
        greet(station, m_times.patienceMs(station, greetingCharacters()));
        return Admission::Asked;
    }
    m_forJob = -1;
    return Admission::Granted;
}

bool Scheduler::begin(Job *job, const BlockRequest &request)
{
    m_job = job;
    m_request = request;
    m_requestOpen = true;
    switch (request.kind) {
    case BlockRequest::Write:
        m_driver.queueWrite(request.item, request.values);
        break;
    case BlockRequest::Read:
        if (request.item.reg.isContact()) {
            // Of contacts the driver's one-off read reads others than meant.
            m_poller.disturb();
            m_driver.merge({keyOf(request.item)});
        } else {
            m_driver.queueRead(request.item);
        }
        break;
    case BlockRequest::Recipe:
        m_poller.disturb();
        break;
    }
    job->begun(request);
    if (m_carrier.carry()) {
        return true;
    }
    // The driver makes nothing of it, as of a recipe without words.
    resume();
    proceedSoon();
    return false;
}

// The first greeting of a station is short where others answer quickly: a late answer is heard all the
// same. What comes after that must be saved up, unless the line has nothing else to do.
bool Scheduler::greetDueStation()
{
    const QVector<int> stations = m_poller.items().stations();
    const qint64 nowMs = m_clock.nowMs();
    const auto station = m_health.due(stations, nowMs);
    if (!station) {
        return false;
    }
    const int characters = greetingCharacters();
    const int missed = m_health.missedGreetings(*station);
    const int glanceMs = m_times.glanceMs(*station, characters);
    const int patienceMs = std::min(m_times.patienceMs(*station, characters),
                                    glanceMs << std::min(missed, 10));
    const bool others = std::any_of(stations.cbegin(), stations.cend(),
                                    [this](int other) { return m_health.isAlive(other); });
    const bool affordable = m_health.mayCost(patienceMs, nowMs);
    if (others && missed > 0 && !affordable) {
        return false;
    }
    greet(*station, patienceMs);
    return true;
}

void Scheduler::greet(int station, int patienceMs)
{
    m_greeted = station;
    m_conversation.greet(station, patienceMs);
}

void Scheduler::handleFenceEnded(const Reply &reply)
{
    ExchangeReport report;
    report.purpose = Purpose::Fence;
    report.reply = reply;
    report.block = QLatin1String("a sign of life");
    report.good = reply.outcome == Outcome::Answered || reply.outcome == Outcome::Refused;
    report.final = true;
    Q_EMIT exchangeEnded(report);
}

void Scheduler::handleConversationEnded(const Reply &reply)
{
    if (m_greeted >= 0) {
        handleGreeting(std::exchange(m_greeted, -1), reply);
    } else {
        handleFrame(reply);
    }
    proceed();
}

void Scheduler::handleGreeting(int station, const Reply &reply)
{
    handleFenceEnded(reply);
    if (reply.outcome == Outcome::Answered || reply.outcome == Outcome::Refused) {
        stationHeard(station);
        return;
    }
    m_health.charge(reply.tookMs);
    if (m_forJob != station || m_greetings >= m_settings.attempts) {
        Failure failure;
        failure.kind = reply.outcome == Outcome::Bad ? Failure::BadAnswer : Failure::NoAnswer;
        stationMissed(station, failure);
    }
}

void Scheduler::handleFrame(const Reply &reply)
{
    AddressRange range;
    const ExchangeReport report = m_carrier.take(reply, range);
    const bool heard = report.reply.outcome == Outcome::Answered ||
                       report.reply.outcome == Outcome::Refused;
    if (heard) {
        stationHeard(report.station());
    } else {
        m_health.charge(report.reply.tookMs);
    }
    if (report.final) {
        handleFinalFrame(report, range);
    }
    Q_EMIT exchangeEnded(report);
    if (report.final && !heard) {
        stationMissed(report.station(), report.failure());
    }
}

bool Scheduler::concernsRequest(const ExchangeReport &report) const
{
    if (!m_requestOpen) {
        return false;
    }
    switch (m_request.kind) {
    case BlockRequest::Write:
        return report.purpose == Purpose::Write;
    case BlockRequest::Recipe:
        return true;
    case BlockRequest::Read:
        break;
    }
    return report.purpose == Purpose::Read ||
           (m_request.item.reg.isContact() && report.purpose == Purpose::Cyclic);
}

void Scheduler::handleFinalFrame(const ExchangeReport &report, const AddressRange &range)
{
    if (!concernsRequest(report)) {
        m_poller.blockEnded(range, report, m_carrier.hasChanges());
        return;
    }
    if (m_request.kind == BlockRequest::Recipe) {
        auto *const recipe = qobject_cast<RecipeJob *>(m_job);
        if (recipe == nullptr || recipe->blockEnded(report, range.count)) {
            finishRequest(report.failure(), &report);
        }
        return;
    }
    // The bit of a data register is changed within its word, which is read first.
    const bool halfWay = m_request.kind == BlockRequest::Write && report.good &&
                         !isWriteRequest(report.reply.frame);
    if (halfWay) {
        return;
    }
    if (m_request.kind == BlockRequest::Read && report.good) {
        m_poller.rangeRead(range);
    }
    finishRequest(report.failure(), &report);
}

void Scheduler::finishRequest(const Failure &failure, const ExchangeReport *report)
{
    BlockResult result;
    result.failure = failure;
    const BlockRequest request = std::exchange(m_request, {});
    const QPointer<Job> job = std::exchange(m_job, nullptr);
    m_requestOpen = false;
    if (request.kind == BlockRequest::Read && report != nullptr && report->good) {
        result.values = m_driver.values(request.item);
    }
    if (request.kind == BlockRequest::Read && request.item.reg.isContact()) {
        m_driver.merge({});
    }
    if (!job) {
        return;
    }
    job->ended(request, result);
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

// A request that is out is waited for: the PLC may be at it. Only a recipe is long enough to be cut off.
void Scheduler::cancelJob(Job *job)
{
    Failure reason;
    reason.kind = Failure::Cancelled;
    if (m_requestOpen && m_job == job) {
        if (m_request.kind != BlockRequest::Recipe) {
            return;
        }
        dropRequest();
        reason.sent = true;
    }
    endJob(job, reason);
    proceedSoon();
}

void Scheduler::dropRequest()
{
    m_conversation.cancel();
    m_carrier.giveUp();
    m_requestOpen = false;
    m_job = nullptr;
}

void Scheduler::endJob(Job *job, const Failure &reason)
{
    m_jobs.removeAll(job);
    job->conclude(reason);
}

} // namespace cnet
