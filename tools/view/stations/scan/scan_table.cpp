#include "view/stations/scan/scan_table.h"

#include "view/stations/scan/scan_choice.h"

#include <QLocale>

namespace cnet::view {

// A scan only ever adds to what it has found, until the next one begins with nothing.
void ScanTable::setFound(const QVector<FoundStation> &found)
{
    if (found.size() < m_found.size()) {
        beginResetModel();
        m_found = found;
        endResetModel();
        return;
    }
    const int kept = rowCount();
    if (found.size() > kept) {
        beginInsertRows(QModelIndex(), kept, static_cast<int>(found.size()) - 1);
        m_found = found;
        endInsertRows();
    } else {
        m_found = found;
    }
    if (kept > 0) {
        Q_EMIT dataChanged(index(0, 0), index(kept - 1, Columns - 1));
    }
}

int ScanTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_found.size());
}

int ScanTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QVariant ScanTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const bool isText = index.column() == Settings || index.column() == Registers;
    if (role == Qt::TextAlignmentRole) {
        return QVariant(
            int(isText ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignRight | Qt::AlignVCenter));
    }
    if (role != Qt::DisplayRole && !(role == Qt::ToolTipRole && isText)) {
        return QVariant();
    }
    const FoundStation &found = m_found.at(index.row());
    const QLocale locale;
    switch (index.column()) {
    case Station:
        return locale.toString(found.station);
    case Settings:
        return found.line.text();
    case Answers:
        return locale.toString(found.answers);
    case Mean:
        return locale.toString(found.meanMs, 'f', 1);
    case Worst:
        return locale.toString(found.worstMs, 'f', 1);
    case Registers:
        return reachWords(found);
    default:
        return QVariant();
    }
}

QVariant ScanTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= Columns) {
        return QVariant();
    }
    const QString names[Columns] = {tr("Station"),  tr("Line settings"), tr("Answers"),
                                    tr("Mean, ms"), tr("Longest, ms"),   tr("Registers")};
    return names[section];
}

} // namespace cnet::view
