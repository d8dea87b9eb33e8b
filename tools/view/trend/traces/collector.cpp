#include "view/trend/traces/collector.h"

#include "host/tag/scaling.h"

#include <cmath>
#include <limits>

namespace cnet::view {

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

double numberOf(const Scalar &value)
{
    if (const auto *truth = std::get_if<bool>(&value)) {
        return *truth ? 1 : 0;
    }
    return isNumber(value) ? approximately(value) : kNothing;
}

bool isFine(Quality quality)
{
    return quality == Quality::Good || quality == Quality::Waiting;
}

/** What the PLC is known to have: of what was written, only what it has confirmed. */
QVector<TagValue> confirmedValues(const Tag &tag, ItemState state)
{
    for (ItemValue &unit : state.values) {
        unit.writes = 0;
    }
    return readTag(tag, state);
}

/** Some words of the value are read on while others wait: together they may never have been. */
bool isTorn(const Tag &tag, const ItemState &state, int value)
{
    const int step = tag.type.unitsPerValue();
    int waiting = 0;
    for (int unit = value * step; unit < (value + 1) * step; ++unit) {
        waiting += state.values.at(unit).isWaiting() ? 1 : 0;
    }
    return waiting != 0 && waiting != step;
}

} // namespace

Collector::Collector(WatchedTags &tags, TraceSet &traces, QObject *parent, const Clock &clock)
    : QObject(parent)
    , m_tags(tags)
    , m_traces(traces)
    , m_clock(clock)
{
    connect(&tags, &WatchedTags::valuesChanged, this, [this](const QVector<int> &changed) {
        for (const int tag : changed) {
            if (m_uses.contains(tag)) {
                take(tag, m_tags.state(tag).changedAtMs + m_aheadMs);
            }
        }
    });
    connect(&tags, &WatchedTags::stateChanged, this, [this](int tag) {
        if (m_uses.contains(tag)) {
            take(tag, nowMs());
        }
    });
    connect(&tags, &WatchedTags::tagsChanged, this, &Collector::connectTraces);
    connect(&traces, &TraceSet::rowsInserted, this, &Collector::connectTraces);
    connect(&traces, &TraceSet::rowsRemoved, this, &Collector::connectTraces);
    connect(&traces, &TraceSet::modelReset, this, &Collector::connectTraces);
    connectTraces();
}

qint64 Collector::nowMs()
{
    const qint64 wallMs = m_clock.wallMs();
    if (wallMs + m_aheadMs < m_lastMs) {
        m_aheadMs = m_lastMs - wallMs;
    }
    m_lastMs = wallMs + m_aheadMs;
    return m_lastMs;
}

Collector::Source Collector::sourceOf(const QString &trace) const
{
    const int whole = m_tags.tags().indexOf(trace);
    if (whole >= 0) {
        return {whole, 0};
    }
    const int open = static_cast<int>(trace.lastIndexOf(QLatin1Char('[')));
    if (open < 0 || !trace.endsWith(QLatin1Char(']'))) {
        return {};
    }
    bool isNumber = false;
    const int value = trace.mid(open + 1, trace.size() - open - 2).toInt(&isNumber);
    const int tag = m_tags.tags().indexOf(trace.left(open));
    if (!isNumber || tag < 0 || value < 0 || value >= m_tags.tags().all().at(tag).count) {
        return {};
    }
    return {tag, value};
}

QStringList Collector::tracesOf(const QString &name, QString &error) const
{
    const Source source = sourceOf(name);
    if (source.tag < 0) {
        error = tr("There is no tag %1.").arg(name);
        return {};
    }
    const Tag &tag = m_tags.tags().all().at(source.tag);
    if (tag.type.kind == ValueKind::String) {
        error = tr("%1 is text, which cannot be drawn.").arg(name);
        return {};
    }
    if (tag.count == 1 || m_tags.tags().indexOf(name) < 0) {
        return {name};
    }
    QStringList names;
    for (int i = 0; i < tag.count; ++i) {
        names.append(QLatin1String("%1[%2]").arg(name, QString::number(i)));
    }
    return names;
}

TraceKind Collector::kindOf(const QString &trace) const
{
    const Source source = sourceOf(trace);
    if (source.tag < 0) {
        return {};
    }
    const Tag &tag = m_tags.tags().all().at(source.tag);
    const ValueKind kind = tag.type.kind;
    const bool isRawBit = kind == ValueKind::Raw && tag.item.reg.isBit() && !tag.isScaled();
    return {tag.unit, kind == ValueKind::Bool || kind == ValueKind::Bit || isRawBit,
            tag.isScaled() && tag.type.isWhole() ? decimalsOf(tag) : 0};
}

void Collector::connectTraces()
{
    m_uses.clear();
    for (int i = 0; i < m_traces.count(); ++i) {
        const QString name = m_traces.at(i).choice.name;
        const Source source = sourceOf(name);
        if (source.tag < 0) {
            append(i, nowMs(), kNothing, Quality::NeverRead);
            continue;
        }
        m_uses[source.tag].append({i, source.value});
        m_traces.setKind(i, kindOf(name));
    }
    const QList<int> tags = m_uses.keys();
    for (const int tag : tags) {
        take(tag, nowMs());
    }
}

void Collector::take(int tag, qint64 atMs)
{
    const Tag &own = m_tags.tags().all().at(tag);
    const ItemState &state = m_tags.state(tag);
    const bool isWaiting = state.quality == Quality::Waiting;
    const auto values = isWaiting ? confirmedValues(own, state) : m_tags.values(tag);
    const auto uses = m_uses.value(tag);
    for (const Use &use : uses) {
        if (use.value >= values.size() || (isWaiting && !isKnownWhileWaiting(tag, use))) {
            continue;
        }
        const TagValue &value = values.at(use.value);
        const double number = isFine(value.quality) ? numberOf(value.value.value) : kNothing;
        append(use.trace, atMs, number, !std::isnan(number) ? Quality::Good : value.quality);
    }
}

/** A write that waits hides that a value is not read any more: it does not end a gap. */
bool Collector::isKnownWhileWaiting(int tag, const Use &use) const
{
    const TraceStore &store = *m_traces.at(use.trace).store;
    return !store.sample(store.entries() - 1).isGap &&
           !isTorn(m_tags.tags().all().at(tag), m_tags.state(tag), use.value);
}

void Collector::append(int trace, qint64 atMs, double value, Quality quality)
{
    TraceStore &store = *m_traces.at(trace).store;
    const auto last = store.sample(store.entries() - 1); // a gap where there is none
    const bool isGap = !std::isfinite(value);
    const bool holds = isGap ? last.isGap && m_traces.at(trace).quality == quality
                             : !last.isGap && last.value == value;
    if (holds) {
        return;
    }
    if (isGap) {
        store.appendGap(atMs);
    } else {
        store.append(atMs, value);
    }
    m_traces.setQuality(trace, quality);
    Q_EMIT sampled(trace, atMs, value, quality);
}

} // namespace cnet::view
