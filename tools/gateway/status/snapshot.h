#pragma once

#include "gateway/delivery/recorder_state.h"
#include "gateway/lines/gateway_line.h"

#include "host/statistics/statistics.h"

#include <QMap>
#include <QString>
#include <QVector>

#include <memory>
#include <mutex>
#include <optional>

namespace cnet::gateway {

/** The numbers of one line. */
struct LineMeters
{
    QString name;
    bool isOpen = false;
    QString trouble; ///< why it is not open, in words
    QMap<int, StationCounters> stations;
    LineTraffic traffic;               ///< since the line was first open
    std::optional<double> loadPercent; ///< of the last ten seconds; nothing: speed not known
    qint64 rounds = 0;
    qint64 changes = 0; ///< that were told
};

/** A sink beside how the recorder has it. */
struct SinkMeters
{
    SinkState state;
    double valuesPerSecond = 0; ///< in the last seconds
    qint64 awayMs = 0;          ///< how long it is not ready; 0: it is
};

/** How the gateway stood at one moment. Nobody changes it any more, so any thread may read it. */
struct Snapshot
{
    qint64 atMs = 0;      ///< on the clock of the gateway
    qint64 wallMs = 0;    ///< the same for people: milliseconds since 1970 in UTC
    qint64 startedMs = 0; ///< when the gateway was, as wallMs
    QString version;
    QVector<LineMeters> lines;
    QVector<SinkMeters> sinks;
    RecorderState recorder;
    LedgerBounds bounds;
};

/** The meters of a line as they stand. On the thread of the lines. */
LineMeters metersOf(const GatewayLine &line);

/** Where the newest snapshot is for whoever wants it. For several threads. */
class SnapshotBoard
{
public:
    void put(std::shared_ptr<const Snapshot> snapshot)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_newest.swap(snapshot);
    }

    /** @return null: there was none yet */
    std::shared_ptr<const Snapshot> newest() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_newest;
    }

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const Snapshot> m_newest;
};

} // namespace cnet::gateway
