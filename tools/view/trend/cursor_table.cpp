#include "view/trend/cursor_table.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet::view {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

qint64 wholeMs(double atMs)
{
    return static_cast<qint64>(std::floor(atMs));
}

double valueAt(const TraceStore &store, std::optional<double> at, qint64 liveMs)
{
    if (!at || *at > static_cast<double>(liveMs)) {
        return kNone;
    }
    const auto sample = store.sample(store.indexAt(wholeMs(*at) + 1) - 1);
    return sample.isGap ? kNone : sample.value;
}

/** Adds what is known from one time to a later one, the last value held to there. */
void addHeld(const TraceStore &store, qint64 fromMs, qint64 toMs, double sign, double &values,
             double &ms)
{
    const int end = store.indexAt(toMs);
    for (int i = std::max(store.indexAt(fromMs + 1) - 1, 0); i < end; ++i) {
        const auto sample = store.sample(i);
        if (!sample.isGap) {
            const qint64 until = i + 1 < end ? store.sample(i + 1).atMs : toMs;
            const auto held = static_cast<double>(until - std::max(sample.atMs, fromMs));
            values += sign * sample.value * held;
            ms += sign * held;
        }
    }
}

} // namespace

CursorTable::CursorTable(const TraceSet &traces, const Cursors &cursors, QObject *parent)
    : QAbstractTableModel(parent)
    , m_traces(traces)
    , m_cursors(cursors)
{}

double CursorTable::meanOf(const std::shared_ptr<TraceStore> &own, qint64 fromMs, qint64 toMs,
                           Sum &sum)
{
    const TraceStore &store = *own;
    // What is behind the last sample may still become known otherwise: it is never kept.
    const qint64 closedMs = std::clamp(store.lastMs(), fromMs, toMs);
    const qint64 overMs = std::llabs(fromMs - sum.fromMs) + std::llabs(closedMs - sum.toMs);
    if (sum.store != own || sum.fromMs < store.firstMs() || overMs >= closedMs - fromMs ||
        sum.toMs > store.lastMs()) {
        sum = {own, fromMs, closedMs, 0, 0};
        addHeld(store, fromMs, closedMs, 1, sum.values, sum.ms);
    } else if (overMs > 0) {
        addHeld(store, std::min(fromMs, sum.fromMs), std::max(fromMs, sum.fromMs),
                fromMs < sum.fromMs ? 1 : -1, sum.values, sum.ms);
        addHeld(store, std::min(closedMs, sum.toMs), std::max(closedMs, sum.toMs),
                closedMs > sum.toMs ? 1 : -1, sum.values, sum.ms);
        sum.fromMs = fromMs;
        sum.toMs = closedMs;
    }
    double values = sum.values;
    double ms = sum.ms;
    addHeld(store, closedMs, toMs, 1, values, ms);
    return ms >= 1 ? values / ms : kNone;
}

void CursorTable::work(Row &row, const Trace &trace, qint64 liveMs) const
{
    const TraceStore &store = *trace.store;
    row.name = traceTitle(trace);
    row.decimals = trace.kind.decimals;
    row.numbers.fill(kNone);
    row.numbers[AtA] = valueAt(store, m_cursors.at(Cursor::A), liveMs);
    row.numbers[AtB] = valueAt(store, m_cursors.at(Cursor::B), liveMs);
    row.numbers[Difference] = row.numbers[AtB] - row.numbers[AtA];
    const auto between = m_cursors.between();
    if (!between) {
        return;
    }
    const qint64 fromMs = wholeMs((*between)[0]);
    const qint64 toMs = std::min(wholeMs((*between)[1]), liveMs);
    if (fromMs > toMs) {
        return;
    }
    const auto span =
        store.span(std::max(store.indexAt(fromMs + 1) - 1, 0), store.indexAt(toMs + 1));
    if (span.count > 0) {
        row.numbers[Least] = span.least;
        row.numbers[Greatest] = span.greatest;
        const double mean =
            meanOf(trace.store, std::clamp(store.firstMs(), fromMs, toMs), toMs, row.sum);
        // What is added and taken off again leaves a rest in the last places.
        row.numbers[Mean] =
            std::isfinite(mean) ? std::clamp(mean, span.least, span.greatest) : kNone;
    }
}

void CursorTable::refresh(qint64 liveMs)
{
    const auto count = static_cast<size_t>(m_traces.count());
    const bool isReset = m_rows.size() != count;
    if (isReset) {
        beginResetModel();
        m_rows.assign(count, Row());
    }
    for (size_t i = 0; i < count; ++i) {
        work(m_rows[i], m_traces.at(static_cast<int>(i)), liveMs);
    }
    if (isReset) {
        endResetModel();
    } else if (count > 0) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
    }
}

int CursorTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CursorTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QVariant CursorTable::data(const QModelIndex &index, int role) const
{
    if (!hasIndex(index.row(), index.column())) {
        return {};
    }
    const Row &row = m_rows[static_cast<size_t>(index.row())];
    if (role == Qt::DisplayRole) {
        return index.column() == Name
                   ? row.name
                   : traceText(row.numbers[static_cast<size_t>(index.column())], row.decimals);
    }
    if (role == Qt::TextAlignmentRole && index.column() != Name) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    return {};
}

QVariant CursorTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return tr("Trace");
    case AtA:
        return tr("At A");
    case AtB:
        return tr("At B");
    case Difference:
        return tr("B - A");
    case Least:
        return tr("Min");
    case Greatest:
        return tr("Max");
    default:
        return tr("Mean");
    }
}

} // namespace cnet::view
