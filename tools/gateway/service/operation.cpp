#include "gateway/service/operation.h"

#include "gateway/service/listening.h"

#include <QDir>

#include <algorithm>
#include <utility>

namespace cnet::gateway {

namespace {

const char *const kNoThread = "cannot begin to serve: no more threads";

QString statusText(const Snapshot &snapshot)
{
    const auto open = std::count_if(snapshot.lines.begin(), snapshot.lines.end(),
                                    [](const LineMeters &line) { return line.isOpen; });
    const auto ready = std::count_if(snapshot.sinks.begin(), snapshot.sinks.end(),
                                     [](const SinkMeters &sink) { return sink.state.isReady; });
    return QString::fromLatin1("lines open: %1 of %2; sinks ready: %3 of %4")
        .arg(open)
        .arg(snapshot.lines.size())
        .arg(ready)
        .arg(snapshot.sinks.size());
}

} // namespace

Operation::Operation(const GatewayConfig &config, const QString &version, Lines lines,
                     RecorderThread &recorder, LogLimit &log, Clock &clock)
    : m_config(config)
    , m_lines(std::move(lines))
    , m_log(log)
    , m_clock(clock)
    , m_maker(version, clock)
    , m_pulse(recorder, clock, pulseMsFor(m_manager.watchdogMs()))
    , m_metricsTrouble(QLatin1String("metrics"), log.say())
    , m_again(clock.makeAlarm())
{
    connect(&m_pulse, &Pulse::beat, this, &Operation::handleBeat);
    connect(m_again.get(), &Alarm::fired, this, &Operation::serveMetrics);
}

Operation::~Operation()
{
    stop();
}

void Operation::start()
{
    serveIn(m_config.stateFolder);
    serveMetrics();
    m_pulse.start();
    m_isRunning = true;
    m_manager.tellReady();
}

// Where that is not possible, it stays in the folder where it was.
void Operation::serveIn(const QString &folder)
{
    QString error = QLatin1String(kNoThread);
    const auto socket = listenInFolder(folder, error);
    auto server = std::make_unique<HttpServer>(m_board, m_clock);
    if (!socket || !server->start(socket->descriptor, QByteArray())) {
        m_log.say().warn(QLatin1String("status: ") + error);
        return;
    }
    stopServingLocally();
    m_local = std::move(server);
    m_folder = folder;
}

void Operation::stopServingLocally()
{
    if (m_local) {
        stopListeningInFolder(m_folder);
        m_local.reset();
    }
}

// The values are what counts: they are not held up by who else has the port.
void Operation::serveMetrics()
{
    if (!m_config.metrics) {
        return;
    }
    QString error = QLatin1String(kNoThread);
    const auto socket = listenOnLoopback(*m_config.metrics, error);
    auto server = std::make_unique<HttpServer>(m_board, m_clock);
    if (!socket || !server->start(socket->descriptor, m_config.metrics->text.toLatin1())) {
        m_again->set(m_metricsTrouble.failed(error));
        return;
    }
    m_metricsTrouble.fine();
    m_metrics = std::move(server);
    QString place = m_config.metrics->text;
    place.replace(place.lastIndexOf(QLatin1Char(':')) + 1, place.size(),
                  QString::number(socket->port));
    m_log.say()(QString::fromLatin1("metrics: http://%1/metrics").arg(place));
}

void Operation::tellReloaded(const GatewayConfig &config)
{
    if (m_folder.isEmpty() || QDir(config.stateFolder) != QDir(m_folder)) {
        serveIn(config.stateFolder);
    }
    const bool isOther = !(config.metrics == m_config.metrics);
    m_config.metrics = config.metrics;
    m_config.ledger = config.ledger;
    if (isOther) {
        m_again->cancel();
        m_metrics.reset();
        serveMetrics();
    }
    m_manager.tellReady();
}

void Operation::handleBeat(const RecorderState &state)
{
    const auto snapshot =
        std::make_shared<const Snapshot>(m_maker.make(m_lines(), state, m_config.ledger.bounds));
    m_board.put(snapshot);
    m_manager.tellAlive();
    m_manager.tellStatus(statusText(*snapshot));
    m_log.sayLeftOut();
    for (HttpServer *server : {m_local.get(), m_metrics.get()}) {
        if (server != nullptr) {
            server->endLongConnections();
        }
    }
}

void Operation::stop()
{
    if (std::exchange(m_isRunning, false)) {
        m_manager.tellStopping();
    }
    m_pulse.stop();
    m_again->cancel();
    m_metrics.reset();
    stopServingLocally();
}

} // namespace cnet::gateway
