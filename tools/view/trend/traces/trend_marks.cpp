#include "view/trend/traces/trend_marks.h"

#include "host/monitor/item_state.h"

#include <algorithm>
#include <cmath>

namespace cnet::view {

QString clockText(double atMs)
{
    return wallTime(std::llround(atMs)).toString(QLatin1String("HH:mm:ss.zzz"));
}

void Cursors::place(Cursor cursor, double atMs)
{
    if (!std::isfinite(atMs)) {
        return;
    }
    m_at[index(cursor)] = atMs;
    m_active = cursor;
    Q_EMIT changed();
}

void Cursors::setActive(std::optional<Cursor> cursor)
{
    if (cursor && !isShown(*cursor)) {
        return;
    }
    m_active = cursor;
    Q_EMIT changed();
}

void Cursors::hide()
{
    m_at = {};
    m_active.reset();
    Q_EMIT changed();
}

std::optional<std::array<double, 2>> Cursors::between() const
{
    if (!m_at[0] || !m_at[1]) {
        return std::nullopt;
    }
    return std::array<double, 2>{std::min(*m_at[0], *m_at[1]), std::max(*m_at[0], *m_at[1])};
}

int Markers::add(const Marker &marker)
{
    if (rowCount() >= kMostMarkers) {
        return -1;
    }
    const auto behind =
        std::upper_bound(m_markers.begin(), m_markers.end(), marker,
                         [](const Marker &a, const Marker &b) { return a.atMs < b.atMs; });
    const int row = static_cast<int>(behind - m_markers.begin());
    beginInsertRows(QModelIndex(), row, row);
    m_markers.insert(behind, {marker.atMs, marker.note.left(kLongestNote)});
    endInsertRows();
    Q_EMIT changed();
    return row;
}

void Markers::removeAt(int row)
{
    if (row < 0 || row >= rowCount()) {
        return;
    }
    beginRemoveRows(QModelIndex(), row, row);
    m_markers.erase(m_markers.begin() + row);
    endRemoveRows();
    Q_EMIT changed();
}

void Markers::clear()
{
    beginResetModel();
    m_markers.clear();
    endResetModel();
    Q_EMIT changed();
}

int Markers::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_markers.size());
}

int Markers::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QVariant Markers::data(const QModelIndex &index, int role) const
{
    const bool isShown = role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole;
    if (!isShown || !hasIndex(index.row(), index.column())) {
        return {};
    }
    const Marker &marker = m_markers[static_cast<size_t>(index.row())];
    if (index.column() == Note) {
        return marker.note;
    }
    return role == Qt::ToolTipRole
               ? wallTime(marker.atMs).toString(QLatin1String("yyyy-MM-dd HH:mm:ss.zzz"))
               : clockText(static_cast<double>(marker.atMs));
}

bool Markers::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !hasIndex(index.row(), index.column()) || index.column() != Note) {
        return false;
    }
    m_markers[static_cast<size_t>(index.row())].note = value.toString().left(kLongestNote);
    Q_EMIT dataChanged(index, index);
    Q_EMIT changed();
    return true;
}

Qt::ItemFlags Markers::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
    return index.column() == Note ? usual | Qt::ItemIsEditable : usual;
}

QVariant Markers::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return section == Time ? tr("Time") : tr("Note");
}

} // namespace cnet::view
