#pragma once

#include "gateway/change/change.h"
#include "gateway/change/line_status.h"
#include "gateway/change/write_request.h"
#include "gateway/sinks/sink.h"
#include "gateway/sparkplug/metric_values.h"
#include "gateway/sparkplug/sparkplug_names.h"

#include <QHash>
#include <QVector>

#include <memory>
#include <utility>

namespace cnet::gateway {

/**
 * What is known of a line and station: a device, as hosts see it, and of its tags: its metrics.
 *
 * A value is how things are when it came live. One of a backlog is when the end of that is known,
 * and nothing of it was lost; and one that a run of the gateway before this one left behind is not
 * until it was read again: the tag may be gone, or the PLC.
 */
class NodeModel
{
public:
    struct Device
    {
        QString id;
        QString line;
        int station = 1;
        QVector<int> metrics;
        bool isBorn = false;
        bool hasNew = false;    ///< metrics, or other datatypes, that its last birth did not tell
        bool isWatched = false; ///< this run of the gateway had something of it
    };

    /** What a device is told of a batch. */
    struct Part
    {
        int device = 0;
        QVector<std::pair<int, Change>> changes; ///< of which metric
    };
    /** Changes by their devices; devices and metrics are made where there are none yet. */
    QVector<Part> partsOf(const QVector<Change> &changes);

    const QVector<Device> &devices() const { return m_devices; }
    void setBorn(int device, bool isBorn);
    /** None of them lives for the hosts any more. */
    void forgetBirths();
    /** From now on something newer may be on its way. */
    void setOutdated();
    /** All that was on its way is known now. */
    void setUpToDate();
    /** Changes were lost: what is known may be wrong. @param nowMs since when it is told so */
    void distrust(qint64 nowMs);
    /** Numbers of batches begin anew. */
    void forgetBatches();

    /** Notes a change of a batch, where nothing newer is known. */
    void note(int metric, const Change &change, const SinkBatch &batch);

    /** All that is known of a device's metrics. @param nowMs time of what is not known yet */
    QVector<Metric> takeBirth(int device, qint64 nowMs);
    /** A change, for those that know the device's birth. */
    Metric dataOf(int metric, const Change &change, SinkBatch::Age age) const;
    /** What is known of metrics where that is not what was told. */
    QVector<Metric> takeUntold(int device);

    void tell(const LineStatus &status);
    /** True where its line or station was told to be lost, or nobody watches it any more. */
    bool isLost(int device) const;
    /** True where its values say that the station does not answer. */
    bool isSilent(int device) const;

    /** A command, as a request to write. Where something is wrong with it, that is its fault. */
    WriteRequest requestOf(const QString &device, const CameMetric &wanted) const;

private:
    struct Known
    {
        std::shared_ptr<const ChangeSource> source;
        QString name;
        int device = 0;
        Datatype datatype = Datatype::Int64;
        Change newest; ///< without a source
        qint64 batch = 0;
        bool isSure = false;     ///< it is of this run, and nothing was lost since
        bool isUpToDate = false; ///< and nothing newer is on its way
        bool isUntold = false;
    };
    using Place = std::pair<QString, int>; ///< line and station; -1: the line itself

    const Known &at(int metric) const { return m_metrics.at(metric); }
    int placeDevice(const ChangeSource &source);
    int metricOf(const std::shared_ptr<const ChangeSource> &source);
    int findDevice(const QString &id) const;
    int findMetric(int device, const CameMetric &wanted) const;

    QVector<Known> m_metrics; ///< their index is their alias
    QVector<Device> m_devices;
    QVector<SparkplugNames> m_metricNames; ///< of each device
    SparkplugNames m_deviceNames;
    QHash<Place, int> m_deviceOf;
    QHash<std::pair<int, QString>, int> m_metricOf; ///< device and tag
    QHash<Place, LineStatus::State> m_states;       ///< as they were told
};

} // namespace cnet::gateway
