#pragma once

#include "view/stations/scan/line_scan.h"
#include "view/stations/scan/scan_choice.h"

#include <QJsonObject>
#include <QWidget>

class QAction;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QModelIndex;
class QProgressBar;
class QPushButton;
class QTableView;

namespace cnet::view {

class ScanTable;

/** Finds out who is on the line: what to look for, how far it is, and who answered. */
class ScanPanel : public QWidget
{
    Q_OBJECT

public:
    /** @param line must outlive this object */
    explicit ScanPanel(Line &line, QWidget *parent = nullptr);

    LineScan &scan() { return m_scan; }

    QJsonObject saved() const;
    void restore(const QJsonObject &state);

Q_SIGNALS:
    void connectWanted(const cnet::view::Connection &connection);
    /** What saved() gives is different now. */
    void changed();
    void told(const QString &text);
    void troubled(const QString &text, const QString &advice);

private:
    void makeChoices(QGridLayout *grid);
    void makeTable();
    void wire();
    void offerSpeeds();
    void checkChoices();
    void start();
    void showState();
    void tellEnd();
    void showProgress(int done, int total);
    void connectTo(const QModelIndex &index);
    void copy();
    QString stateWords() const;

    Line &m_line;
    LineScan m_scan;
    QVector<SpeedChoice> m_speeds;
    ScanTable *m_model;
    QLineEdit *m_stations;
    QComboBox *m_speed;
    QCheckBox *m_registers;
    QLabel *m_hint; ///< what is wrong with the choices
    QPushButton *m_start;
    QPushButton *m_cancel;
    QPushButton *m_connect;
    QProgressBar *m_progress;
    QLabel *m_status;
    QTableView *m_table;
    LineSettings m_trying;
};

} // namespace cnet::view
