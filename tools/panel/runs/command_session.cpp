#include "panel/runs/command_session.h"

#include "host/exchange/trace.h"
#include "host/link/captured_link.h"
#include "panel/system/exit_code.h"
#include "simulation/link_sim.h"

namespace cnet::panel {

namespace {

// How long a command that does one thing waits for a link that is lost.
const int kLostLimitMs = 10000;

std::unique_ptr<Link> plainLinkFor(const LinkSettings &settings, const QVector<int> &stations,
                                   QPointer<LinkSim> *simulated)
{
    if (settings.replay) {
        return std::make_unique<LinkSim>(settings.replay, settings.replayName);
    }
    if (settings.link) {
        return makeLink(*settings.link);
    }
    auto link = std::make_unique<LinkSim>(stations, settings.session.line.baud);
    if (simulated != nullptr) {
        *simulated = link.get();
    }
    return link;
}

} // namespace

// What becomes of the capture is said, and is no reason to stop talking.
std::unique_ptr<Link> linkFor(const LinkSettings &settings, const QVector<int> &stations,
                              Messages &messages, QPointer<LinkSim> *simulated)
{
    std::unique_ptr<Link> link = plainLinkFor(settings, stations, simulated);
    if (!settings.capture) {
        return link;
    }
    settings.capture->setTrouble([&messages](const QString &what) { messages.sayLost(what); });
    return std::make_unique<CapturedLink>(std::move(link), settings.capture);
}

CommandSession::CommandSession(Driver &driver, const LinkSettings &settings,
                               const QVector<int> &stations, Messages &messages)
    : m_messages(messages)
    , m_session(driver, linkFor(settings, stations, messages, &m_simulated), settings.session)
{
    connect(&m_stopSignals, &StopSignals::caught, this, &CommandSession::stopRequested);
    connect(&m_session, &Session::noticed, this,
            [this](const QString &text) { m_messages.say(text); });
    connect(&m_session, &Session::stateChanged, this, [this](Session::State state) {
        if (state == Session::State::Closed) {
            finish(kNoLink);
        }
    });
    if (settings.trace) {
        trace();
    }
    if (!settings.statsFile.isEmpty()) {
        m_statistics = std::make_unique<StatisticsFile>(settings.statsFile, m_session, m_messages);
    }
}

void CommandSession::addStations(const QVector<int> &stations)
{
    if (m_simulated) {
        m_simulated->addStations(stations);
    }
}

CommandSession::~CommandSession()
{
    m_session.disconnect(this);
}

void CommandSession::trace()
{
    connect(&m_session, &Session::requestSent, this, [this](const QByteArray &frame) {
        m_messages.line(traceRequest(QTime::currentTime(), frame));
    });
    connect(&m_session, &Session::exchangeEnded, this, [this](const ExchangeReport &report) {
        m_messages.line(traceAnswer(QTime::currentTime(), report));
    });
    connect(&m_session, &Session::answeredLate, this,
            [this](int, const QByteArray &answer, double lateMs) {
                m_messages.line(traceLate(QTime::currentTime(), answer, lateMs));
            });
    connect(&m_session, &Session::answerDoubted, this,
            [this](int, const QByteArray &answer, double tookMs) {
                m_messages.line(traceDoubted(QTime::currentTime(), answer, tookMs));
            });
}

int CommandSession::run()
{
    m_session.open();
    // Opening may have failed at once.
    if (!m_finished) {
        m_loop.exec();
    }
    m_finished = true;
    if (m_statistics && !m_statistics->write() && m_exitCode == kFine) {
        m_exitCode = kOutputLost;
    }
    m_session.close();
    return m_exitCode;
}

int CommandSession::run(Job &job)
{
    m_lostLimit.setSingleShot(true);
    connect(&m_lostLimit, &QTimer::timeout, this, [this, &job] {
        m_messages.say(QLatin1String("the link is lost and does not come back"));
        job.cancel();
    });
    connect(&m_session, &Session::stateChanged, this, [this](Session::State state) {
        if (state == Session::State::Lost) {
            m_lostLimit.start(kLostLimitMs);
        } else {
            m_lostLimit.stop();
        }
    });
    connect(&job, &Job::finished, this,
            [this, &job] { finish(job.state() == Job::State::Done ? kFine : kDeviceFailed); });
    return run();
}

void CommandSession::finish(int exitCode)
{
    if (!m_finished) {
        m_finished = true;
        m_exitCode = exitCode;
        m_loop.quit();
    }
}

QVector<int> stationsOf(const QVector<Item> &items)
{
    QVector<int> stations;
    for (const Item &item : items) {
        if (!stations.contains(item.station)) {
            stations.append(item.station);
        }
    }
    return stations;
}

} // namespace cnet::panel
