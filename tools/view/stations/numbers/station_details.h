#pragma once

#include "host/statistics/statistics.h"

#include <QWidget>

class QLabel;
class QTreeWidget;

namespace cnet::view {

class HistogramView;

/** One station closely: its response times, what it refused, and what went wrong with it. */
class StationDetails : public QWidget
{
    Q_OBJECT

public:
    explicit StationDetails(QWidget *parent = nullptr);

    void showStation(int station, const StationCounters &counters, const BlockBook &blocks);

    /** No station. */
    void clear();

    QString title() const;

private:
    QLabel *m_title;
    QLabel *m_figures;
    HistogramView *m_histogram;
    QTreeWidget *m_troubles;
    QTreeWidget *m_refused;
};

} // namespace cnet::view
