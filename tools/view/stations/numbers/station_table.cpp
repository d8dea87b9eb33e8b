#include "view/stations/numbers/station_table.h"

#include "view/look/quality_look.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHash>
#include <QIcon>
#include <QLocale>

#include <algorithm>

namespace cnet::view {

namespace {

/** The sign of a quality that says the same. */
Quality signOf(StationState state)
{
    switch (state) {
    case StationState::Answers:
        return Quality::Good;
    case StationState::Refuses:
        return Quality::Implausible;
    case StationState::Disturbed:
    case StationState::Away:
        return Quality::NoAnswer;
    case StationState::Unknown:
        break;
    }
    return Quality::NeverRead;
}

QString msText(const ResponseHistogram &times, double ms)
{
    return times.count() > 0 ? QLocale().toString(ms, 'f', 1) : QString();
}

QHash<int, int> refusedByStation(const BlockBook &blocks)
{
    QHash<int, int> result;
    const auto &all = blocks.all();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        result[it.key().station] += it.value().refusals > 0 ? 1 : 0;
    }
    return result;
}

} // namespace

QString stateWords(StationState state)
{
    switch (state) {
    case StationState::Answers:
        return QCoreApplication::translate("StationState", "answers");
    case StationState::Refuses:
        return QCoreApplication::translate("StationState", "refuses");
    case StationState::Disturbed:
        return QCoreApplication::translate("StationState", "answers are not usable");
    case StationState::Away:
        return QCoreApplication::translate("StationState", "does not answer");
    case StationState::Unknown:
        break;
    }
    return QCoreApplication::translate("StationState", "not known");
}

void StationTable::take(const Statistics &statistics, qint64 nowMs)
{
    const auto &stations = statistics.stations();
    makeRows(stations);
    const QHash<int, int> refused = refusedByStation(statistics.blocks());
    for (Row &row : m_rows) {
        row.counters = stations.value(row.station);
        row.refusedAddresses = refused.value(row.station);
        row.rate.note(nowMs, row.counters.frames);
    }
    if (!m_rows.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, Columns - 1));
    }
}

void StationTable::makeRows(const QMap<int, StationCounters> &stations)
{
    for (int i = rowCount() - 1; i >= 0; --i) {
        if (!stations.contains(m_rows.at(i).station)) {
            beginRemoveRows(QModelIndex(), i, i);
            m_rows.remove(i);
            endRemoveRows();
        }
    }
    int place = 0;
    for (auto it = stations.cbegin(); it != stations.cend(); ++it, ++place) {
        if (place < m_rows.size() && m_rows.at(place).station == it.key()) {
            continue;
        }
        beginInsertRows(QModelIndex(), place, place);
        Row row;
        row.station = it.key();
        m_rows.insert(place, row);
        endInsertRows();
    }
}

void StationTable::forgetStates()
{
    for (Row &row : m_rows) {
        row.counters.state = StationState::Unknown;
        row.rate = RequestRate();
    }
    if (!m_rows.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, Columns - 1));
    }
}

void StationTable::clear()
{
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

int StationTable::stationAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows.at(row).station : -1;
}

int StationTable::rowOf(int station) const
{
    const auto it = std::find_if(m_rows.begin(), m_rows.end(),
                                 [station](const Row &row) { return row.station == station; });
    return it == m_rows.end() ? -1 : static_cast<int>(it - m_rows.begin());
}

const StationCounters *StationTable::countersAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? &m_rows.at(row).counters : nullptr;
}

int StationTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int StationTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QString StationTable::text(const Row &row, int column)
{
    const StationCounters &counters = row.counters;
    const QLocale locale;
    switch (column) {
    case Station:
        return locale.toString(row.station);
    case State:
        return stateWords(counters.state);
    case Requests:
        return locale.toString(counters.frames);
    case PerSecond: {
        const auto rate = row.rate.perSecond();
        return rate ? locale.toString(*rate, 'f', 1) : QString();
    }
    case NoAnswer:
        return locale.toString(counters.timeouts);
    case WrongChecks:
        return locale.toString(counters.badChecks);
    case OtherBad:
        return locale.toString(counters.bad - counters.badChecks);
    case Refusals:
        return locale.toString(counters.refusals);
    case RefusedAddresses:
        return locale.toString(row.refusedAddresses);
    case Late:
        return locale.toString(counters.late);
    case Repeated:
        return locale.toString(counters.retries);
    case Median:
        return msText(counters.times, counters.times.percentileMs(50));
    case P95:
        return msText(counters.times, counters.times.percentileMs(95));
    case Longest:
        return msText(counters.times, counters.times.maxMs());
    default:
        return QString();
    }
}

QVariant StationTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::DecorationRole:
        return index.column() == State
                   ? qualityIcon(signOf(row.counters.state), QGuiApplication::palette())
                   : QVariant();
    case Qt::ToolTipRole:
        return index.column() == State && row.counters.state == StationState::Refuses
                   ? QVariant(row.counters.lastRefusal)
                   : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant(int(index.column() == State ? Qt::AlignLeft | Qt::AlignVCenter
                                                    : Qt::AlignRight | Qt::AlignVCenter));
    default:
        return QVariant();
    }
}

QVariant StationTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= Columns) {
        return QVariant();
    }
    const QString names[Columns] = {tr("Station"),
                                    tr("State"),
                                    tr("Requests"),
                                    tr("Per\nsecond"),
                                    tr("No\nanswer"),
                                    tr("Wrong\nchecks"),
                                    tr("Other bad\nanswers"),
                                    tr("Refusals"),
                                    tr("Refused\naddresses"),
                                    tr("Late\nanswers"),
                                    tr("Repeated"),
                                    tr("Median,\nms"),
                                    tr("95 %,\nms"),
                                    tr("Longest,\nms")};
    const QString meanings[Columns] = {
        tr("Its number on the line"),
        tr("How its last request ended"),
        tr("Requests sent to it, repetitions included"),
        tr("Requests a second, over the last five seconds"),
        tr("Requests to which nothing came in time"),
        tr("Answers that were damaged on the way: their block check was wrong"),
        tr("Answers that were cut short, too long, or of another station or request"),
        tr("Requests that it refused with an error code"),
        tr("Blocks of addresses of which requests were refused"),
        tr("Answers that came after their time-out, and were not used"),
        tr("Requests that were sent again"),
        tr("Half of the answers took no longer"),
        tr("95 of 100 answers took no longer"),
        tr("The slowest answer")};
    if (role == Qt::DisplayRole) {
        return names[section];
    }
    return role == Qt::ToolTipRole ? QVariant(meanings[section]) : QVariant();
}

} // namespace cnet::view
