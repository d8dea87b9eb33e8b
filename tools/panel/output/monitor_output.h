#pragma once

#include "host/monitor/monitor.h"
#include "host/statistics/statistics.h"
#include "host/tag/tag.h"

#include <QDateTime>
#include <QIODevice>
#include <QMap>
#include <QString>

#include <memory>

namespace cnet::panel {

enum class OutputFormat { Text, Json, Csv };

/** Link, rounds and stations at one moment: all that is shown besides the values. */
struct MonitorStatus
{
    QString link;     ///< name of the link
    QString linkLost; ///< why it is down; empty: it is open
    int rounds = 0;
    qint64 nowMs = 0; ///< on the session's clock
    QDateTime time;
    QMap<int, StationCounters> stations;
    const Statistics *statistics = nullptr; ///< of the session; null: nobody counts
    QVector<Tag> tags; ///< what the monitor's items stand for, as many; empty: plain words and bits
};

/** Shows what a monitor watches. */
class MonitorOutput
{
public:
    MonitorOutput() = default;
    virtual ~MonitorOutput() = default;
    MonitorOutput(const MonitorOutput &) = delete;
    MonitorOutput &operator=(const MonitorOutput &) = delete;

    /** Values were read for the first time or have changed. */
    virtual void showChanges(const Monitor & /*monitor*/, const QVector<ValueChange> & /*changes*/)
    {}

    /** The quality of an item has changed. @param item index */
    virtual void showQuality(const Monitor & /*monitor*/, int /*item*/, const QDateTime & /*time*/)
    {}

    /** The link was lost or is open again. */
    virtual void showLink(const MonitorStatus & /*status*/) {}

    /**
     * Other tags are watched from now on.
     * @param before what index each of them had until now; negative: it is new, or another one
     */
    virtual void setTags(const QVector<Tag> & /*tags*/, const QVector<int> & /*before*/) {}

    /** Called a few times a second, for outputs that show ages and counters. */
    virtual void refresh(const Monitor & /*monitor*/, const MonitorStatus & /*status*/) {}

    /** Prints the summary, before the program ends. */
    virtual void end(const Monitor & /*monitor*/, const MonitorStatus & /*status*/) {}
};

// Their tags are what the monitor's items stand for, as many; none: plain words and bits.

/** A line of text for each change of a value, a quality or the link. */
std::unique_ptr<MonitorOutput> makeTextOutput(QIODevice &device, const QVector<Tag> &tags = {});

/** A JSON object on a line for each change; at the end one for each item and each station. */
std::unique_ptr<MonitorOutput> makeJsonOutput(QIODevice &device, const QVector<Tag> &tags = {});

/** A header and a row for each change of a value, a quality or the link. */
std::unique_ptr<MonitorOutput> makeCsvOutput(QIODevice &device, const QVector<Tag> &tags = {});

/** One station and its counters on a line: "station 1: answers, 120 frames, ...". */
QString stationLine(int station, const StationCounters &counters);

/** "2026-11-21T07:44:23.261+01:00": a time that says where it belongs. */
QString zonedTime(const QDateTime &time);

} // namespace cnet::panel
