#include "view/trend/trend_page.h"

#include "view/look/wrap_bar.h"
#include "view/trend/side_panel.h"
#include "view/trend/trend_actions.h"
#include "view/trend/trend_state.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QSpinBox>
#include <QSplitter>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <cmath>

namespace cnet::view {

namespace {

constexpr int kTickMs = 40;  ///< 25 pictures a second
constexpr int kSliceMs = 15; ///< of a tick, for what has to be worked out; all else waits as long
constexpr int kTicksOfText = 6; ///< numbers that change faster cannot be read
constexpr double kZoom = 2;
constexpr int kUsualBound = 100;
constexpr int kGreatestBound = 100000;
const QLatin1String kBound("recordMegabytes");

} // namespace

TrendPage::TrendPage(WatchedTags &tags, QWidget *parent)
    : Page(parent)
    , m_tags(tags)
    , m_collector(tags, m_traces)
    , m_view(m_collector.nowMs())
    , m_cursorTable(m_traces, m_cursors)
    , m_plot(new TrendPlot(m_traces, m_view, m_cursors, m_markers))
    , m_side(new SidePanel(m_traces, m_markers))
    , m_actions(new TrendActions(m_plot))
    , m_menu(new QMenu(this))
    , m_stack(new QStackedWidget)
    , m_bound(new QSpinBox)
{
    m_traces.setPalette(palette());
    build();
    connectActions();
    connectFiles();
    connect(&m_collector, &Collector::sampled, this,
            [this](int trace, qint64 atMs, double value, Quality quality) {
                m_record.add(m_traces.at(trace).choice.name, atMs, value, quality);
                m_plot->touch();
            });
    connect(&m_traces, &TraceSet::rearranged, this, &TrendPage::showState);
    connect(&m_view, &TrendView::changed, this, &TrendPage::showState);
    connect(m_plot, &TrendPlot::currentChanged, this, &TrendPage::showState);
    connect(m_plot, &TrendPlot::timeChosen, this, &TrendPage::editNoteAt);
    connect(m_side, &SidePanel::timeChosen, this, &TrendPage::goTo);
    connect(&m_cursors, &Cursors::changed, this, &TrendPage::showCursors);
    connect(&m_traces, &TraceSet::rearranged, this, &TrendPage::tellChanged);
    connect(&m_view, &TrendView::changed, this, &TrendPage::tellChanged);
    connect(&m_markers, &Markers::changed, this, &TrendPage::tellChanged);
    connect(&m_cursors, &Cursors::changed, this, &TrendPage::tellChanged);
    connect(m_plot, &TrendPlot::partsChanged, this, &TrendPage::tellChanged);
    connect(&m_timer, &QTimer::timeout, this, &TrendPage::refresh);
    m_timer.start(kTickMs);
    showState();
    showCursors();
}

// What is gone first still tells the rest that it goes.
TrendPage::~TrendPage()
{
    m_timer.stop();
    m_record.stop();
    delete m_plot;
    delete m_side;
}

void TrendPage::build()
{
    setAcceptDrops(true);
    auto *bar = new WrapBar;
    bar->setAccessibleName(tr("Trend"));
    m_actions->fill(*bar);
    m_bound->setRange(1, kGreatestBound);
    m_bound->setValue(kUsualBound);
    m_bound->setSuffix(tr(" MB"));
    m_bound->setAccessibleName(tr("Most that a recording takes"));
    m_bound->setToolTip(tr("Of a recording that takes more, the oldest part goes"));
    bar->add(m_bound);
    m_actions->fill(m_menu);
    m_plot->setMenu(m_menu);

    auto *hint = new QLabel(tr("Drag tags from Values here, or press T there."));
    hint->setAlignment(Qt::AlignCenter);
    hint->setWordWrap(true);
    m_stack->addWidget(hint);
    m_stack->addWidget(m_plot);

    m_cursorPanel = makeCursorPanel();
    auto *left = new QSplitter(Qt::Vertical);
    left->addWidget(m_stack);
    left->addWidget(m_cursorPanel);
    left->setStretchFactor(0, 3);
    left->setStretchFactor(1, 1);
    left->setCollapsible(0, false);
    auto *both = new QSplitter(Qt::Horizontal);
    both->addWidget(left);
    both->addWidget(m_side);
    both->setStretchFactor(0, 1);
    both->setCollapsible(0, false);
    const int side = fontMetrics().averageCharWidth() * 60;
    both->setSizes({side * 3, side});
    auto *column = new QVBoxLayout(this);
    column->addWidget(bar);
    column->addWidget(both, 1);
    setFocusProxy(m_plot);
}

QWidget *TrendPage::makeCursorPanel()
{
    auto *table = new QTableView;
    table->setModel(&m_cursorTable);
    table->setAccessibleName(tr("Values at the cursors"));
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->horizontalHeader()->setSectionResizeMode(CursorTable::Name,
                                                    QHeaderView::ResizeToContents);
    m_cursorText = new QLabel;
    m_cursorText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *panel = new QWidget;
    auto *column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_cursorText);
    column->addWidget(table, 1);
    return panel;
}

void TrendPage::connectActions()
{
    const auto on = [this](const QAction *action, auto what) {
        connect(action, &QAction::triggered, this, what);
    };
    on(m_actions->follow, [this] {
        setPaused(false);
        m_view.follow(m_collector.nowMs());
    });
    on(m_actions->pause, [this](bool isOn) { setPaused(isOn); });
    on(m_actions->back, [this] { m_view.back(); });
    const auto zoom = [this](double factor) {
        const Range &time = m_view.sight().time;
        m_view.remember(Gesture::Keys);
        m_view.zoomTime(factor, m_view.isFollowing() ? time.to : (time.from + time.to) / 2);
    };
    on(m_actions->zoomIn, [zoom] { zoom(1 / kZoom); });
    on(m_actions->zoomOut, [zoom] { zoom(kZoom); });
    on(m_actions->all, [this] { m_plot->showAll(); });
    on(m_actions->cursorA, [this] { placeCursor(Cursor::A); });
    on(m_actions->cursorB, [this] { placeCursor(Cursor::B); });
    on(m_actions->noCursors, [this] { m_cursors.hide(); });
    on(m_actions->note, [this] { addNote(); });
    on(m_actions->addPane, [this] { m_view.setPanes(m_view.panes() + 1); });
    on(m_actions->removePane, [this] {
        const int pane = m_plot->current();
        if (m_view.panes() > 1) {
            m_traces.dropPane(pane);
            m_view.removePane(pane);
        }
    });
    const auto scale = [this](Side side, bool isOn) {
        m_view.remember(Gesture::Step);
        m_view.setScaling(m_plot->current(), side, isOn ? Scaling::Auto : Scaling::Fixed);
    };
    on(m_actions->autoLeft, [scale](bool isOn) { scale(Side::Left, isOn); });
    on(m_actions->autoRight, [scale](bool isOn) { scale(Side::Right, isOn); });
}

void TrendPage::showState()
{
    m_stack->setCurrentIndex(m_traces.count() == 0 ? 0 : 1);
    m_actions->follow->setChecked(m_view.isFollowing() && !m_plot->isPaused());
    m_actions->pause->setChecked(m_plot->isPaused());
    m_actions->back->setEnabled(m_view.canGoBack());
    m_actions->addPane->setEnabled(m_view.panes() < TrendView::kMostPanes);
    m_actions->removePane->setEnabled(m_view.panes() > 1);
    const int current = std::min(m_plot->current(), m_view.panes() - 1);
    const PaneScales &scales = m_view.sight().panes[static_cast<size_t>(current)];
    m_actions->autoLeft->setChecked(scales.left.scaling == Scaling::Auto);
    m_actions->autoRight->setChecked(scales.right.scaling == Scaling::Auto);
}

void TrendPage::setPaused(bool isPaused)
{
    if (isPaused != m_plot->isPaused()) {
        m_plot->setPausedAt(isPaused ? std::optional<qint64>(m_collector.nowMs()) : std::nullopt);
    }
    showState();
}

void TrendPage::refresh()
{
    const qint64 nowMs = m_collector.nowMs();
    m_plot->refresh(nowMs, QDeadlineTimer(kSliceMs));
    m_ticks = (m_ticks + 1) % kTicksOfText;
    if (m_ticks == 0 && isVisible()) {
        m_traces.tellValues();
        if (m_cursorPanel->isVisible()) {
            m_cursorTable.refresh(nowMs);
        }
    }
}

QJsonObject TrendPage::saved() const
{
    TrendState state;
    for (int i = 0; i < m_traces.count(); ++i) {
        state.traces.push_back(m_traces.at(i).choice);
    }
    state.markers = m_markers.all();
    state.sight = m_view.sight();
    state.parts = m_plot->parts();
    state.cursors = {m_cursors.at(Cursor::A), m_cursors.at(Cursor::B)};
    QJsonObject object = trendJson(state);
    object.insert(kBound, recordBound());
    return object;
}

void TrendPage::restore(const QJsonObject &object)
{
    m_isRestoring = true;
    TrendState state = trendState(object);
    m_traces.clear();
    m_markers.clear();
    m_cursors.hide();
    setPaused(false);
    const auto now = static_cast<double>(m_collector.nowMs());
    state.sight.time = {now - state.sight.time.length(), now};
    m_view.restore(state.sight);
    for (const TraceChoice &trace : state.traces) {
        m_traces.add(trace, m_collector.kindOf(trace.name));
    }
    for (const Marker &marker : state.markers) {
        m_markers.add(marker);
    }
    m_plot->setParts(state.parts);
    for (const Cursor cursor : {Cursor::A, Cursor::B}) {
        if (const auto atMs = state.cursors.at(cursor == Cursor::A ? 0 : 1)) {
            m_cursors.place(cursor, *atMs);
        }
    }
    m_cursors.setActive(std::nullopt);
    setRecordBound(object.value(kBound).toInt(kUsualBound));
    m_isRestoring = false;
}

void TrendPage::tellChanged()
{
    if (!m_isRestoring) {
        Q_EMIT changed();
    }
}

int TrendPage::recordBound() const
{
    return m_bound->value();
}

void TrendPage::setRecordBound(int megabytes)
{
    m_bound->setValue(megabytes);
}

void TrendPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        m_traces.setPalette(palette());
    }
}

} // namespace cnet::view
