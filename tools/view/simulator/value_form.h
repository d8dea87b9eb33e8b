#pragma once

#include "view/simulator/simulator.h"

#include <QGroupBox>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace cnet::view {

/** Sets values in the simulated PLC. */
class ValueForm : public QGroupBox
{
    Q_OBJECT

public:
    /** @param simulator must outlive this object */
    explicit ValueForm(Simulator &simulator, QWidget *parent = nullptr);

    /** @param station Simulator::kAllStations or one */
    void setStation(int station);

    /** Shows the value that there is now. */
    void refresh();

Q_SIGNALS:
    void told(const QString &text);

private:
    QString point() const;
    QString text() const;
    void check();
    void set();

    Simulator &m_simulator;
    int m_station = Simulator::kAllStations;
    QComboBox *m_register;
    QLineEdit *m_address;
    QLineEdit *m_value;
    QLabel *m_now;
    QLabel *m_outcome;
    QPushButton *m_set;
};

} // namespace cnet::view
