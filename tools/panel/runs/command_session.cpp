#include "panel/runs/command_session.h"

#include "panel/system/exit_code.h"
#include "host/exchange/trace.h"

#include "simulation/link_sim.h"

#include <algorithm>

namespace cnet::panel {

namespace {

std::unique_ptr<Link> linkTo(const LinkAddress &address, const QVector<int> &stations)
{
    if (address.kind == LinkAddress::Kind::Sim) {
        return std::make_unique<LinkSim>(stations, address.line.baud);
    }
    return makeLink(address);
}

ExchangeSettings exchangeSettings(const LinkSettings &settings, const Link &link)
{
    ExchangeSettings exchange;
    exchange.timeoutMs = settings.timeoutMs;
    exchange.intervalMs = settings.intervalMs < 0 ? link.usualIntervalMs() : settings.intervalMs;
    exchange.characterMicroseconds = settings.link.line.characterMicroseconds();
    // Longer than any gap within an answer on a slow line, and not too short for a fast one.
    const int quietCharacters = 20;
    exchange.quietMs =
        std::max(exchange.quietMs, quietCharacters * exchange.characterMicroseconds / 1000);
    return exchange;
}

} // namespace

Session::Session(const DriverFunctions &functions, const LinkSettings &settings,
                 const QVector<int> &stations, Messages &messages, QObject *parent)
    : QObject(parent)
    , m_messages(messages)
    , m_driver(functions)
    , m_link(linkTo(settings.link, stations))
{
    DriverProperties properties;
    properties.attempts = settings.attempts;
    properties.blockWords = settings.blockWords;
    m_driver.start(properties);
    m_exchange =
        std::make_unique<Exchange>(functions, *m_link, exchangeSettings(settings, *m_link));
    m_reconnector = std::make_unique<Reconnector>(*m_link);
    connect(&m_stopSignals, &StopSignals::caught, this, &Session::stopRequested);
    wireLink();
    wireExchange(settings.trace);
}

Session::~Session() = default;

void Session::wireLink()
{
    connect(
        m_reconnector.get(), &Reconnector::firstOpenFailed, this, [this](const QString &reason) {
            m_messages.say(QString::fromLatin1("cannot open %1: %2").arg(m_link->name(), reason));
            finish(kNoLink);
        });
    connect(m_reconnector.get(), &Reconnector::lost, this, [this](const QString &reason) {
        m_linkLost = reason;
        m_lostAtMs = m_exchange->nowMs();
        m_messages.say(QString::fromLatin1("%1 is lost: %2").arg(m_link->name(), reason));
    });
    connect(m_reconnector.get(), &Reconnector::restored, this, [this](int attempts) {
        const qint64 downMs = m_exchange->nowMs() - m_lostAtMs;
        m_linkLost.clear();
        m_messages.say(QString::fromLatin1("%1 is open again after %2 s and %3 attempts")
                           .arg(m_link->name())
                           .arg(static_cast<double>(downMs) / 1000, 0, 'f', 1)
                           .arg(attempts));
    });
}

void Session::wireExchange(bool trace)
{
    connect(m_exchange.get(), &Exchange::ended, this, [this](const ExchangeReport &report) {
        for (const QString &message : m_stations.note(report, m_exchange->nowMs())) {
            m_messages.say(message);
        }
    });
    if (!trace) {
        return;
    }
    connect(m_exchange.get(), &Exchange::sent, this, [this](const QByteArray &frame) {
        m_messages.line(traceRequest(QTime::currentTime(), frame));
    });
    connect(m_exchange.get(), &Exchange::ended, this, [this](const ExchangeReport &report) {
        m_messages.line(traceAnswer(QTime::currentTime(), report));
    });
}

int Session::run()
{
    m_exchange->start();
    m_reconnector->start();
    // Opening may have failed at once.
    if (!m_finished) {
        m_loop.exec();
    }
    m_reconnector->stop();
    m_exchange->stop();
    m_link->close();
    return m_exitCode;
}

void Session::finish(int exitCode)
{
    if (!m_finished) {
        m_finished = true;
        m_exitCode = exitCode;
        m_exchange->stop(); // else a request would go out whose answer nobody waits for
        m_loop.quit();
    }
}

} // namespace cnet::panel
