#include "panel/runs/monitor_run.h"

#include "host/tag/typed_item.h"
#include "host/tagfile/tag_monitor.h"
#include "panel/options/command_items.h"
#include "panel/output/typed_output.h"
#include "panel/runs/command_session.h"
#include "panel/runs/monitor_keys.h"
#include "panel/system/exit_code.h"
#include "panel/system/file_watch.h"
#include "panel/system/standard_output.h"
#include "panel/terminal/terminal.h"
#include "panel/views/screen.h"

#include <QTimer>

#include <unistd.h>

namespace cnet::panel {

namespace {

// Fast enough for the eye, slow enough for a serial console.
const int kRefreshMs = 200;
// More than any list has; the screen keeps it within bounds.
const int kWholeList = 1000000;

int linesOf(MoveKey key, int page)
{
    switch (key) {
    case MoveKey::Up:
        return -1;
    case MoveKey::Down:
        return 1;
    case MoveKey::PageUp:
        return -page;
    case MoveKey::PageDown:
        return page;
    case MoveKey::Home:
        return -kWholeList;
    case MoveKey::End:
        return kWholeList;
    case MoveKey::None:
        break;
    }
    return 0;
}

/// Why a tag file is read again.
enum class ReloadReason { FileChanged, Asked };

// The objects of a running monitor and their connections.
class RunningMonitor
{
public:
    RunningMonitor(Driver &driver, const LinkSettings &link, const MonitorRun &run,
                   Messages &messages);
    ~RunningMonitor() { m_messages.setSink({}); }
    RunningMonitor(const RunningMonitor &) = delete;
    RunningMonitor &operator=(const RunningMonitor &) = delete;

    int run();

private:
    void openOutput();
    void takeKeys(Screen &screen);
    void wire();
    void followFile();
    void reload(ReloadReason reason);
    void watch(const ChosenTags &chosen);
    void tellAgain(const QVector<int> &places);
    MonitorStatus status() const;
    bool isPlausible() const;
    void finish();

    Driver &m_driver;
    const LinkSettings &m_link;
    const MonitorRun &m_run;
    Messages &m_messages;
    CommandSession m_command;
    Session &m_session;
    Monitor *m_monitor;
    QVector<Tag> m_tags;                ///< what is watched now
    TagMonitor *m_tagMonitor = nullptr; ///< the monitor's; null: there is no file
    std::unique_ptr<FileWatch> m_file;
    StandardOutput m_standardOutput;
    std::unique_ptr<MonitorOutput> m_output;
    std::unique_ptr<MonitorKeys> m_keys;
    QTimer m_refresh;
    QTimer m_limit;
    bool m_countersAtEnd = false; ///< the output itself does not show them
    bool m_wasOpen = false;
    int m_requests = 0; ///< of the one that ends it
};

RunningMonitor::RunningMonitor(Driver &driver, const LinkSettings &link, const MonitorRun &run,
                               Messages &messages)
    : m_driver(driver)
    , m_link(link)
    , m_run(run)
    , m_messages(messages)
    , m_command(driver, link, stationsOf(itemsOf(run.tags)), messages)
    , m_session(m_command.session())
    , m_monitor(m_session.monitor(itemsOf(run.tags)))
    , m_tags(run.tags)
{
    // Nobody sees the values any more. The exit code of a lost output comes by itself.
    QObject::connect(&m_standardOutput, &StandardOutput::failed, m_monitor,
                     [this] { m_command.finish(kFine); });
    openOutput();
    wire();
    followFile();
}

void RunningMonitor::wire()
{
    QObject::connect(m_monitor, &Monitor::valuesChanged, m_monitor,
                     [this](const QVector<ValueChange> &changes) {
                         m_output->showChanges(*m_monitor, changes);
                     });
    QObject::connect(m_monitor, &Monitor::itemStateChanged, m_monitor, [this](int item) {
        m_output->showQuality(*m_monitor, item, QDateTime::currentDateTime());
    });
    QObject::connect(&m_session, &Session::stateChanged, m_monitor, [this](Session::State state) {
        const bool open = state == Session::State::Open;
        if ((open && m_wasOpen) || state == Session::State::Lost) {
            m_output->showLink(status());
        }
        m_wasOpen = m_wasOpen || open;
    });
    QObject::connect(&m_session, &Session::roundEnded, m_monitor, [this](int rounds) {
        if (m_run.rounds > 0 && rounds >= m_run.rounds) {
            finish();
        }
    });
    QObject::connect(&m_session, &Session::requestSent, m_monitor, [this](const QByteArray &frame) {
        if (frame == m_run.request && ++m_requests > m_run.rounds) {
            finish();
        }
    });
    QObject::connect(&m_command, &CommandSession::stopRequested, m_monitor, [this] { finish(); });
    QObject::connect(&m_limit, &QTimer::timeout, m_monitor, [this] { finish(); });
    QObject::connect(&m_refresh, &QTimer::timeout, m_monitor,
                     [this] { m_output->refresh(*m_monitor, status()); });
}

void RunningMonitor::openOutput()
{
    if (m_run.format == OutputFormat::Json) {
        m_output = makeJsonOutput(m_standardOutput, m_run.tags);
    } else if (m_run.format == OutputFormat::Csv) {
        m_output = makeCsvOutput(m_standardOutput, m_run.tags);
        m_countersAtEnd = true;
    } else if (!isTerminal(STDOUT_FILENO)) {
        m_output = makeTextOutput(m_standardOutput, m_run.tags);
        m_countersAtEnd = true;
    } else {
        auto screen = std::make_unique<Screen>(
            m_standardOutput, [] { return terminalSize(STDOUT_FILENO); }, screenLook(), m_run.tags);
        if (isTerminal(STDERR_FILENO)) {
            m_messages.setSink([&screen = *screen](const QString &line) { screen.say(line); });
        }
        takeKeys(*screen);
        m_output = std::move(screen);
        m_refresh.start(kRefreshMs);
    }
}

void RunningMonitor::takeKeys(Screen &screen)
{
    auto keys = std::make_unique<MonitorKeys>(m_driver, m_session, m_messages, m_link.station);
    keys->setTags(m_run.writable);
    if (!keys->listenTo(STDIN_FILENO)) {
        return;
    }
    const auto adopt = [&screen, &typed = *keys] {
        screen.setView(typed.viewState());
        screen.setBottomLine(typed.bottomLine(), typed.isTyping() ? Cut::Front : Cut::Back);
    };
    adopt();
    QObject::connect(keys.get(), &MonitorKeys::typed, m_monitor, [this, &screen, adopt] {
        adopt();
        screen.refresh(*m_monitor, status());
    });
    QObject::connect(keys.get(), &MonitorKeys::moved, m_monitor, [&screen](MoveKey key) {
        const int rowsOfFrame = 6;
        screen.scroll(linesOf(key, terminalSize(STDOUT_FILENO).height() - rowsOfFrame));
    });
    QObject::connect(keys.get(), &MonitorKeys::reloadAsked, m_monitor,
                     [this] { reload(ReloadReason::Asked); });
    m_keys = std::move(keys);
}

void RunningMonitor::followFile()
{
    if (!m_run.chooseAgain) {
        return;
    }
    m_tagMonitor = new TagMonitor(m_monitor, TagSet(m_tags));
    m_file = std::make_unique<FileWatch>(m_run.tagFile);
    QObject::connect(m_file.get(), &FileWatch::changed, m_monitor,
                     [this] { reload(ReloadReason::FileChanged); });
}

void RunningMonitor::reload(ReloadReason reason)
{
    QStringList complaints;
    const auto chosen = m_run.chooseAgain(complaints);
    for (const QString &complaint : complaints) {
        m_messages.say(complaint);
    }
    if (!chosen) {
        return;
    }
    const TagDiff diff = tagDiff(m_tagMonitor->tags(), TagSet(chosen->tags));
    watch(*chosen);
    if (!diff.isEmpty() || reason == ReloadReason::Asked) {
        m_messages.say(m_run.tagFile + QLatin1String(": ") + diff.text());
    }
}

// The outputs come first: whatever the monitor tells from then on has the new numbers.
void RunningMonitor::watch(const ChosenTags &chosen)
{
    QVector<int> places;
    for (const Tag &tag : chosen.tags) {
        const QString name = tagText(tag);
        const Tag *const before = m_tagMonitor->tags().find(name);
        const bool isSame = before != nullptr && before->count == tag.count &&
                            typedItemText(*before) == typedItemText(tag);
        places.append(isSame ? m_tagMonitor->tags().indexOf(name) : -1);
    }
    m_tags = chosen.tags;
    m_command.addStations(stationsOf(itemsOf(m_tags)));
    m_output->setTags(m_tags, places);
    if (m_keys) {
        m_keys->setTags(chosen.all);
    }
    m_tagMonitor->setTags(TagSet(m_tags));
    tellAgain(places);
}

// The words are the same where only the meaning is another one, so no monitor tells of them.
void RunningMonitor::tellAgain(const QVector<int> &places)
{
    QVector<ValueChange> changes;
    for (int i = 0; i < places.size(); ++i) {
        const ItemState &state = m_monitor->items().at(i);
        for (int offset = 0; places.at(i) < 0 && offset < state.values.size(); ++offset) {
            if (state.values.at(offset).isShown()) {
                changes.append({i, offset, state.values.at(offset).shown(), state.changedAtMs});
            }
        }
    }
    if (!changes.isEmpty()) {
        m_output->showChanges(*m_monitor, changes);
    }
}

int RunningMonitor::run()
{
    if (m_run.durationMs > 0) {
        m_limit.setSingleShot(true);
        m_limit.setTimerType(Qt::PreciseTimer);
        m_limit.start(static_cast<int>(m_run.durationMs));
    }
    const int exitCode = m_command.run();
    m_refresh.stop();
    m_keys.reset();
    m_messages.setSink({});
    m_output.reset();
    if (exitCode != kNoLink && m_countersAtEnd) {
        const QMap<int, StationCounters> &stations = m_session.stations();
        for (auto it = stations.cbegin(); it != stations.cend(); ++it) {
            m_messages.line(stationLine(it.key(), it.value()));
        }
    }
    return exitCode;
}

MonitorStatus RunningMonitor::status() const
{
    MonitorStatus status;
    status.link = m_session.linkName();
    status.linkLost = m_session.lineError();
    status.rounds = m_session.rounds();
    status.nowMs = m_session.nowMs();
    status.time = QDateTime::currentDateTime();
    status.stations = m_session.stations();
    status.statistics = &m_session.statistics();
    status.tags = m_tags;
    return status;
}

bool RunningMonitor::isPlausible() const
{
    for (int i = 0; i < m_tags.size(); ++i) {
        if (!firstFault(readTag(m_tags.at(i), m_monitor->items().at(i))).isEmpty()) {
            return false;
        }
    }
    return true;
}

// Printed while the session is open: after close() no value is good any more.
void RunningMonitor::finish()
{
    m_output->end(*m_monitor, status());
    m_monitor->disconnect(m_monitor);
    m_command.finish(m_monitor->isGood() && isPlausible() ? kFine : kDeviceFailed);
}

} // namespace

int runMonitor(Driver &driver, const LinkSettings &link, const MonitorRun &run, Messages &messages)
{
    RunningMonitor monitor(driver, link, run, messages);
    return monitor.run();
}

} // namespace cnet::panel
