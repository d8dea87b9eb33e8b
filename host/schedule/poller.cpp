#include "host/schedule/poller.h"

#include <algorithm>
#include <utility>

namespace cnet {

namespace {

const qint64 kLeastStaleMs = 2000;
const int kStaleRounds = 3;

} // namespace

Poller::Poller(DriverCore &driver, const RegisterCatalog &registers, const StationHealth &health,
               const Clock &clock, const PollSettings &settings, QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_registers(registers)
    , m_health(health)
    , m_clock(clock)
    , m_settings(settings)
    , m_set(driver)
{}

void Poller::add(Monitor *monitor)
{
    const auto changed = [this] {
        m_set.forget();
        m_refused.clear();
        m_mergeDue = true;
    };
    m_set.add(monitor);
    m_mergeDue = true;
    connect(monitor, &Monitor::itemsChanged, this, changed);
    connect(monitor, &QObject::destroyed, this, changed);
}

Monitor::Surroundings Poller::surroundings() const
{
    Monitor::Surroundings now;
    now.nowMs = m_clock.nowMs();
    now.wallMs = m_clock.wallMs();
    now.lineOpen = m_lineOpen;
    now.openSinceMs = m_openSinceMs;
    // On a slow line the first values are shown long before the first round is over.
    const qint64 underwayMs = m_blocksLeft > 0 ? now.nowMs - m_roundBeganMs : 0;
    const qint64 roundMs = std::max({qint64(m_settings.intervalMs), m_roundTookMs, underwayMs});
    now.dueMs = m_settings.staleMs > 0 ? m_settings.staleMs
                                       : std::max(kLeastStaleMs, kStaleRounds * roundMs);
    return now;
}

// A one-off read may have changed values without a callback, since they were not monitored then.
// So each block's values are compared at its next reading.
void Poller::prepare()
{
    if (!m_mergeDue) {
        return;
    }
    m_mergeDue = false;
    m_set.distrustCallbacks();
    m_blocks = m_blocksLeft > 0 ? m_driver.merge(keysSince(m_roundBeganMs)) : 0;
    m_restOfRound = m_blocks > 0;
    m_blocksLeft = m_blocks;
    if (!m_restOfRound) {
        m_blocks = m_driver.merge(keysSince(m_clock.nowMs() + 1));
    }
}

// The driver begins with the first block, whatever was read before. So of a round that was
// interrupted only the rest is read: else who interrupts often would keep the last blocks from ever
// being read.
QList<KEY_ADDRESS> Poller::keysSince(qint64 beganMs) const
{
    return m_set.keys([&](int station, const WatchedBlock &block) {
        return m_health.isAlive(station) && block.lastReadMs < beganMs;
    });
}

bool Poller::isDue() const
{
    return m_blocks > 0 &&
           (m_blocksLeft > 0 || (!m_roundWaits && m_clock.nowMs() >= m_nextRoundMs));
}

qint64 Poller::nextMs() const
{
    return m_blocks > 0 ? m_nextRoundMs : -1;
}

void Poller::blockEnded(const ExchangeReport &report, bool changed)
{
    const AddressRange &range = report.range;
    if (m_blocksLeft == 0) {
        m_roundBeganMs = m_roundWaits ? m_roundBeganMs : report.reply.sentMs;
        m_roundWaits = false;
        m_blocksLeft = m_blocks;
    }
    const Monitor::Surroundings now = surroundings();
    if (report.good) {
        m_set.rangeRead(range, changed, now);
        m_refused.remove(range);
    } else if (report.reply.outcome == Outcome::Refused) {
        sortOut(range, report.refusal);
    } else {
        m_set.rangeFailed(range, report.failure(), now);
    }
    --m_blocksLeft;
    if (m_blocksLeft > 0) {
        return;
    }
    if (m_sorting.isEmpty()) {
        finishRound();
    } else {
        m_blocksLeft = 0;
        m_roundWaits = true;
    }
}

void Poller::finishRound()
{
    const qint64 nowMs = m_clock.nowMs();
    m_blocksLeft = 0;
    m_roundWaits = false;
    m_roundTookMs = nowMs - m_roundBeganMs;
    m_nextRoundMs = std::max(nowMs, m_roundBeganMs + m_settings.intervalMs);
    m_mergeDue = m_mergeDue || std::exchange(m_restOfRound, false);
    ++m_rounds;
    // A program that ends after this round has its values.
    tell();
    Q_EMIT roundEnded(m_rounds);
}

// A block of one item is that item's refusal. So is one that is refused again although each of its
// items was read by itself: it is the block then that the PLC does not like. While they are being
// read nothing follows from another refusal: the driver puts a cyclic read between many others.
void Poller::sortOut(const AddressRange &range, int code)
{
    if (m_sorting.contains(range)) {
        return;
    }
    QVector<PollSet::Place> places;
    const QVector<Item> items = m_set.itemsIn(range, places);
    int &times = m_refused[range];
    ++times;
    if (items.size() <= 1 || times > 1) {
        for (const PollSet::Place &place : places) {
            place.monitor->markRefused(place.item, place.block, code, surroundings());
        }
        m_mergeDue = true;
        return;
    }
    m_sorting.insert(range);
    auto *const job = new ReadJob(items, m_registers, m_settings.blockWords, Merging::Apart, this);
    connect(job, &Job::finished, this, [this, range, places, job] {
        mark(places, job->results());
        job->deleteLater();
        handleSortedOut(range);
    });
    Q_EMIT jobWanted(job);
}

void Poller::handleSortedOut(const AddressRange &range)
{
    m_sorting.remove(range);
    if (m_roundWaits && m_sorting.isEmpty()) {
        finishRound();
    }
}

void Poller::mark(const QVector<PollSet::Place> &places, const QVector<ReadResult> &results)
{
    for (int i = 0; i < places.size(); ++i) {
        const PollSet::Place &place = places.at(i);
        const Failure &failure = results.at(i).failure;
        // The monitor may have other items by now.
        if (failure.kind == Failure::Refused && m_set.isAt(place, results.at(i).item)) {
            place.monitor->markRefused(place.item, place.block, failure.code, surroundings());
            m_mergeDue = true;
        }
    }
}

// Blocks that share words with the range are compared at their next reading: the driver reports a
// change only once.
void Poller::rangeRead(const AddressRange &range)
{
    m_set.distrustCallbacks();
    m_set.rangeReadInPart(range, surroundings());
}

void Poller::stationFailed(int station, const Failure &failure)
{
    m_set.stationFailed(station, failure, surroundings());
    m_mergeDue = true;
}

void Poller::stationBack(int station)
{
    m_set.forEach([station](Monitor &monitor) { monitor.forgetRefusals(station); });
    m_refused.clear();
    m_mergeDue = true;
}

void Poller::lineOpened()
{
    m_lineOpen = true;
    lineChanged();
}

void Poller::lineLost()
{
    m_lineOpen = false;
    lineChanged();
}

void Poller::lineChanged()
{
    m_blocksLeft = 0;
    m_openSinceMs = m_clock.nowMs();
    m_mergeDue = true;
    m_nextRoundMs = m_clock.nowMs();
    look();
}

void Poller::writeBegun(const Item &item, const QVector<quint16> &values)
{
    m_set.forEach([&](Monitor &monitor) { monitor.writeBegun(item, values, surroundings()); });
}

// The driver has a written value at once, and reports nothing when the PLC has taken it. Without a
// comparison, words that hold a written bit would keep their old value.
void Poller::writeEnded(const Item &item, const QVector<quint16> &values, Confirmation confirmation)
{
    m_set.distrustCallbacks();
    m_set.forEach(
        [&](Monitor &monitor) { monitor.writeEnded(item, values, confirmation, surroundings()); });
}

// Where every station was tried and none answers, rounds are counted all the same: a program may
// wait for the end of one.
void Poller::look()
{
    const Monitor::Surroundings now = surroundings();
    m_set.forEach([&](Monitor &monitor) { monitor.look(now); });
    const QVector<int> stations = m_set.stations();
    const bool hopeless = m_lineOpen && m_blocks == 0 && !m_mergeDue && !stations.isEmpty() &&
                          std::none_of(stations.cbegin(), stations.cend(), [this](int station) {
                              return m_health.state(station) == StationHealth::State::Unproven;
                          });
    if (hopeless && now.nowMs >= m_nextRoundMs) {
        m_roundBeganMs = now.nowMs;
        finishRound();
    }
}

void Poller::tell()
{
    m_set.forEach([](Monitor &monitor) { monitor.tell(); });
}

} // namespace cnet
