#include "gateway/service/snapshot_maker.h"

#include <utility>

namespace cnet::gateway {

namespace {

constexpr qint64 kRecentMs = 10000;

} // namespace

SnapshotMaker::SnapshotMaker(QString version, Clock &clock)
    : m_version(std::move(version))
    , m_clock(clock)
    , m_startedMs(clock.wallMs())
{}

SinkMeters SnapshotMaker::metersOf(const SinkState &state, SinkPast &past) const
{
    const qint64 nowMs = m_clock.nowMs();
    if (state.isReady || past.seen.isEmpty()) {
        past.readyMs = nowMs;
    }
    while (!past.seen.isEmpty() && nowMs - past.seen.first().atMs > kRecentMs) {
        past.seen.removeFirst();
    }
    // A sink that began anew counts from 0.
    if (!past.seen.isEmpty() && state.values < past.seen.last().values) {
        past.seen.clear();
    }
    past.seen.append({nowMs, state.values});
    const Seen &first = past.seen.first();
    const qint64 passedMs = nowMs - first.atMs;
    SinkMeters meters;
    meters.state = state;
    meters.awayMs = nowMs - past.readyMs;
    if (passedMs > 0) {
        meters.valuesPerSecond =
            static_cast<double>(state.values - first.values) * 1000 / static_cast<double>(passedMs);
    }
    return meters;
}

Snapshot SnapshotMaker::make(const QVector<LineMeters> &lines, const RecorderState &recorder,
                             const LedgerBounds &bounds)
{
    Snapshot snapshot;
    snapshot.atMs = m_clock.nowMs();
    snapshot.wallMs = m_clock.wallMs();
    snapshot.startedMs = m_startedMs;
    snapshot.version = m_version;
    snapshot.lines = lines;
    snapshot.recorder = recorder;
    snapshot.bounds = bounds;
    QMap<QString, SinkPast> sinks;
    for (const SinkState &state : recorder.sinks) {
        SinkPast past = m_sinks.take(state.name);
        snapshot.sinks.append(metersOf(state, past));
        sinks.insert(state.name, past);
    }
    m_sinks = sinks; // those that are gone are forgotten
    return snapshot;
}

} // namespace cnet::gateway
