#pragma once

#include "host/scan/scan_result.h"

#include <QAbstractTableModel>
#include <QVector>

namespace cnet::view {

/** The stations that a scan has found. */
class ScanTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Station, Settings, Answers, Mean, Worst, Registers, Columns };

    using QAbstractTableModel::QAbstractTableModel;

    /** Shows these; rows that stay keep their place. */
    void setFound(const QVector<FoundStation> &found);
    const QVector<FoundStation> &found() const { return m_found; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QVector<FoundStation> m_found;
};

} // namespace cnet::view
