#include "view/stations/stations_page.h"

#include "view/look/scrolling.h"
#include "view/stations/numbers/line_load.h"
#include "view/stations/numbers/station_details.h"
#include "view/stations/numbers/station_table.h"
#include "view/stations/numbers/table_text.h"
#include "view/stations/scan/scan_panel.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

namespace cnet::view {

namespace {

constexpr int kLookMs = 1000;
constexpr qint64 kMsPerSecond = 1000;
constexpr qint64 kSecondsPerMinute = 60;
constexpr qint64 kLongSeconds = 120;

} // namespace

StationsPage::StationsPage(Line &line, QWidget *parent)
    : Page(parent)
    , m_line(line)
    , m_model(new StationTable(this))
    , m_table(new QTableView)
    , m_details(new StationDetails)
    , m_load(new LineLoad)
    , m_since(new QLabel)
    , m_reset(new QPushButton(tr("Count from &0 again")))
    , m_scanPanel(new ScanPanel(line))
    , m_tabs(new QTabWidget)
{
    makeTable();
    m_tabs->setAccessibleName(tr("Parts of the page"));
    m_tabs->tabBar()->setAccessibleName(tr("Parts of the page"));
    m_tabs->addTab(scrolling(makeNumbers()), tr("N&umbers"));
    m_tabs->addTab(scrolling(m_scanPanel), tr("Scan the &line"));
    auto *all = new QVBoxLayout(this);
    all->addWidget(m_tabs);
    setFocusProxy(m_table);
    connect(&line, &Line::sessionBegan, this, &StationsPage::begin);
    connect(&line, &Line::sessionEnding, this, &StationsPage::end);
    connect(m_scanPanel, &ScanPanel::connectWanted, this, &StationsPage::connectWanted);
    connect(m_scanPanel, &ScanPanel::told, this, &StationsPage::told);
    connect(m_scanPanel, &ScanPanel::troubled, this, &StationsPage::troubled);
    connect(m_scanPanel, &ScanPanel::changed, this, &StationsPage::changed);
    connect(&m_each, &QTimer::timeout, this, &StationsPage::look);
    m_each.start(kLookMs);
    refresh();
}

void StationsPage::makeTable()
{
    m_table->setModel(m_model);
    m_table->setAccessibleName(tr("Stations"));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setTabKeyNavigation(false);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *copyAction = new QAction(tr("Copy as table"), this);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setShortcutContext(Qt::WidgetShortcut);
    connect(copyAction, &QAction::triggered, this, &StationsPage::copyTable);
    m_table->addAction(copyAction);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &StationsPage::showSelected);
}

QWidget *StationsPage::makeNumbers()
{
    auto *copyButton = new QPushButton(tr("Cop&y as table"));
    connect(copyButton, &QPushButton::clicked, this, &StationsPage::copyTable);
    connect(m_reset, &QPushButton::clicked, this, &StationsPage::resetNumbers);
    auto *top = new QHBoxLayout;
    top->addWidget(m_since, 1);
    top->addWidget(copyButton);
    top->addWidget(m_reset);
    auto *split = new QSplitter(Qt::Vertical);
    split->addWidget(m_table);
    split->addWidget(m_details);
    split->setChildrenCollapsible(false);
    split->setStretchFactor(0, 2);
    split->setStretchFactor(1, 3);
    auto *page = new QWidget;
    auto *all = new QVBoxLayout(page);
    all->addLayout(top);
    all->addWidget(m_load);
    all->addWidget(split, 1);
    return page;
}

void StationsPage::begin()
{
    m_model->clear();
    m_load->clear();
    refresh();
}

// What was counted last is still worth a look.
void StationsPage::end()
{
    refresh();
    m_lastBlocks = m_line.session()->statistics().blocks();
    m_model->forgetStates();
    m_since->setText(tr("The line is closed; these are the numbers from before."));
    m_reset->setEnabled(false);
}

// The line's history is to have no holes where nobody looked, and takes next to nothing.
void StationsPage::look()
{
    if (m_line.isOpen()) {
        m_load->take(m_line.session()->statistics(), m_line.session()->nowMs());
    } else {
        m_load->takeNothing();
    }
    if (isVisible()) {
        refresh();
    }
}

void StationsPage::refresh()
{
    const Session *session = m_line.session();
    m_reset->setEnabled(session != nullptr);
    if (session == nullptr) {
        if (m_model->rowCount() == 0) {
            m_since->setText(tr("Not connected: nothing is counted."));
        }
        return;
    }
    m_model->take(session->statistics(), session->nowMs());
    m_since->setText(sinceWords());
    if (!m_table->currentIndex().isValid() && m_model->rowCount() > 0) {
        m_table->setCurrentIndex(m_model->index(0, 0));
    }
    showSelected();
}

QString StationsPage::sinceWords() const
{
    const Session *session = m_line.session();
    const qint64 sinceMs = session->statistics().sinceMs();
    const QString line = m_line.connection().text();
    if (sinceMs < 0) {
        return tr("%1: %2").arg(line, m_line.stateText());
    }
    const qint64 seconds = (session->nowMs() - sinceMs) / kMsPerSecond;
    const QString since =
        seconds < kLongSeconds
            ? tr("counted for %n seconds", "", static_cast<int>(seconds))
            : tr("counted for %n minutes", "", static_cast<int>(seconds / kSecondsPerMinute));
    return tr("%1: %2; %3").arg(line, m_line.stateText(), since);
}

void StationsPage::showSelected()
{
    const int row = m_table->currentIndex().row();
    const StationCounters *counters = m_model->countersAt(row);
    if (counters == nullptr) {
        m_details->clear();
    } else {
        m_details->showStation(m_model->stationAt(row), *counters,
                               m_line.session() != nullptr ? m_line.session()->statistics().blocks()
                                                           : m_lastBlocks);
    }
}

void StationsPage::resetNumbers()
{
    if (m_line.session() != nullptr) {
        m_line.session()->resetStatistics();
        refresh();
        Q_EMIT told(tr("The numbers count from 0 again."));
    }
}

void StationsPage::copyTable()
{
    QGuiApplication::clipboard()->setText(tableText(*m_model));
    Q_EMIT told(tr("%n rows were copied.", "", m_model->rowCount()));
}

void StationsPage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    refresh();
}

QJsonObject StationsPage::saved() const
{
    return {{QLatin1String("scan"), m_scanPanel->saved()}};
}

void StationsPage::restore(const QJsonObject &state)
{
    m_scanPanel->restore(state.value(QLatin1String("scan")).toObject());
}

} // namespace cnet::view
