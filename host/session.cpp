#include "host/session.h"

#include "host/driver/driver_core.h"
#include "host/exchange/conversation.h"
#include "host/link/reconnector.h"
#include "host/schedule/scheduler.h"
#include "host/time/system_clock.h"

#include <algorithm>

namespace cnet {

namespace {

TimeoutSettings timeouts(const SessionOptions &options)
{
    return {options.timeoutMs, options.line.characterMicroseconds()};
}

// Longer than any gap within an answer on a slow line, and not too short for a fast one.
ConversationSettings manners(const SessionOptions &options)
{
    const int quietCharacters = 20;
    ConversationSettings settings;
    settings.quietMs =
        std::max(settings.quietMs, quietCharacters * options.line.characterMicroseconds() / 1000);
    settings.repeatedAnswers = options.repeatedAnswers;
    return settings;
}

ScheduleSettings schedule(const SessionOptions &options)
{
    ScheduleSettings settings;
    settings.poll.blockWords = options.blockWords;
    settings.poll.intervalMs = options.intervalMs;
    settings.poll.staleMs = options.staleMs;
    settings.attempts = options.attempts;
    settings.silentStation = options.silentStation;
    return settings;
}

std::optional<LineSettings> knownLine(const SessionOptions &options)
{
    return options.lineSpeed == LineSpeed::Known ? std::optional<LineSettings>(options.line)
                                                 : std::nullopt;
}

// Before anything else asks the driver for a frame.
DriverCore &started(Driver &driver, const SessionOptions &options)
{
    DriverProperties properties;
    properties.attempts = options.attempts;
    properties.blockWords = options.blockWords;
    driver.core().start(properties);
    return driver.core();
}

} // namespace

struct Session::Works
{
    Works(Driver &driver, Link &link, const SessionOptions &options, Clock &clock)
        : times(timeouts(options))
        , conversation(link, clock, times, manners(options))
        , scheduler(started(driver, options), driver.registers(), conversation, times, clock,
                    schedule(options))
        , reconnector(link, clock, options.firstOpen)
        , statistics(knownLine(options))
    {}

    ResponseTimes times;
    Conversation conversation;
    Scheduler scheduler;
    Reconnector reconnector;
    Statistics statistics;
};

Session::Session(Driver &driver, std::unique_ptr<Link> link, const SessionOptions &options,
                 QObject *parent)
    : Session(driver, std::move(link), options, SystemClock::instance(), parent)
{}

Session::Session(Driver &driver, std::unique_ptr<Link> link, const SessionOptions &options,
                 Clock &clock, QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_options(options)
    , m_clock(clock)
    , m_link(std::move(link))
    , m_works(std::make_unique<Works>(driver, *m_link, options, clock))
{
    wireLink();
    wireTalk();
}

Session::~Session()
{
    disconnect(m_link.get(), nullptr, nullptr, nullptr);
    m_works->scheduler.stop();
    m_link->close();
}

void Session::wireLink()
{
    connect(m_link.get(), &Link::opened, this, [this] {
        m_works->statistics.stationBook().forgetStates();
        if (m_works->statistics.sinceMs() < 0) {
            resetStatistics();
        }
        setState(State::Open, QString());
        m_works->scheduler.lineOpened();
    });
    connect(m_link.get(), &Link::failed, this, [this](const QString &reason) {
        const bool wasOpen = m_state == State::Open;
        // Before values are told to be good no more: who hears it may ask why.
        m_lineError = reason;
        if (wasOpen) {
            m_lostAtMs = m_clock.nowMs();
            m_works->scheduler.lineLost();
        }
        setState(wasOpen || m_state == State::Lost ? State::Lost : m_state, reason);
        if (!wasOpen) {
            Q_EMIT openFailed();
        }
    });
    connect(&m_works->reconnector, &Reconnector::firstOpenFailed, this,
            [this](const QString &reason) {
                m_ended = true;
                // Before the jobs end: their own end is not the reason.
                setState(State::Closed, reason);
                m_works->scheduler.stop();
                notice(QString::fromLatin1("cannot open %1: %2").arg(m_link->name(), reason));
            });
    connect(&m_works->reconnector, &Reconnector::lost, this, [this](const QString &reason) {
        notice(QString::fromLatin1("%1 is lost: %2").arg(m_link->name(), reason));
    });
    connect(&m_works->reconnector, &Reconnector::restored, this, [this](int attempts) {
        const qint64 downMs = m_clock.nowMs() - m_lostAtMs;
        notice(QString::fromLatin1("%1 is open again after %2 s and %3 attempts")
                   .arg(m_link->name())
                   .arg(static_cast<double>(downMs) / 1000, 0, 'f', 1)
                   .arg(attempts));
    });
}

void Session::wireTalk()
{
    connect(m_link.get(), &Link::received, this, [this](const QByteArray &bytes) {
        m_works->statistics.received(bytes.size(), m_clock.nowMs());
    });
    connect(&m_works->conversation, &Conversation::sent, this, [this](const QByteArray &frame) {
        m_works->statistics.sent(frame.size(), m_clock.nowMs());
        Q_EMIT requestSent(frame);
    });
    connect(&m_works->conversation, &Conversation::answeredLate, this, &Session::handleLate);
    connect(&m_works->conversation, &Conversation::answerDoubted, this, &Session::answerDoubted);
    connect(&m_works->scheduler, &Scheduler::exchangeEnded, this,
            [this](const ExchangeReport &report) {
                const QString text = m_works->statistics.note(report);
                Q_EMIT exchangeEnded(report);
                notice(text);
            });
    connect(&m_works->scheduler, &Scheduler::stationChanged, this, &Session::handleStation);
    connect(&m_works->scheduler, &Scheduler::roundEnded, this, &Session::roundEnded);
}

void Session::notice(const QString &text)
{
    if (!text.isEmpty()) {
        Q_EMIT noticed(text);
    }
}

void Session::handleStation(int station)
{
    const qint64 nowMs = m_clock.nowMs();
    StationBook &book = m_works->statistics.stationBook();
    const QString text = m_works->scheduler.health().isAlive(station)
                             ? book.noteBack(station, nowMs)
                             : book.noteAway(station, nowMs);
    Q_EMIT stationChanged(station);
    notice(text);
}

void Session::handleLate(int station, const QByteArray &answer, double lateMs)
{
    m_works->statistics.stationBook().noteLate(station);
    Q_EMIT answeredLate(station, answer, lateMs);
    const int neededMs = m_works->times.neededMs(station);
    // The longer such a station is asked, the later its answers are: one notice is enough.
    if (neededMs > 0 && !m_toldSlow.contains(station)) {
        m_toldSlow.insert(station);
        notice(QString::fromLatin1("station %1 answers after %2 ms, the time-out is %3 ms: "
                                   "%4 ms would do")
                   .arg(station)
                   .arg(lateMs, 0, 'f', 0)
                   .arg(m_options.timeoutMs)
                   .arg(neededMs));
    }
}

void Session::setState(State state, const QString &error)
{
    m_lineError = error;
    if (state != m_state) {
        m_state = state;
        Q_EMIT stateChanged(state);
    }
}

void Session::open()
{
    if (m_state == State::Closed && !m_ended) {
        setState(State::Opening, QString());
        m_works->reconnector.start();
    }
}

void Session::close()
{
    m_ended = true;
    m_works->reconnector.stop();
    m_works->scheduler.stop();
    m_link->close();
    setState(State::Closed, QString());
    m_works->scheduler.lineClosed();
}

Monitor *Session::monitor(const QVector<Item> &items)
{
    auto *const monitor = new Monitor(m_options.blockWords, this);
    m_works->scheduler.add(monitor);
    monitor->setItems(items);
    return monitor;
}

ReadJob *Session::read(const QVector<Item> &items)
{
    auto *const job =
        new ReadJob(items, m_driver.registers(), m_options.blockWords, Merging::Together, this);
    m_works->scheduler.add(job);
    return job;
}

WriteJob *Session::write(const QVector<Assignment> &assignments, ReadBack readBack)
{
    auto *const job = new WriteJob(assignments, m_driver.registers(), m_options.blockWords,
                                   readBack, m_options.pendingWrites, this);
    m_works->scheduler.add(job);
    return job;
}

// A block of a recipe that is written must fit the PLC's buffer, and the driver has one block
// length.
RecipeJob *Session::transfer(const QVector<RecipeItem> &items, RecipeDirection direction,
                             Verify verify)
{
    const int words = direction == RecipeDirection::Write
                          ? std::min(m_options.blockWords, kHighestWriteWords)
                          : m_options.blockWords;
    auto *const job =
        new RecipeJob(m_driver.core(), items, direction, verify, m_driver.registers(), words, this);
    m_works->scheduler.add(job);
    return job;
}

const Statistics &Session::statistics() const
{
    return m_works->statistics;
}

void Session::resetStatistics()
{
    m_works->statistics.reset(m_clock.nowMs());
}

int Session::rounds() const
{
    return m_works->scheduler.poller().rounds();
}

} // namespace cnet
