#include "view/stations/scan/scan_panel.h"

#include "view/look/colours.h"
#include "view/stations/numbers/table_text.h"
#include "view/stations/scan/scan_table.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>

#include <utility>

namespace cnet::view {

namespace {

const QLatin1String kAllStations("0-31");

} // namespace

ScanPanel::ScanPanel(Line &line, QWidget *parent)
    : QWidget(parent)
    , m_line(line)
    , m_scan(line)
    , m_model(new ScanTable(this))
    , m_stations(new QLineEdit(QString(kAllStations)))
    , m_speed(new QComboBox)
    , m_registers(new QCheckBox(tr("Find out how far their re&gisters reach, too")))
    , m_hint(new QLabel)
    , m_start(new QPushButton(tr("&Begin the scan")))
    , m_cancel(new QPushButton(tr("Stop the sca&n")))
    , m_connect(new QPushButton(tr("C&onnect to this")))
    , m_progress(new QProgressBar)
    , m_status(new QLabel)
    , m_table(new QTableView)
{
    auto *grid = new QGridLayout(this);
    makeChoices(grid);
    makeTable();
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_start);
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_progress, 4);
    buttons->addStretch(1);
    grid->addLayout(buttons, 4, 0, 1, 2);
    grid->addWidget(m_status, 5, 0, 1, 2);
    grid->addWidget(m_table, 6, 0, 1, 2);
    grid->addWidget(m_connect, 7, 0, 1, 2, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(6, 1);
    m_progress->setAccessibleName(tr("Progress of the scan"));
    m_status->setWordWrap(true);
    m_status->setAccessibleName(tr("State of the scan"));
    wire();
    offerSpeeds();
    showState();
}

void ScanPanel::makeChoices(QGridLayout *grid)
{
    auto *words = new QLabel(
        tr("A scan asks each station number whether somebody is there. It only reads. It needs the "
           "line for itself: the live connection is closed while it runs, and opened again "
           "afterwards as it was."));
    words->setWordWrap(true);
    grid->addWidget(words, 0, 0, 1, 2);
    auto *stations = new QLabel(tr("S&tations:"));
    stations->setBuddy(m_stations);
    m_stations->setAccessibleName(tr("Stations to ask"));
    m_stations->setToolTip(tr("From 0 to 31, for example 1,3,8-15"));
    grid->addWidget(stations, 1, 0);
    auto *row = new QHBoxLayout;
    row->addWidget(m_stations, 1);
    row->addWidget(m_hint, 2);
    grid->addLayout(row, 1, 1);
    auto *speed = new QLabel(tr("S&peed:"));
    speed->setBuddy(m_speed);
    m_speed->setAccessibleName(tr("Line settings to try"));
    m_speed->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    grid->addWidget(speed, 2, 0);
    grid->addWidget(m_speed, 2, 1, Qt::AlignLeft);
    grid->addWidget(m_registers, 3, 1);
}

void ScanPanel::makeTable()
{
    m_table->setModel(m_model);
    m_table->setAccessibleName(tr("Stations that answered the scan"));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setTabKeyNavigation(false);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *copyAction = new QAction(tr("Copy as table"), this);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setShortcutContext(Qt::WidgetShortcut);
    connect(copyAction, &QAction::triggered, this, &ScanPanel::copy);
    m_table->addAction(copyAction);
}

void ScanPanel::wire()
{
    connect(m_start, &QPushButton::clicked, this, &ScanPanel::start);
    connect(m_cancel, &QPushButton::clicked, &m_scan, &LineScan::cancel);
    connect(m_connect, &QPushButton::clicked, this, [this] { connectTo(m_table->currentIndex()); });
    connect(m_table, &QTableView::activated, this, &ScanPanel::connectTo);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &ScanPanel::showState);
    connect(m_stations, &QLineEdit::textChanged, this, &ScanPanel::checkChoices);
    connect(m_stations, &QLineEdit::textChanged, this, &ScanPanel::changed);
    connect(m_registers, &QCheckBox::toggled, this, &ScanPanel::changed);
    connect(&m_line, &Line::sessionBegan, this, &ScanPanel::offerSpeeds);
    connect(&m_scan, &LineScan::stateChanged, this, &ScanPanel::showState);
    connect(&m_scan, &LineScan::stateChanged, this, &ScanPanel::tellEnd);
    connect(&m_scan, &LineScan::progressed, this, &ScanPanel::showProgress);
    connect(&m_scan, &LineScan::foundChanged, this, [this] {
        m_model->setFound(m_scan.found());
        if (!m_table->currentIndex().isValid()) {
            m_table->setCurrentIndex(m_model->index(0, 0));
        }
        showState();
    });
    connect(&m_scan, &LineScan::trying, this, [this](const LineSettings &settings) {
        m_trying = settings;
        showState();
    });
}

void ScanPanel::offerSpeeds()
{
    // Of the same line, what was chosen stays chosen.
    const int chosen = m_speed->currentIndex();
    const auto before = m_speeds.size();
    m_speeds = speedChoices(m_line.connection());
    m_speed->clear();
    for (const SpeedChoice &choice : std::as_const(m_speeds)) {
        m_speed->addItem(choice.name);
    }
    m_speed->setCurrentIndex(before == m_speeds.size() ? chosen : 0);
    m_speed->setToolTip(m_speeds.size() > 1
                            ? QString()
                            : tr("Only the settings of a serial port of this computer can be "
                                 "searched for."));
    checkChoices();
}

void ScanPanel::checkChoices()
{
    const bool good = parseStations(m_stations->text()).has_value();
    QPalette own = palette();
    own.setColor(QPalette::WindowText, toneColour(Tone::Bad, own));
    m_hint->setPalette(own);
    m_hint->setText(good ? QString() : tr("expected stations from 0 to 31, for example 1,3,8-15"));
    m_start->setEnabled(good && !m_scan.isRunning());
    m_cancel->setEnabled(m_scan.isRunning());
    m_stations->setEnabled(!m_scan.isRunning());
    m_registers->setEnabled(!m_scan.isRunning());
    m_speed->setEnabled(m_speeds.size() > 1 && !m_scan.isRunning());
}

void ScanPanel::start()
{
    const auto stations = parseStations(m_stations->text());
    const int speed = m_speed->currentIndex();
    if (!stations || speed < 0 || speed >= m_speeds.size()) {
        return;
    }
    ScanOptions options;
    options.stations = *stations;
    options.settings = m_speeds.at(speed).settings;
    options.timeoutMs = m_line.connection().timeoutMs;
    if (m_registers->isChecked()) {
        options.registers = scannedRegisters(m_line.registers());
    }
    m_progress->setRange(0, 0);
    m_scan.start(options);
}

QString ScanPanel::stateWords() const
{
    const int found = static_cast<int>(m_scan.found().size());
    switch (m_scan.state()) {
    case LineScan::State::Idle:
        return tr("Not scanned yet.");
    case LineScan::State::Running:
        return found > 0
                   ? tr("Scanning with %1; %n stations so far. The live values stand still.", "",
                        found)
                         .arg(m_trying.text())
                   : tr("Scanning with %1. The live values stand still.").arg(m_trying.text());
    case LineScan::State::Complete:
        return found > 0 ? tr("%n stations answered.", "", found)
                         : tr("No station answered. Check the cable, the speed, and that the PLC's "
                              "port is set to its link protocol.");
    case LineScan::State::Cancelled:
        return tr("Stopped; %n stations had answered until then.", "", found);
    case LineScan::State::LineFailed:
        break;
    }
    return tr("The line failed: %1").arg(m_scan.lineError());
}

void ScanPanel::showState()
{
    checkChoices();
    m_status->setText(stateWords());
    m_progress->setVisible(m_scan.isRunning());
    m_connect->setEnabled(m_table->currentIndex().isValid());
}

void ScanPanel::tellEnd()
{
    if (m_scan.state() == LineScan::State::LineFailed) {
        Q_EMIT troubled(stateWords(), tr("Check the connection, and scan again."));
    } else if (!m_scan.isRunning()) {
        Q_EMIT told(stateWords());
    }
}

void ScanPanel::showProgress(int done, int total)
{
    m_progress->setRange(0, total);
    m_progress->setValue(done);
}

void ScanPanel::connectTo(const QModelIndex &index)
{
    if (index.isValid() && index.row() < m_model->found().size()) {
        Q_EMIT connectWanted(m_scan.connectionTo(m_model->found().at(index.row())));
    }
}

void ScanPanel::copy()
{
    QGuiApplication::clipboard()->setText(tableText(*m_model));
    Q_EMIT told(tr("%n rows were copied.", "", m_model->rowCount()));
}

QJsonObject ScanPanel::saved() const
{
    return {{QLatin1String("stations"), m_stations->text()},
            {QLatin1String("registers"), m_registers->isChecked()}};
}

void ScanPanel::restore(const QJsonObject &state)
{
    const QString stations = state.value(QLatin1String("stations")).toString();
    m_stations->setText(parseStations(stations) ? stations : QString(kAllStations));
    m_registers->setChecked(state.value(QLatin1String("registers")).toBool());
}

} // namespace cnet::view
