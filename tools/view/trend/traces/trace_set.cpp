#include "view/trend/traces/trace_set.h"

#include "view/look/colours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace cnet::view {

namespace {

constexpr int kColours = 10;
constexpr int kDigits = 7; ///< as many as a float of the PLC has
constexpr double kGreatestWhole = 1e15;
// How far a difference of decimals may be from the number that is meant.
constexpr double kBeside = 1e-12;

} // namespace

QString traceTitle(const Trace &trace)
{
    const QString &unit = trace.kind.unit;
    return unit.isEmpty() ? trace.choice.name
                          : QLatin1String("%1 (%2)").arg(trace.choice.name, unit);
}

QString traceText(double value, int decimals)
{
    if (!std::isfinite(value)) {
        return QLatin1String("-");
    }
    const double usual = QString::number(value, 'f', decimals).toDouble();
    const bool isExact = std::fabs(value) < kGreatestWhole &&
                         std::fabs(usual - value) <= kBeside * std::max(1.0, std::fabs(value));
    return isExact ? QString::number(usual, 'f', decimals) : QString::number(value, 'g', kDigits);
}

int TraceSet::indexOf(const QString &name) const
{
    const auto found =
        std::find_if(m_traces.cbegin(), m_traces.cend(),
                     [&name](const Trace &trace) { return trace.choice.name == name; });
    return found != m_traces.cend() ? static_cast<int>(found - m_traces.cbegin()) : -1;
}

int TraceSet::freeColour() const
{
    std::array<int, kColours> uses{};
    for (const Trace &trace : m_traces) {
        ++uses[static_cast<size_t>(trace.choice.colour % kColours)];
    }
    return static_cast<int>(std::min_element(uses.cbegin(), uses.cend()) - uses.cbegin());
}

int TraceSet::add(const TraceChoice &choice, const TraceKind &kind)
{
    if (isFull() || indexOf(choice.name) >= 0) {
        return -1;
    }
    TraceChoice own = choice;
    own.colour = std::max(own.colour, 0) % kColours;
    own.pane = std::clamp(own.pane, 0, TrendView::kMostPanes - 1);
    beginInsertRows(QModelIndex(), count(), count());
    m_traces.push_back({own, kind, std::make_shared<TraceStore>(kMostSamples), Quality::NeverRead});
    endInsertRows();
    Q_EMIT rearranged();
    return count() - 1;
}

void TraceSet::removeAt(int trace)
{
    if (!isTrace(trace)) {
        return;
    }
    beginRemoveRows(QModelIndex(), trace, trace);
    m_traces.erase(m_traces.begin() + trace);
    if (m_highlighted >= trace) {
        m_highlighted = m_highlighted == trace ? -1 : m_highlighted - 1;
    }
    endRemoveRows();
    Q_EMIT rearranged();
}

void TraceSet::clear()
{
    beginResetModel();
    m_traces.clear();
    m_highlighted = -1;
    endResetModel();
    Q_EMIT rearranged();
}

void TraceSet::tell(int trace)
{
    Q_EMIT dataChanged(index(trace, 0), index(trace, kColumns - 1));
    Q_EMIT rearranged();
}

void TraceSet::setKind(int trace, const TraceKind &kind)
{
    if (isTrace(trace) && !(own(trace).kind == kind)) {
        own(trace).kind = kind;
        tell(trace);
    }
}

void TraceSet::setColour(int trace, int colour)
{
    if (isTrace(trace) && colour >= 0) {
        own(trace).choice.colour = colour % kColours;
        tell(trace);
    }
}

void TraceSet::setSide(int trace, Side side)
{
    if (isTrace(trace)) {
        own(trace).choice.side = side;
        tell(trace);
    }
}

void TraceSet::setPane(int trace, int pane)
{
    if (isTrace(trace) && pane >= 0 && pane < TrendView::kMostPanes) {
        own(trace).choice.pane = pane;
        tell(trace);
    }
}

void TraceSet::setVisible(int trace, bool isVisible)
{
    if (isTrace(trace)) {
        own(trace).choice.isVisible = isVisible;
        tell(trace);
    }
}

void TraceSet::setQuality(int trace, Quality quality)
{
    if (isTrace(trace)) {
        own(trace).quality = quality;
    }
}

void TraceSet::setHighlighted(int trace)
{
    const int next = isTrace(trace) ? trace : -1;
    if (next != m_highlighted) {
        m_highlighted = next;
        Q_EMIT rearranged();
    }
}

void TraceSet::dropPane(int pane)
{
    for (int i = 0; i < count(); ++i) {
        const int at = own(i).choice.pane;
        if (at >= pane && at > 0) {
            setPane(i, at - 1);
        }
    }
}

void TraceSet::tellValues()
{
    if (count() > 0) {
        Q_EMIT dataChanged(index(0, Value), index(count() - 1, Value), {Qt::DisplayRole});
    }
}

void TraceSet::setPalette(const QPalette &palette)
{
    m_palette = palette;
    if (count() > 0) {
        Q_EMIT dataChanged(index(0, Name), index(count() - 1, Name), {Qt::DecorationRole});
    }
    Q_EMIT rearranged();
}

int TraceSet::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

int TraceSet::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QVariant TraceSet::shown(const Trace &trace, int column) const
{
    switch (column) {
    case Name:
        return trace.choice.name;
    case Value: {
        const int entries = trace.store->entries();
        const auto last = trace.store->sample(entries - 1);
        const QString text = traceText(last.value, trace.kind.decimals); // of a gap a dash
        return trace.kind.unit.isEmpty() || last.isGap ? text
                                                       : text + QLatin1Char(' ') + trace.kind.unit;
    }
    case ScaleSide:
        if (trace.kind.isBit) {
            return tr("lane");
        }
        return trace.choice.side == Side::Left ? tr("left") : tr("right");
    default:
        return trace.kind.isBit ? QVariant(tr("bits")) : QVariant(trace.choice.pane + 1);
    }
}

QVariant TraceSet::edited(const Trace &trace, int column) const
{
    if (column == ScaleSide) {
        return trace.choice.side == Side::Left ? 0 : 1;
    }
    return column == PaneNumber ? QVariant(trace.choice.pane + 1) : shown(trace, column);
}

QVariant TraceSet::data(const QModelIndex &index, int role) const
{
    if (!hasIndex(index.row(), index.column())) {
        return {};
    }
    const Trace &trace = at(index.row());
    const bool isName = index.column() == Name;
    switch (role) {
    case Qt::DisplayRole:
        return shown(trace, index.column());
    case Qt::EditRole:
        return edited(trace, index.column());
    case Qt::ToolTipRole:
        return isName ? QVariant(traceTitle(trace)) : QVariant();
    case Qt::CheckStateRole:
        return isName ? QVariant(trace.choice.isVisible ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::DecorationRole:
        return isName ? QVariant(traceColour(trace.choice.colour, m_palette)) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == Value ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    default:
        return {};
    }
}

bool TraceSet::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!hasIndex(index.row(), index.column())) {
        return false;
    }
    if (role == Qt::CheckStateRole && index.column() == Name) {
        setVisible(index.row(), value.toInt() == Qt::Checked);
        return true;
    }
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (role != Qt::EditRole || !isNumber || at(index.row()).kind.isBit) {
        return false;
    }
    if (index.column() == ScaleSide && (number == 0 || number == 1)) {
        setSide(index.row(), number == 0 ? Side::Left : Side::Right);
        return true;
    }
    if (index.column() == PaneNumber && number >= 1 && number <= TrendView::kMostPanes) {
        setPane(index.row(), number - 1);
        return true;
    }
    return false;
}

Qt::ItemFlags TraceSet::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!hasIndex(index.row(), index.column())) {
        return flags;
    }
    if (index.column() == Name) {
        flags |= Qt::ItemIsUserCheckable;
    }
    const bool isPlace = index.column() == ScaleSide || index.column() == PaneNumber;
    if (isPlace && !at(index.row()).kind.isBit) {
        flags |= Qt::ItemIsEditable;
    }
    return flags;
}

QVariant TraceSet::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return tr("Trace");
    case Value:
        return tr("Value");
    case ScaleSide:
        return tr("Scale");
    default:
        return tr("Pane");
    }
}

} // namespace cnet::view
