#pragma once

#include "gateway/status/snapshot.h"

#include "host/time/clock.h"

#include <QMap>
#include <QVector>

namespace cnet::gateway {

/** Makes a snapshot of what lines and recorder say, with what only several of them together tell.
 */
class SnapshotMaker
{
public:
    /** @param clock must outlive this object */
    SnapshotMaker(QString version, Clock &clock);

    Snapshot make(const QVector<LineMeters> &lines, const RecorderState &recorder,
                  const LedgerBounds &bounds);

private:
    struct Seen
    {
        qint64 atMs = 0;
        qint64 values = 0;
    };
    struct SinkPast
    {
        QVector<Seen> seen; ///< of the last seconds, oldest first
        qint64 readyMs = 0; ///< when it was ready last, or seen first
    };

    SinkMeters metersOf(const SinkState &state, SinkPast &past) const;

    QString m_version;
    Clock &m_clock;
    qint64 m_startedMs;
    QMap<QString, SinkPast> m_sinks;
};

} // namespace cnet::gateway
