#include "panel/runs/monitor_run.h"

#include "panel/system/exit_code.h"
#include "panel/runs/monitor_writes.h"
#include "panel/runs/one_off.h"
#include "panel/terminal/screen.h"
#include "panel/runs/command_session.h"
#include "panel/system/standard_output.h"

#include <QTimer>

#include <unistd.h>
#include <utility>

namespace cnet::panel {

namespace {

// Fast enough for the eye, slow enough for a serial console.
const int kRefreshMs = 200;

// What the driver's callback gave.
struct ReportedChange
{
    int station = 0;
    QString name;
    int address = 0;
    QDateTime time;
};

// The parts of a running monitor and what they tell one another.
class MonitorSession
{
public:
    MonitorSession(const DriverFunctions &driver, const LinkSettings &link, const MonitorRun &run,
                   Messages &messages);
    ~MonitorSession() { m_messages.setSink({}); }
    MonitorSession(const MonitorSession &) = delete;
    MonitorSession &operator=(const MonitorSession &) = delete;

    int run();

private:
    void openOutput();
    void takeWrites(Screen &screen);
    void wire();
    void takeInChanges();
    void showChanges();
    MonitorStatus status() const;
    void finish();

    const LinkSettings &m_link;
    const MonitorRun &m_run;
    Messages &m_messages;
    Session m_session;
    Monitor m_monitor;
    StandardOutput m_standardOutput;
    std::unique_ptr<MonitorOutput> m_output;
    std::unique_ptr<MonitorWrites> m_writes;
    QVector<ReportedChange> m_changes; ///< whose values are still to be read
    QTimer m_refresh;
    QTimer m_limit;
    QTimer m_driverReturned;      ///< for changes that no exchange brought
    bool m_countersAtEnd = false; ///< the output itself does not show them
};

MonitorSession::MonitorSession(const DriverFunctions &driver, const LinkSettings &link,
                               const MonitorRun &run, Messages &messages)
    : m_link(link)
    , m_run(run)
    , m_messages(messages)
    , m_session(driver, link, stationsOf(run.items), messages)
    , m_monitor(run.items, link.blockWords,
                [this](int station, const RegisterInfo &reg, int start, int count) {
                    return m_session.driver().values(station, reg.name, start, count, reg.isBit());
                })
{
    wire();
}

void MonitorSession::wire()
{
    // From within the driver, which tells of a value that the panel writes before it has stored it.
    // So the value is read when the driver has returned.
    m_session.driver().setChangeHandler([this](int station, const QString &name, int address) {
        m_driverReturned.start(0);
        m_changes.append({station, name, address, QDateTime::currentDateTime()});
    });
    QObject::connect(
        &m_session.exchange(), &Exchange::ended, &m_session, [this](const ExchangeReport &report) {
            takeInChanges();
            if (report.request.opKind == kCyclicRead && report.isFinal()) {
                m_monitor.readEnded(report.request, report.result == kAnswerGood,
                                    m_session.exchange().nowMs(), QDateTime::currentDateTime());
            }
            showChanges();
        });
    QObject::connect(&m_session.exchange(), &Exchange::roundEnded, &m_session, [this](int rounds) {
        if (m_run.rounds > 0 && rounds >= m_run.rounds) {
            finish();
        }
    });
    QObject::connect(&m_session, &Session::stopRequested, &m_session, [this] { finish(); });
    QObject::connect(&m_limit, &QTimer::timeout, &m_session, [this] { finish(); });
    // Nobody would see anything any more. The exit code of a lost output comes by itself.
    QObject::connect(&m_standardOutput, &StandardOutput::failed, &m_session,
                     [this] { m_session.finish(kFine); });
    m_driverReturned.setSingleShot(true);
    QObject::connect(&m_driverReturned, &QTimer::timeout, &m_session, [this] {
        takeInChanges();
        showChanges();
    });
    QObject::connect(&m_refresh, &QTimer::timeout, &m_session,
                     [this] { m_output->refresh(m_monitor, status()); });
}

void MonitorSession::openOutput()
{
    if (m_run.format == OutputFormat::Json) {
        m_output = makeJsonOutput(m_standardOutput);
    } else if (m_run.format == OutputFormat::Csv) {
        m_output = makeCsvOutput(m_standardOutput);
        m_countersAtEnd = true;
    } else if (!isTerminal(STDOUT_FILENO)) {
        m_output = makeTextOutput(m_standardOutput);
        m_countersAtEnd = true;
    } else {
        auto screen =
            std::make_unique<Screen>(m_standardOutput, [] { return terminalSize(STDOUT_FILENO); });
        if (isTerminal(STDERR_FILENO)) {
            m_messages.setSink([&screen = *screen](const QString &line) { screen.say(line); });
        }
        takeWrites(*screen);
        m_output = std::move(screen);
        m_refresh.start(kRefreshMs);
    }
}

void MonitorSession::takeWrites(Screen &screen)
{
    if (m_run.registers == nullptr) {
        return;
    }
    auto writes =
        std::make_unique<MonitorWrites>(m_session.driver(), m_session.exchange(), *m_run.registers,
                                        m_messages, m_link.station, m_link.blockWords);
    if (!writes->listenTo(STDIN_FILENO)) {
        return;
    }
    screen.setBottomLine(writes->bottomLine());
    QObject::connect(writes.get(), &MonitorWrites::bottomLineChanged, &m_session,
                     [this, &screen, &lines = *writes] {
                         screen.setBottomLine(lines.bottomLine());
                         screen.refresh(m_monitor, status());
                     });
    m_writes = std::move(writes);
}

int MonitorSession::run()
{
    openOutput();
    const int blocks = m_session.driver().monitor(m_monitor.keys());
    m_session.exchange().setRoundLength(blocks);
    if (m_run.durationMs > 0) {
        m_limit.setSingleShot(true);
        m_limit.setTimerType(Qt::PreciseTimer);
        m_limit.start(static_cast<int>(m_run.durationMs));
    }
    const int exitCode = m_session.run();
    m_refresh.stop();
    m_writes.reset();
    if (exitCode != kNoLink) {
        m_output->end(m_monitor, status());
    }
    m_messages.setSink({});
    m_output.reset();
    if (exitCode != kNoLink && m_countersAtEnd) {
        const QMap<int, StationCounters> stations = m_session.stations().all();
        for (auto it = stations.cbegin(); it != stations.cend(); ++it) {
            m_messages.line(stationLine(it.key(), it.value()));
        }
    }
    return exitCode;
}

void MonitorSession::takeInChanges()
{
    for (const ReportedChange &change : std::as_const(m_changes)) {
        m_monitor.valueChanged(change.station, change.name, change.address, change.time);
    }
    m_changes.clear();
}

void MonitorSession::showChanges()
{
    const QVector<ValueChange> changes = m_monitor.takeChanges();
    if (!changes.isEmpty()) {
        m_output->showChanges(m_monitor, changes);
    }
}

MonitorStatus MonitorSession::status() const
{
    MonitorStatus status;
    status.link = m_session.linkName();
    status.linkLost = m_session.linkLost();
    status.rounds = m_session.exchange().rounds();
    status.nowMs = m_session.exchange().nowMs();
    status.time = QDateTime::currentDateTime();
    status.stations = m_session.stations().all();
    return status;
}

void MonitorSession::finish()
{
    const bool fine = m_monitor.allGood() && m_session.linkLost().isEmpty();
    m_session.finish(fine ? kFine : kDeviceFailed);
}

} // namespace

int runMonitor(const DriverFunctions &driver, const LinkSettings &link, const MonitorRun &run,
               Messages &messages)
{
    MonitorSession session(driver, link, run, messages);
    return session.run();
}

} // namespace cnet::panel
