#pragma once

#include "view/look/page.h"
#include "view/simulator/simulator.h"

#include <QTimer>

class QComboBox;
class QLabel;
class QPushButton;
class QStackedWidget;
class QTableView;

namespace cnet::view {

class ActionTable;
class FaultForm;
class MotionForm;
class ValueForm;

/** The simulated PLC from its other side: values, motions, and trouble to learn from. */
class SimulatorPage : public Page
{
    Q_OBJECT

public:
    /** @param line must outlive this object */
    explicit SimulatorPage(Line &line, QWidget *parent = nullptr);

    QString title() const override { return tr("S&imulator"); }
    QJsonObject saved() const override;
    void restore(const QJsonObject &state) override;

    Simulator &simulator() { return m_simulator; }

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeControls();
    QWidget *makeActions();
    void wire();
    void showPlc();
    void refresh();
    void removeSelected();

    Simulator m_simulator;
    QStackedWidget *m_stack;
    QLabel *m_away; ///< why there is nothing to do here
    QComboBox *m_station;
    ValueForm *m_value;
    MotionForm *m_motion;
    FaultForm *m_fault;
    ActionTable *m_model;
    QTableView *m_table;
    QPushButton *m_remove;
    QPushButton *m_allOff;
    QTimer m_each;
};

} // namespace cnet::view
