#include "gateway/sparkplug/node_model.h"

#include <algorithm>
#include <utility>

namespace cnet::gateway {

namespace {

bool isFine(const Change &change)
{
    return metricQuality(change.quality) == MetricQuality::Good;
}

void sortByTime(QVector<Metric> &metrics)
{
    std::stable_sort(metrics.begin(), metrics.end(),
                     [](const Metric &one, const Metric &other) { return one.atMs < other.atMs; });
}

/// Tells a value and its quality, as far as it is not good.
void fill(Metric &metric, const Change &change)
{
    metric.atMs = change.atMs;
    metric.value = valueAs(metric.datatype, change.value);
    const MetricQuality quality = metricQuality(change.quality);
    if (quality != MetricQuality::Good) {
        metric.quality = quality;
        metric.cause = change.cause.isEmpty() ? qualityText(change.quality) : change.cause;
    }
}

} // namespace

int NodeModel::placeDevice(const ChangeSource &source)
{
    const Place place{source.line, source.station};
    const auto known = m_deviceOf.constFind(place);
    if (known != m_deviceOf.cend()) {
        return *known;
    }
    Device device;
    device.line = source.line;
    device.station = source.station;
    device.id =
        m_deviceNames.take(QString::fromLatin1("%1.%2").arg(source.line).arg(source.station), true);
    const auto index = static_cast<int>(m_devices.size());
    m_devices.append(device);
    m_metricNames.append(SparkplugNames());
    m_deviceOf.insert(place, index);
    return index;
}

int NodeModel::metricOf(const std::shared_ptr<const ChangeSource> &source)
{
    const int device = placeDevice(*source);
    const Datatype datatype = datatypeOf(*source);
    const auto known = m_metricOf.constFind({device, source->tag});
    if (known != m_metricOf.cend()) {
        Known &metric = m_metrics[*known];
        if (metric.source != source) {
            const bool isOther = metric.datatype != datatype || metric.source->unit != source->unit;
            m_devices[device].hasNew = m_devices.at(device).hasNew || isOther;
            metric.datatype = datatype;
            metric.source = source;
        }
        return *known;
    }
    Known metric;
    metric.source = source;
    metric.name = m_metricNames[device].take(source->tag, false);
    metric.device = device;
    metric.datatype = datatype;
    const auto index = static_cast<int>(m_metrics.size());
    m_metrics.append(metric);
    m_metricOf.insert({device, source->tag}, index);
    m_devices[device].metrics.append(index);
    m_devices[device].hasNew = true;
    return index;
}

QVector<NodeModel::Part> NodeModel::partsOf(const QVector<Change> &changes)
{
    QVector<Part> parts;
    QHash<int, int> partOf;                   // of each device
    QHash<const ChangeSource *, int> metrics; // a source has many changes
    for (const Change &change : changes) {
        auto known = metrics.find(change.source.get());
        if (known == metrics.end()) {
            known = metrics.insert(change.source.get(), metricOf(change.source));
        }
        const int device = at(*known).device;
        auto part = partOf.find(device);
        if (part == partOf.end()) {
            part = partOf.insert(device, static_cast<int>(parts.size()));
            parts.append(Part());
            parts.last().device = device;
        }
        parts[*part].changes.append({*known, change});
    }
    return parts;
}

void NodeModel::setBorn(int device, bool isBorn)
{
    m_devices[device].isBorn = isBorn;
    m_devices[device].hasNew = m_devices.at(device).hasNew && !isBorn;
}

void NodeModel::forgetBirths()
{
    for (Device &device : m_devices) {
        device.isBorn = false;
    }
}

void NodeModel::setOutdated()
{
    for (Known &metric : m_metrics) {
        metric.isUpToDate = false;
    }
}

void NodeModel::setUpToDate()
{
    for (Known &metric : m_metrics) {
        if (metric.isSure && !metric.isUpToDate) {
            metric.isUpToDate = true;
            metric.isUntold = true;
        }
    }
}

void NodeModel::distrust(qint64 nowMs)
{
    for (Known &metric : m_metrics) {
        metric.isSure = false;
        if (metric.isUpToDate && isFine(metric.newest)) {
            metric.newest.quality = Quality::Stale;
            metric.newest.cause = QLatin1String("changes were lost");
            metric.newest.atMs = nowMs;
            metric.isUntold = true;
        }
    }
}

void NodeModel::forgetBatches()
{
    for (Known &metric : m_metrics) {
        metric.batch = 0;
    }
}

void NodeModel::note(int metric, const Change &change, const SinkBatch &batch)
{
    Known &known = m_metrics[metric];
    Device &device = m_devices[known.device];
    device.isWatched = device.isWatched || batch.isOfThisRun;
    if (batch.number < known.batch) {
        return;
    }
    known.newest = change;
    known.newest.source.reset();
    known.batch = batch.number;
    known.isSure = batch.isOfThisRun;
    known.isUpToDate = batch.age == SinkBatch::Age::Live;
    known.isUntold = false;
}

QVector<Metric> NodeModel::takeBirth(int device, qint64 nowMs)
{
    QVector<Metric> all;
    for (const int index : m_devices.at(device).metrics) {
        Known &known = m_metrics[index];
        Metric metric;
        metric.name = known.name;
        metric.alias = static_cast<quint64>(index);
        metric.datatype = known.datatype;
        metric.tellsDatatype = true;
        metric.unit = known.source->unit;
        Change newest = known.newest;
        if (!known.isUpToDate && isFine(newest)) {
            newest.quality = Quality::Stale;
        }
        newest.atMs = newest.atMs == 0 ? nowMs : newest.atMs;
        fill(metric, newest);
        all.append(metric);
        known.isUntold = false;
    }
    return all;
}

Metric NodeModel::dataOf(int metric, const Change &change, SinkBatch::Age age) const
{
    Metric told;
    told.alias = static_cast<quint64>(metric);
    told.datatype = at(metric).datatype;
    told.isHistorical = age == SinkBatch::Age::Backlog;
    fill(told, change);
    return told;
}

QVector<Metric> NodeModel::takeUntold(int device)
{
    QVector<Metric> untold;
    for (const int index : m_devices.at(device).metrics) {
        if (std::exchange(m_metrics[index].isUntold, false)) {
            untold.append(dataOf(index, at(index).newest, SinkBatch::Age::Live));
        }
    }
    sortByTime(untold);
    return untold;
}

void NodeModel::tell(const LineStatus &status)
{
    m_states[{status.line, status.station.value_or(-1)}] = status.state;
}

bool NodeModel::isLost(int device) const
{
    const Device &own = m_devices.at(device);
    const auto station = m_states.constFind({own.line, own.station});
    const auto line = m_states.constFind({own.line, -1});
    const bool isTold = station != m_states.cend() || line != m_states.cend();
    return (!isTold && !own.isWatched) ||
           (station != m_states.cend() && *station == LineStatus::State::Bad) ||
           (line != m_states.cend() && *line == LineStatus::State::Bad);
}

bool NodeModel::isSilent(int device) const
{
    const QVector<int> &metrics = m_devices.at(device).metrics;
    const auto quality = [this](int metric) { return at(metric).newest.quality; };
    return std::none_of(metrics.begin(), metrics.end(),
                        [&](int metric) { return isAnswered(quality(metric)); }) &&
           std::any_of(metrics.begin(), metrics.end(),
                       [&](int metric) { return isUnanswered(quality(metric)); });
}

int NodeModel::findDevice(const QString &id) const
{
    const auto found = std::find_if(m_devices.begin(), m_devices.end(),
                                    [&id](const Device &device) { return device.id == id; });
    return found == m_devices.end() ? -1 : static_cast<int>(found - m_devices.begin());
}

int NodeModel::findMetric(int device, const CameMetric &wanted) const
{
    const QVector<int> &metrics = m_devices.at(device).metrics;
    const auto found = std::find_if(metrics.begin(), metrics.end(), [&](int metric) {
        return wanted.name.isEmpty() ? wanted.alias == quint64(metric)
                                     : wanted.name == at(metric).name;
    });
    return found == metrics.end() ? -1 : *found;
}

WriteRequest NodeModel::requestOf(const QString &device, const CameMetric &wanted) const
{
    const int index = findDevice(device);
    const int metric = index < 0 ? -1 : findMetric(index, wanted);
    WriteRequest request;
    request.line = index < 0 ? device : m_devices.at(index).line;
    request.tag = wanted.name;
    if (wanted.name.isEmpty() && wanted.alias) {
        request.tag = QString::fromLatin1("alias %1").arg(*wanted.alias);
    }
    request.value = shownText(wanted.value);
    if (metric < 0) {
        request.fault = index < 0 ? QString::fromLatin1("there is no device %1").arg(device)
                                  : QString::fromLatin1("%1 has no such metric").arg(device);
        return request;
    }
    request.tag = at(metric).source->tag;
    const auto text = commandText(wanted, at(metric).datatype);
    if (text) {
        request.value = *text;
    } else {
        request.fault = QLatin1String("it is no value of the metric's datatype");
    }
    return request;
}

} // namespace cnet::gateway
