#include "view/simulator/simulator_page.h"

#include "view/look/scrolling.h"
#include "view/simulator/action_table.h"
#include "view/simulator/fault_form.h"
#include "view/simulator/motion_form.h"
#include "view/simulator/value_form.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

namespace cnet::view {

namespace {

constexpr int kLookMs = 1000;

} // namespace

SimulatorPage::SimulatorPage(Line &line, QWidget *parent)
    : Page(parent)
    , m_simulator(line)
    , m_stack(new QStackedWidget)
    , m_away(new QLabel)
    , m_station(new QComboBox)
    , m_value(new ValueForm(m_simulator))
    , m_motion(new MotionForm(m_simulator))
    , m_fault(new FaultForm(m_simulator))
    , m_model(new ActionTable(this))
    , m_table(new QTableView)
    , m_remove(new QPushButton(tr("S&witch this off")))
    , m_allOff(new QPushButton(tr("A&ll off")))
{
    m_away->setWordWrap(true);
    m_away->setAlignment(Qt::AlignCenter);
    m_away->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_stack->addWidget(m_away);
    m_stack->addWidget(scrolling(makeControls()));
    auto *all = new QVBoxLayout(this);
    all->addWidget(m_stack);
    setFocusProxy(m_station);
    wire();
    m_each.start(kLookMs);
    showPlc();
}

QWidget *SimulatorPage::makeControls()
{
    auto *words = new QLabel(
        tr("The simulated press line inside the program. The press goes on computing its own "
           "values, so what you set there may not stay; a motion has the last word."));
    words->setWordWrap(true);
    auto *station = new QLabel(tr("S&tation:"));
    station->setBuddy(m_station);
    m_station->setAccessibleName(tr("Station that is meant"));
    m_station->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto *top = new QHBoxLayout;
    top->addWidget(station);
    top->addWidget(m_station);
    top->addWidget(words, 1);
    auto *page = new QWidget;
    auto *grid = new QGridLayout(page);
    grid->addLayout(top, 0, 0, 1, 2);
    grid->addWidget(m_value, 1, 0);
    grid->addWidget(m_motion, 2, 0);
    grid->addWidget(m_fault, 1, 1, 2, 1);
    grid->addWidget(makeActions(), 3, 0, 1, 2);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 3);
    grid->setRowStretch(3, 1);
    return page;
}

QWidget *SimulatorPage::makeActions()
{
    m_table->setModel(m_model);
    m_table->setAccessibleName(tr("Motions and faults that are on"));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setTabKeyNavigation(false);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setHighlightSections(false);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(m_remove);
    buttons->addWidget(m_allOff);
    buttons->addStretch(1);
    auto *box = new QWidget;
    auto *row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_table, 1);
    row->addLayout(buttons);
    return box;
}

void SimulatorPage::wire()
{
    auto *removeAction = new QAction(tr("Switch this off"), this);
    removeAction->setShortcut(QKeySequence::Delete);
    removeAction->setShortcutContext(Qt::WidgetShortcut);
    m_table->addAction(removeAction);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(removeAction, &QAction::triggered, this, &SimulatorPage::removeSelected);
    connect(m_remove, &QPushButton::clicked, this, &SimulatorPage::removeSelected);
    connect(m_allOff, &QPushButton::clicked, &m_simulator, &Simulator::allOff);
    connect(m_station, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &SimulatorPage::refresh);
    connect(m_value, &ValueForm::told, this, &SimulatorPage::told);
    connect(m_motion, &MotionForm::told, this, &SimulatorPage::told);
    connect(m_fault, &FaultForm::told, this, &SimulatorPage::told);
    connect(&m_simulator, &Simulator::plcChanged, this, &SimulatorPage::showPlc);
    connect(&m_simulator, &Simulator::actionsChanged, this, &SimulatorPage::refresh);
    connect(&m_simulator, &Simulator::actionsChanged, this, &SimulatorPage::changed);
    connect(&m_each, &QTimer::timeout, this, [this] {
        if (isVisible()) {
            refresh();
        }
    });
}

void SimulatorPage::showPlc()
{
    m_away->setText(m_simulator.isRealPlc()
                        ? tr("This line goes to a real PLC: nothing is simulated.\nConnect to the "
                             "simulator to try here what trouble looks like.")
                        : tr("Not connected.\nConnect to the simulator to try here what trouble "
                             "looks like."));
    m_stack->setCurrentIndex(m_simulator.isThere() ? 1 : 0);
    {
        const QSignalBlocker quiet(m_station);
        m_station->clear();
        const auto stations = m_simulator.stations();
        for (const int station : stations) {
            m_station->addItem(QString::number(station), station);
        }
        if (stations.size() > 1) {
            m_station->addItem(tr("all"), Simulator::kAllStations);
        }
    }
    refresh();
}

void SimulatorPage::refresh()
{
    const QVariant chosen = m_station->currentData();
    const int station = chosen.isValid() ? chosen.toInt() : Simulator::kAllStations;
    m_value->setStation(station);
    m_motion->setStation(station);
    m_fault->setStation(station);
    m_model->setActions(m_simulator.actions());
    m_remove->setEnabled(m_model->rowCount() > 0);
    m_allOff->setEnabled(m_model->rowCount() > 0);
}

void SimulatorPage::removeSelected()
{
    QVector<SimulatorAction> gone;
    const auto rows = m_table->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        gone.append(m_model->actions().at(row.row()));
    }
    for (const SimulatorAction &action : gone) {
        m_simulator.remove(action);
    }
}

void SimulatorPage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    refresh();
}

QJsonObject SimulatorPage::saved() const
{
    return m_simulator.saved();
}

void SimulatorPage::restore(const QJsonObject &state)
{
    m_simulator.restore(state);
}

} // namespace cnet::view
