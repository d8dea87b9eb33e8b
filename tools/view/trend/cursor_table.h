#pragma once

#include "view/trend/traces/trace_set.h"
#include "view/trend/traces/trend_marks.h"

#include <QAbstractTableModel>

#include <array>

namespace cnet::view {

/**
 * What each trace is at the cursors, and between them. The mean is that of the time: a value counts
 * for as long as it holds. What is not known counts for nothing.
 */
class CursorTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, AtA, AtB, Difference, Least, Greatest, Mean, kColumns };

    /** @param traces, cursors must outlive this */
    CursorTable(const TraceSet &traces, const Cursors &cursors, QObject *parent = nullptr);

    /** Works it out anew. @param liveMs values hold to here */
    void refresh(qint64 liveMs);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    /** Known sums are gone on with: only what cursors were moved over is added or taken off. */
    struct Sum
    {
        std::shared_ptr<const TraceStore> store;
        qint64 fromMs = 0;
        qint64 toMs = 0;
        double values = 0; ///< times milliseconds
        double ms = 0;     ///< for which the value is known
    };
    struct Row
    {
        QString name;
        int decimals = 0;
        std::array<double, kColumns> numbers{}; ///< NaN: nothing is known
        Sum sum;
    };

    static double meanOf(const std::shared_ptr<TraceStore> &own, qint64 fromMs, qint64 toMs,
                         Sum &sum);
    void work(Row &row, const Trace &trace, qint64 liveMs) const;

    const TraceSet &m_traces;
    const Cursors &m_cursors;
    std::vector<Row> m_rows;
};

} // namespace cnet::view
