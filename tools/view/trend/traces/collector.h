#pragma once

#include "view/tags/watched_tags.h"
#include "view/trend/traces/trace_set.h"

#include "host/time/system_clock.h"

#include <QHash>
#include <QObject>
#include <QStringList>

namespace cnet::view {

/**
 * Takes what the tags become into the traces of their names, at the time of the change. While a
 * value is not good, its trace has a gap. A value that was written here is taken when the PLC has
 * confirmed it, at that time, and until then the one before holds. A trace whose tag is no more
 * keeps what it has, and goes on when the tag is there again.
 */
class Collector : public QObject
{
    Q_OBJECT

public:
    /** @param tags must outlive this, as must the traces and the clock */
    Collector(WatchedTags &tags, TraceSet &traces, QObject *parent = nullptr,
              const Clock &clock = SystemClock::instance());

    /** The wall clock in ms, which here never goes back: where that is put back, this goes on from
     * where it was. */
    qint64 nowMs();

    /**
     * The traces that a tag's name stands for: one for each value of an array.
     * @param error receives one sentence when the result is empty: no such tag, or it is text
     */
    QStringList tracesOf(const QString &name, QString &error) const;

    /** What the tag of a trace is. Of one that is not there the kind is empty. */
    TraceKind kindOf(const QString &trace) const;

Q_SIGNALS:
    /** A trace got a sample or a gap, or a gap has another reason: the value is not a number then.
     */
    void sampled(int trace, qint64 atMs, double value, cnet::Quality quality);

private:
    struct Source
    {
        int tag = -1; ///< index; -1: it is not there
        int value = 0;
    };
    struct Use
    {
        int trace = 0;
        int value = 0; ///< of the tag
    };

    Source sourceOf(const QString &trace) const;
    void connectTraces();
    void take(int tag, qint64 atMs);
    bool isKnownWhileWaiting(int tag, const Use &use) const;
    void append(int trace, qint64 atMs, double value, Quality quality);

    WatchedTags &m_tags;
    TraceSet &m_traces;
    const Clock &m_clock;
    QHash<int, QVector<Use>> m_uses; ///< of each tag
    qint64 m_lastMs = 0;
    qint64 m_aheadMs = 0; ///< of the wall clock, since that was put back
};

} // namespace cnet::view
