#include "gateway/config/config_reader.h"
#include "gateway/delivery/recorder_thread.h"
#include "gateway/lines/line_set.h"
#include "gateway/lines/write_routes.h"
#include "gateway/main/commands.h"
#include "gateway/main/config_file.h"
#include "gateway/main/messages.h"
#include "gateway/main/stop_signals.h"
#include "gateway/service/operation.h"

#include "host/time/system_clock.h"
#include "plc/scenario/scenarios.h"
#include "simulation/link_sim.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>

namespace cnet::gateway {

namespace {

// Of the press that is simulated: the same one each time.
constexpr quint32 kSeed = 1;

std::unique_ptr<Link> linkFor(const LineConfig &line)
{
    if (line.link) {
        return makeLink(*line.link);
    }
    auto link = std::make_unique<LinkSim>(QVector<int>(), line.session.line.baud);
    link->bus().add(line.station).scenario = plc::makeScenario(QLatin1String("press"), kSeed);
    return link;
}

/** The gateway while it runs. */
class Gateway
{
public:
    explicit Gateway(const GatewayConfig &config)
        : m_config(config)
        , m_log(m_clock, Say(sayEvent))
        , m_recorder(config, m_clock, m_log.say())
        , m_batcher(m_clock, config.batch,
                    [this](const LedgerBatch &batch) { m_recorder.put(batch); })
        , m_routes(auditFor(config), m_recorder, m_clock, m_log.say(),
                   [this](const QString &name) { return writerOf(name); })
        , m_lines(
              m_clock, linkFor, [this](const Change &change) { m_batcher.add(change); },
              [this](const LineStatus &status) { m_recorder.tell(status); }, m_log.say())
        , m_operation(
              config, QLatin1String(CNET_GATEWAY_VERSION), [this] { return meters(); }, m_recorder,
              m_log, m_clock)
    {}

    /** @return exit code; kFine: it runs */
    int start()
    {
        const QStringList complaints = m_lines.prepare(m_config.lines);
        for (const QString &complaint : complaints) {
            sayPlain(complaint);
        }
        if (!complaints.isEmpty()) {
            return kUsage;
        }
        const StoreError failed = m_recorder.start();
        if (!failed.isNone()) {
            say(QString::fromLatin1("cannot open the ledger %1: %2")
                    .arg(m_config.ledger.path, failed.text));
            return kFailed;
        }
        applyLines();
        m_operation.start();
        return kFine;
    }

    /** Another configuration is read. */
    void tellReloading() { m_operation.tellReloading(); }

    /** Takes another configuration, or goes on as before where something is wrong with it. */
    void reload(const std::optional<GatewayConfig> &config, QStringList complaints)
    {
        if (config) {
            complaints += m_lines.prepare(config->lines);
        }
        for (const QString &complaint : qAsConst(complaints)) {
            sayPlain(complaint);
        }
        if (!config || !complaints.isEmpty()) {
            sayEvent(
                Weight::Warning,
                QLatin1String("this configuration is not taken; everything goes on as before"));
            m_operation.tellReloaded(m_config);
            return;
        }
        m_config = *config;
        // Sinks first: a new one hears of the new lines.
        m_recorder.reload(*config);
        m_batcher.setBounds(config->batch);
        m_routes.setAudit(auditFor(*config));
        applyLines();
        m_operation.tellReloaded(m_config);
        sayEvent(Weight::Notice,
                 QString::fromLatin1("the configuration is read again; lines: %1, sinks: %2")
                     .arg(config->lines.size())
                     .arg(config->sinks.size()));
    }

    /** @return exit code */
    int stop()
    {
        m_operation.stop();
        m_lines.close(QLatin1String("the gateway ended"));
        m_routes.stop();
        m_batcher.flush();
        const qint64 lost = m_recorder.stop();
        sayEvent(lost == 0 ? Weight::Notice : Weight::Warning,
                 lost == 0
                     ? QString::fromLatin1("ended; everything is stored")
                     : QString::fromLatin1("ended; %1 changes could not be stored and are lost")
                           .arg(lost));
        return lost == 0 ? kFine : kFailed;
    }

private:
    void applyLines()
    {
        m_lines.apply();
        QVector<TopicNames> told;
        for (const auto &line : m_lines.all()) {
            m_routes.add(line->writer());
            told += line->told();
        }
        m_recorder.watch(told);
    }

    QVector<LineMeters> meters() const
    {
        QVector<LineMeters> all;
        for (const auto &line : m_lines.all()) {
            all.append(metersOf(*line));
        }
        return all;
    }

    LineWriter *writerOf(const QString &name) const
    {
        const auto found = std::find_if(m_lines.all().cbegin(), m_lines.all().cend(),
                                        [&name](const auto &line) { return line->name() == name; });
        return found == m_lines.all().cend() ? nullptr : &(*found)->writer();
    }

    GatewayConfig m_config;
    Clock &m_clock = SystemClock::instance();
    LogLimit m_log;
    RecorderThread m_recorder;
    Batcher m_batcher;
    WriteRoutes m_routes;
    LineSet m_lines;
    Operation m_operation;
};

std::optional<GatewayConfig> configFor(const Invocation &invocation, QStringList &complaints)
{
    if (invocation.parser.isSet(QLatin1String("demo"))) {
        return demoConfig(QLatin1String(":/demo/tags.csv"), usualStateFolder());
    }
    return loadConfig(invocation.arguments.value(0, usualConfigFile()), complaints);
}

void reloadAtSignals(Gateway &gateway, ConfigReading &reading, const StopSignals &signals)
{
    QObject::connect(&signals, &StopSignals::reloadAsked, &reading, [&gateway, &reading] {
        gateway.tellReloading();
        reading.start();
    });
    QObject::connect(&reading, &ConfigReading::finished, &reading,
                     [&gateway](const std::optional<GatewayConfig> &read,
                                const QStringList &wrong) { gateway.reload(read, wrong); });
}

void sayStarted(const GatewayConfig &config, const Invocation &invocation)
{
    if (invocation.parser.isSet(QLatin1String("demo"))) {
        sayEvent(
            Weight::Notice,
            QString::fromLatin1("a simulated press line is stored in %1/history.sqlite; in another "
                                "window: cnet-gateway history press.temperature")
                .arg(usualStateFolder()));
    } else {
        sayEvent(Weight::Notice, QString::fromLatin1("runs; lines: %1, sinks: %2")
                                     .arg(config.lines.size())
                                     .arg(config.sinks.size()));
    }
}

} // namespace

int runRun(const Invocation &invocation)
{
    if (invocation.parser.isSet(QLatin1String("demo")) && !invocation.arguments.isEmpty()) {
        say(QLatin1String("--demo takes no configuration"));
        return kUsage;
    }
    const StopSignals signals;
    QStringList complaints;
    const auto config = configFor(invocation, complaints);
    for (const QString &complaint : qAsConst(complaints)) {
        sayPlain(complaint);
    }
    if (!config) {
        return kUsage;
    }
    Gateway gateway(*config);
    const int exitCode = gateway.start();
    if (exitCode != kFine) {
        return exitCode;
    }
    sayStarted(*config, invocation);
    QObject::connect(&signals, &StopSignals::caught, qApp, &QCoreApplication::quit);
    ConfigReading reading(
        [&invocation](QStringList &wrong) { return configFor(invocation, wrong); });
    reloadAtSignals(gateway, reading, signals);
    QCoreApplication::exec();
    return gateway.stop();
}

} // namespace cnet::gateway
