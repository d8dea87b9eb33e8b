#include "view/stations/numbers/station_details.h"

#include "view/stations/numbers/station_table.h"
#include "view/stations/numbers/trouble_lists.h"
#include "view/stations/pictures/histogram_view.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>

namespace cnet::view {

namespace {

/** @param wide the column that gets what room there is */
QTreeWidget *makeList(const QStringList &columns, int wide, const QString &name)
{
    auto *list = new QTreeWidget;
    list->setHeaderLabels(columns);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAccessibleName(name);
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(wide, QHeaderView::Stretch);
    return list;
}

/** In place, so that what is selected stays so. */
void setRows(QTreeWidget *list, const QVector<QStringList> &rows)
{
    while (list->topLevelItemCount() > rows.size()) {
        delete list->takeTopLevelItem(list->topLevelItemCount() - 1);
    }
    for (int row = 0; row < rows.size(); ++row) {
        if (row == list->topLevelItemCount()) {
            list->addTopLevelItem(new QTreeWidgetItem);
        }
        QTreeWidgetItem *item = list->topLevelItem(row);
        const QStringList &texts = rows.at(row);
        for (int column = 0; column < texts.size(); ++column) {
            if (item->text(column) != texts.at(column)) {
                item->setText(column, texts.at(column));
                item->setToolTip(column, texts.at(column));
            }
        }
    }
}

QLabel *labelFor(const QString &text, QWidget *buddy)
{
    auto *label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

} // namespace

StationDetails::StationDetails(QWidget *parent)
    : QWidget(parent)
    , m_title(new QLabel)
    , m_figures(new QLabel)
    , m_histogram(new HistogramView)
    , m_troubles(makeList({tr("What"), tr("Times")}, 0, tr("What went wrong, by kind")))
    , m_refused(makeList({tr("Addresses"), tr("Reason"), tr("Times")}, 1, tr("Refused addresses")))
{
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_title->setTextFormat(Qt::PlainText);
    m_figures->setWordWrap(true);
    m_figures->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_figures->setAccessibleName(tr("Response times in words"));
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(m_title, 0, 0, 1, 3);
    grid->addWidget(new QLabel(tr("Response times (dashed: median and 95 %)")), 1, 0);
    grid->addWidget(labelFor(tr("What went &wrong:"), m_troubles), 1, 1);
    grid->addWidget(labelFor(tr("Refused &addresses:"), m_refused), 1, 2);
    grid->addWidget(m_histogram, 2, 0);
    grid->addWidget(m_troubles, 2, 1, 2, 1);
    grid->addWidget(m_refused, 2, 2, 2, 1);
    grid->addWidget(m_figures, 3, 0);
    grid->setColumnStretch(0, 4);
    grid->setColumnStretch(1, 3);
    grid->setColumnStretch(2, 3);
    grid->setRowStretch(2, 1);
    clear();
}

void StationDetails::showStation(int station, const StationCounters &counters,
                                 const BlockBook &blocks)
{
    const QString state = stateWords(counters.state);
    m_title->setText(counters.state == StationState::Refuses
                         ? tr("Station %1 %2: %3").arg(station).arg(state, counters.lastRefusal)
                         : tr("Station %1: %2").arg(station).arg(state));
    m_histogram->setTimes(counters.times);
    m_figures->setText(histogramWords(counters.times));
    setRows(m_troubles, troubleRows(counters));
    setRows(m_refused, refusedRows(blocks, station));
}

void StationDetails::clear()
{
    m_title->setText(tr("No station was asked anything yet."));
    m_histogram->setTimes(ResponseHistogram());
    m_figures->setText(histogramWords(ResponseHistogram()));
    setRows(m_troubles, {});
    setRows(m_refused, {});
}

QString StationDetails::title() const
{
    return m_title->text();
}

} // namespace cnet::view
