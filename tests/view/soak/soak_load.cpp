#include "view/soak/soak_load.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

constexpr int kFeedMs = 2;
constexpr int kMostLateMs = 200; ///< what is due from longer ago is given up
constexpr int kPageMs = 3000;
constexpr int kFaultsMs = 7000;
constexpr int kFilterMs = 11000;
constexpr int kReopenMs = 47000;
constexpr int kFirstWord = 2000;
constexpr int kReopenAfterMs = 500;
constexpr qint64 kLongMs = 60000; ///< until a value is stale

const char *const kFaults[] = {
    "delay=5..60@5%", "silence@1%",  "noise-before@3%",  "noise-after@3%", "split=3@5%",
    "wrong-check@3%", "truncate@2%", "wrong-station@1%", "echo@1%",        "refuse=1132@1%",
};
const char *const kFilters[] = {"D_W", "station", "ACK", "2010", "00 01", "time", ""};

QString traceName(int trace)
{
    return QString::fromLatin1("load.%1").arg(trace, 2, 10, QLatin1Char('0'));
}

template <class Wanted>
Wanted *pageOf(const QVector<Page *> &pages)
{
    for (Page *page : pages) {
        if (auto *wanted = qobject_cast<Wanted *>(page)) {
            return wanted;
        }
    }
    return nullptr;
}

/** The press line, and words that it leaves alone. */
QByteArray tagFile()
{
    QFile press(QLatin1String(PRESS_TAGS));
    QByteArray content = press.open(QIODevice::ReadOnly) ? press.readAll() : QByteArray();
    for (int i = 0; i < SoakLoad::kTraces; ++i) {
        content += traceName(i).toLatin1() + ",D_W," + QByteArray::number(kFirstWord + i) +
                   ",1,u16,1,1,0,,,,,read,,,load\n";
    }
    return content;
}

} // namespace

SoakLoad::SoakLoad(MainWindow &window, LoopMeter &meter, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_meter(meter)
    , m_frames(pageOf<FramesPage>(window.pages().all()))
    , m_simulator(pageOf<SimulatorPage>(window.pages().all()))
{
    m_feed.setTimerType(Qt::PreciseTimer);
    m_feed.setInterval(kFeedMs);
    connect(&m_feed, &QTimer::timeout, this, &SoakLoad::feed);
    act("showing a page", kPageMs, &SoakLoad::showNext);
    act("changing faults", kFaultsMs, &SoakLoad::changeFaults);
    act("filtering frames", kFilterMs, &SoakLoad::typeFilter);
    act("closing and opening the line", kReopenMs, &SoakLoad::reopen);
}

void SoakLoad::act(const char *what, int everyMs, void (SoakLoad::*doIt)())
{
    auto *timer = new QTimer(this);
    timer->setInterval(everyMs);
    connect(timer, &QTimer::timeout, this, [this, what, doIt] {
        m_meter.setDoing(QString::fromLatin1("%1, on page %2")
                             .arg(QLatin1String(what))
                             .arg(m_window.pages().currentIndex() + 1));
        (this->*doIt)();
    });
    m_timers.append(timer);
}

QString SoakLoad::prepare(const QString &folder, int samples)
{
    const QString path = folder + QLatin1String("/load.csv");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(tagFile()) < 0) {
        return QLatin1String("the tag file cannot be written");
    }
    file.close();
    if (!m_window.pages().values().openFile(path)) {
        return QLatin1String("the tag file is not good: ") + m_window.bar().text();
    }
    QStringList names;
    for (int i = 0; i < kTraces; ++i) {
        names.append(traceName(i));
    }
    TrendPage &trend = m_window.pages().trend();
    trend.view().setPanes(4);
    trend.addTraces(names);
    TraceSet &traces = trend.traces();
    if (traces.count() != kTraces || m_frames == nullptr || m_simulator == nullptr) {
        return QLatin1String("a page or a trace is missing");
    }
    const qint64 nowMs = QDateTime::currentMSecsSinceEpoch();
    for (int i = 0; i < kTraces; ++i) {
        traces.setPane(i, i % 4);
        for (int k = samples; k > 0; --k) {
            traces.at(i).store->append(nowMs - 2LL * k, random());
        }
        m_known.at(static_cast<size_t>(i)) = traces.at(i).store->size();
    }
    return {};
}

void SoakLoad::connectLine()
{
    Connection fast;
    fast.address.line.baud = 0;
    fast.intervalMs = 0;
    m_window.pages().line().open(fast);
    m_simulator->simulator().move(
        1, plc::MotionKind::Ramp,
        QString::fromLatin1("D_W:%1-%2=0..9999@1").arg(kFirstWord).arg(kFirstWord + kTraces - 1));
}

void SoakLoad::start()
{
    connectLine();
    m_fedMs = QDateTime::currentMSecsSinceEpoch();
    m_feed.start();
    for (QTimer *timer : m_timers) {
        timer->start();
    }
}

void SoakLoad::stop()
{
    m_feed.stop();
    for (QTimer *timer : m_timers) {
        timer->stop();
    }
    m_simulator->simulator().allOff();
}

quint32 SoakLoad::random()
{
    m_random = m_random * 1664525U + 1013904223U;
    return m_random >> 16U;
}

// Where old samples went meanwhile there are fewer, and what came is not counted.
qint64 SoakLoad::takeCame()
{
    const TraceSet &traces = m_window.pages().trend().traces();
    qint64 came = 0;
    for (int i = 0; i < kTraces; ++i) {
        int &known = m_known.at(static_cast<size_t>(i));
        const int size = traces.at(i).store->size();
        came += std::max(0, size - known);
        known = size;
    }
    return came;
}

// As if a round of polls had brought other values: from here on they go the way of all others.
void SoakLoad::readAll(const Session &session, const TagMonitor &tags)
{
    Monitor::Surroundings now;
    now.nowMs = session.nowMs();
    now.wallMs = QDateTime::currentMSecsSinceEpoch();
    now.dueMs = kLongMs;
    const int first = tags.tags().indexOf(traceName(0));
    for (int i = 0; i < kTraces; ++i) {
        tags.monitor().blockRead(first + i, 0, {static_cast<quint16>(random())}, now);
    }
    tags.monitor().tell();
}

void SoakLoad::feed()
{
    const qint64 nowMs = QDateTime::currentMSecsSinceEpoch();
    qint64 passedMs = std::max<qint64>(0, nowMs - m_fedMs);
    m_fedMs = nowMs;
    if (passedMs > kMostLateMs) {
        m_counts.missed += (passedMs - kMostLateMs) * kChangesPerMs;
        passedMs = kMostLateMs;
    }
    m_owed += static_cast<double>(passedMs) * kChangesPerMs;
    const qint64 came = takeCame();
    m_counts.fromLine += came;
    m_owed -= static_cast<double>(came);
    const Session *session = m_window.pages().line().session();
    const auto *tags = session != nullptr ? session->findChild<TagMonitor *>() : nullptr;
    for (; m_owed >= kTraces; m_owed -= kTraces) {
        if (tags != nullptr) {
            readAll(*session, *tags);
        }
    }
    m_owed = std::max(m_owed, -1000.0); // more from the line does not make up for less later
    m_counts.besideLine += takeCame();
    m_counts.exchanges = m_frames->recorder().total();
}

void SoakLoad::showNext()
{
    WindowPages &pages = m_window.pages();
    const int next = m_counts.pagesShown % 2 == 0 ? pages.indexOf(&pages.trend())
                                                  : (m_counts.pagesShown / 2) % pages.count();
    pages.setCurrentIndex(next);
    ++m_counts.pagesShown;
    m_meter.setDoing(QLatin1String("showing ") + pages.tabText(pages.currentIndex()));
}

void SoakLoad::changeFaults()
{
    Simulator &simulator = m_simulator->simulator();
    const int count = static_cast<int>(std::size(kFaults));
    const int turn = m_counts.faultChanges++ % (count + 2);
    if (turn == count) {
        return; // all of them together for a while
    }
    if (turn > count) {
        for (const SimulatorAction &action : simulator.actions()) {
            if (action.kind == SimulatorAction::Kind::Fault) {
                simulator.remove(action);
            }
        }
        return;
    }
    const QString error = simulator.cause(1, QString::fromLatin1(kFaults[turn]));
    if (!error.isEmpty()) {
        qWarning("%s", qPrintable(error));
    }
}

void SoakLoad::typeFilter()
{
    FrameQuery query;
    query.text =
        QString::fromLatin1(kFilters[m_counts.filters++ % static_cast<int>(std::size(kFilters))]);
    m_frames->filterBar().setQuery(query);
}

void SoakLoad::reopen()
{
    m_window.pages().line().close();
    ++m_counts.reopened;
    QTimer::singleShot(kReopenAfterMs, this, [this] {
        m_window.pages().line().open(m_window.pages().line().connection());
    });
}

} // namespace cnet::view
