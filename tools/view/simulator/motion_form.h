#pragma once

#include "view/simulator/simulator.h"

#include <QGroupBox>

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace cnet::view {

/** Lets values of the simulated PLC move. */
class MotionForm : public QGroupBox
{
    Q_OBJECT

public:
    /** @param simulator must outlive this object */
    explicit MotionForm(Simulator &simulator, QWidget *parent = nullptr);

    /** @param station Simulator::kAllStations or one */
    void setStation(int station) { m_station = station; }

Q_SIGNALS:
    void told(const QString &text);

private:
    void makeRows(QFormLayout *form);
    plc::MotionKind kind() const;
    QString text() const;
    void showKind();
    void check();
    void start();

    Simulator &m_simulator;
    int m_station = Simulator::kAllStations;
    QComboBox *m_kind;
    QLabel *m_meaning;
    QComboBox *m_register;
    QLineEdit *m_addresses;
    QLineEdit *m_low;
    QLineEdit *m_high;
    QLineEdit *m_increment; ///< of a counter
    QLineEdit *m_ms;
    QLabel *m_outcome;
    QPushButton *m_start;
};

/** "Ramp" */
QString motionName(plc::MotionKind kind);

} // namespace cnet::view
