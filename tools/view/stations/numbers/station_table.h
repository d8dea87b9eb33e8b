#pragma once

#include "view/stations/numbers/request_rate.h"

#include "host/statistics/statistics.h"

#include <QAbstractTableModel>
#include <QVector>

namespace cnet::view {

/** The stations of a session with what happened to the requests for each, as last taken. */
class StationTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        Station,
        State,
        Requests,
        PerSecond,
        NoAnswer,
        WrongChecks,
        OtherBad,
        Refusals,
        RefusedAddresses,
        Late,
        Repeated,
        Median,
        P95,
        Longest,
        Columns
    };

    using QAbstractTableModel::QAbstractTableModel;

    /** Shows these numbers from now on. @param nowMs on the session's clock */
    void take(const Statistics &statistics, qint64 nowMs);

    /** The line is closed: the numbers stay, and nobody knows how the stations are. */
    void forgetStates();

    void clear();

    /** @return -1 where there is no such row */
    int stationAt(int row) const;
    /** @return -1: it is not shown */
    int rowOf(int station) const;
    /** @return null where there is no such row; valid until the next change */
    const StationCounters *countersAt(int row) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        int station = 0;
        StationCounters counters;
        int refusedAddresses = 0;
        RequestRate rate;
    };

    void makeRows(const QMap<int, StationCounters> &stations);
    static QString text(const Row &row, int column);

    QVector<Row> m_rows; ///< by station
};

/** A station's state in the language of the window. */
QString stateWords(StationState state);

} // namespace cnet::view
