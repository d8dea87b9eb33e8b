#pragma once

#include "view/connect/line.h"
#include "view/look/page.h"

#include "host/statistics/statistics.h"

#include <QTimer>

class QLabel;
class QPushButton;
class QTableView;
class QTabWidget;

namespace cnet::view {

class LineLoad;
class ScanPanel;
class StationDetails;
class StationTable;

/** How the stations and the line are, in numbers, and a scan for stations. */
class StationsPage : public Page
{
    Q_OBJECT

public:
    /** @param line must outlive this object */
    explicit StationsPage(Line &line, QWidget *parent = nullptr);

    QString title() const override { return tr("&Stations"); }
    QJsonObject saved() const override;
    void restore(const QJsonObject &state) override;

    ScanPanel &scanPanel() { return *m_scanPanel; }

    /** Shows the numbers as they are now; by itself once a second while it is visible. */
    void refresh();
    /** Counts from 0 again. */
    void resetNumbers();
    /** Puts the table of stations on the clipboard. */
    void copyTable();

Q_SIGNALS:
    /** Somebody wants to connect to a station that a scan has found. */
    void connectWanted(const cnet::view::Connection &connection);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void makeTable();
    QWidget *makeNumbers();
    void begin();
    void end();
    void look();
    void showSelected();
    QString sinceWords() const;

    Line &m_line;
    StationTable *m_model;
    QTableView *m_table;
    StationDetails *m_details;
    LineLoad *m_load;
    QLabel *m_since;
    QPushButton *m_reset;
    ScanPanel *m_scanPanel;
    QTabWidget *m_tabs;
    QTimer m_each;
    BlockBook m_lastBlocks; ///< of the session that has ended
};

} // namespace cnet::view
