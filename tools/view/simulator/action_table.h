#pragma once

#include "view/simulator/simulator.h"

#include <QAbstractTableModel>

namespace cnet::view {

/** The motions and faults that are on. */
class ActionTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Station, Kind, What, Columns };

    using QAbstractTableModel::QAbstractTableModel;

    void setActions(const QVector<SimulatorAction> &actions);
    const QVector<SimulatorAction> &actions() const { return m_actions; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QVector<SimulatorAction> m_actions;
};

/** What is on, without its station: "D_W:100-119: ramp from 0 to 9999, each 1000 ms". */
QString actionWords(const SimulatorAction &action);

} // namespace cnet::view
