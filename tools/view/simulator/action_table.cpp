#include "view/simulator/action_table.h"

#include "view/simulator/fault_words.h"
#include "view/simulator/motion_form.h"

#include <QCoreApplication>

namespace cnet::view {

namespace {

class Words
{
    Q_DECLARE_TR_FUNCTIONS(ActionWords)
};

QString motionWords(const plc::Motion &motion)
{
    const QString range = plc::rangeText({Simulator::kAllStations, motion.first, motion.count});
    const QString text = Words::tr("%1: %2 from %3 to %4")
                             .arg(range, motionName(motion.kind))
                             .arg(motion.low)
                             .arg(motion.high);
    return motion.kind == plc::MotionKind::Sine
               ? Words::tr("%1, a turn in %2 ms").arg(text).arg(motion.stepMs)
               : Words::tr("%1, a step every %2 ms").arg(text).arg(motion.stepMs);
}

} // namespace

QString actionWords(const SimulatorAction &action)
{
    return action.kind == SimulatorAction::Kind::Motion ? motionWords(action.motion)
                                                        : faultInWords(action.fault);
}

// In place as far as it goes, so that the row that somebody is about to remove stays selected.
void ActionTable::setActions(const QVector<SimulatorAction> &actions)
{
    const int before = rowCount();
    const int now = static_cast<int>(actions.size());
    if (now < before) {
        beginRemoveRows(QModelIndex(), now, before - 1);
        m_actions.resize(now);
        endRemoveRows();
    } else if (now > before) {
        beginInsertRows(QModelIndex(), before, now - 1);
        m_actions = actions;
        endInsertRows();
    }
    m_actions = actions;
    if (now > 0) {
        Q_EMIT dataChanged(index(0, 0), index(now - 1, Columns - 1));
    }
}

int ActionTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_actions.size());
}

int ActionTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QVariant ActionTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) ||
        role != Qt::DisplayRole) {
        return QVariant();
    }
    const SimulatorAction &action = m_actions.at(index.row());
    switch (index.column()) {
    case Station:
        return QString::number(action.station);
    case Kind:
        return action.kind == SimulatorAction::Kind::Motion ? tr("Motion") : tr("Fault");
    case What:
        return actionWords(action);
    default:
        return QVariant();
    }
}

QVariant ActionTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= Columns) {
        return QVariant();
    }
    const QString names[Columns] = {tr("Station"), tr("Kind"), tr("What is on")};
    return names[section];
}

} // namespace cnet::view
