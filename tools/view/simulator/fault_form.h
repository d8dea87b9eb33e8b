#pragma once

#include "view/simulator/simulator.h"

#include <QGroupBox>
#include <QMap>

class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QSpinBox;

namespace cnet::view {

/** The kinds of faults, to be switched on and off, with what each of them teaches. */
class FaultForm : public QGroupBox
{
    Q_OBJECT

public:
    /** @param simulator must outlive this object */
    explicit FaultForm(Simulator &simulator, QWidget *parent = nullptr);

    /** @param station Simulator::kAllStations or one */
    void setStation(int station);

    /** Shows which kinds are on. */
    void refresh();

Q_SIGNALS:
    void told(const QString &text);

private:
    void makeKinds();
    QLayout *makeChoices();
    plc::FaultKind kind() const;
    QString text(plc::FaultKind kind) const;
    void showKind();
    void check();
    void change();
    void toggle(QListWidgetItem *item);

    Simulator &m_simulator;
    int m_station = Simulator::kAllStations;
    QListWidget *m_kinds; ///< in the order of plc::FaultKind
    QLabel *m_lesson;
    QLabel *m_valueLabel;
    QLineEdit *m_value;
    QLabel *m_limits;
    QSpinBox *m_percent;
    QSpinBox *m_times;
    QLabel *m_outcome;
    QMap<plc::FaultKind, QString> m_values; ///< as typed
};

} // namespace cnet::view
