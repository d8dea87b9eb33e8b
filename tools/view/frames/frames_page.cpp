#include "view/frames/frames_page.h"

#include "view/frames/trace/frame_words.h"

#include "host/decode/frame_text.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QJsonArray>
#include <QSplitter>
#include <QVBoxLayout>

#include <cmath>

namespace cnet::view {

namespace {

QLatin1String filterKey()
{
    return QLatin1String("filter");
}

QLatin1String columnsKey()
{
    return QLatin1String("columns");
}

} // namespace

FramesPage::FramesPage(Line &line, QWidget *parent)
    : Page(parent)
    , m_recorder(line, m_live)
{
    m_filter.setFrames(&m_live);
    makeActions();
    arrange();
    wire();
    m_live.setLook(palette());
    m_opened.setLook(palette());
    showStatus();
    showFrame();
}

// The table goes after the models that it shows, and must not notice. What is being saved still is.
FramesPage::~FramesPage()
{
    blockSignals(true);
    endSaving();
    m_table->disconnect(this);
    m_table->setModel(nullptr);
}

QString FramesPage::title() const
{
    return tr("&Frames");
}

QAction *FramesPage::makeAction(const QString &text, const QString &hint, const QKeySequence &keys)
{
    auto *const action = new QAction(text, this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(
        QString::fromLatin1("%1 (%2)").arg(hint, keys.toString(QKeySequence::NativeText)));
    addAction(action);
    return action;
}

void FramesPage::makeActions()
{
    m_pause = makeAction(tr("Pause"), tr("Hold the table; frames go on being recorded"),
                         QKeySequence(tr("Ctrl+P")));
    m_pause->setCheckable(true);
    m_follow = makeAction(tr("Follow"), tr("Stay at the last frame"), QKeySequence(tr("Ctrl+End")));
    m_follow->setCheckable(true);
    m_follow->setChecked(true);
    m_clear = makeAction(tr("Clear"), tr("Empty the table"), QKeySequence(tr("Ctrl+L")));
    m_copy = makeAction(tr("Copy"), tr("Copy the selected rows as text"),
                        QKeySequence(QKeySequence::Copy));
    m_partner = makeAction(tr("Request/answer"), tr("Go from a request to its answer, or back"),
                           QKeySequence(tr("Ctrl+J")));
    m_find = makeAction(tr("Find"), tr("Go to the text to find"), QKeySequence(QKeySequence::Find));
    m_save = makeAction(tr("Save capture..."), tr("Save the frames as a pcapng file"),
                        QKeySequence(tr("Ctrl+E")));
    m_open = makeAction(tr("Open capture..."), tr("Show a pcapng file"),
                        QKeySequence(tr("Ctrl+Shift+E")));
    m_back = makeAction(tr("Live"), tr("Back to the frames of the line"),
                        QKeySequence(tr("Ctrl+Shift+L")));
    m_back->setEnabled(false);
}

void FramesPage::arrange()
{
    m_captureBar = new CaptureBar(*m_back, this);
    m_filterBar = new FilterBar;
    m_table = new FrameTable(m_filter);
    m_detail = new FrameDetail;
    m_status = new QLabel;
    m_status->setTextFormat(Qt::PlainText);
    m_status->setAccessibleName(tr("Count of frames"));
    auto *const buttons = new QHBoxLayout;
    for (QAction *const action : {m_pause, m_follow, m_clear, m_copy, m_partner, m_save, m_open}) {
        auto *const button = new QToolButton;
        button->setDefaultAction(action);
        button->setFocusPolicy(Qt::TabFocus);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    buttons->addWidget(m_status);
    auto *const split = new QSplitter(Qt::Vertical);
    split->addWidget(m_table);
    split->addWidget(m_detail);
    split->setChildrenCollapsible(false);
    const int tablePart = 2;
    split->setStretchFactor(0, tablePart);
    split->setStretchFactor(1, 1);
    const int line = fontMetrics().height();
    split->setSizes({line * tablePart * 10, line * 10});
    auto *const rows = new QVBoxLayout(this);
    rows->addWidget(m_captureBar);
    rows->addLayout(buttons);
    rows->addWidget(m_filterBar);
    rows->addWidget(split, 1);
    setFocusProxy(m_table);
}

void FramesPage::wire()
{
    connect(m_pause, &QAction::toggled, this, &FramesPage::setPaused);
    connect(m_follow, &QAction::triggered, this, [this] {
        m_table->setFollows(true);
        m_follow->setChecked(true); // who wants to stay elsewhere scrolls there
    });
    connect(m_table, &FrameTable::followsChanged, m_follow, &QAction::setChecked);
    connect(m_clear, &QAction::triggered, this, &FramesPage::clearFrames);
    connect(m_copy, &QAction::triggered, this, &FramesPage::copySelected);
    connect(m_partner, &QAction::triggered, this, &FramesPage::showPartner);
    connect(m_find, &QAction::triggered, this, [this] {
        m_filterBar->text().setFocus(Qt::ShortcutFocusReason);
        m_filterBar->text().selectAll();
    });
    connect(m_save, &QAction::triggered, this, &FramesPage::askWhereToSave);
    connect(m_open, &QAction::triggered, this, &FramesPage::askWhatToOpen);
    connect(&m_saveTurn, &QTimer::timeout, this, &FramesPage::saveMore);
    connect(m_back, &QAction::triggered, this, &FramesPage::showLive);
    connect(m_captureBar, &CaptureBar::lineChosen, this, &FramesPage::showLine);
    connect(m_table, &FrameTable::currentMoved, this, &FramesPage::showFrame);
    connect(m_table, &FrameTable::widthsChanged, this, &FramesPage::changed);
    connect(m_filterBar, &FilterBar::queryChanged, this, [this] {
        m_filter.setQuery(m_filterBar->query());
        showStatus();
        Q_EMIT changed();
    });
    connect(&m_filter, &FrameFilter::shown, this, &FramesPage::showStatus);
    connect(&m_recorder, &LineRecorder::counted, this, &FramesPage::showStatus);
}

QJsonObject FramesPage::saved() const
{
    QJsonArray columns;
    for (const double width : m_table->widths()) {
        columns.append(std::round(width * 10) / 10);
    }
    return {{filterKey(), m_filterBar->saved()}, {columnsKey(), columns}};
}

void FramesPage::restore(const QJsonObject &state)
{
    m_filterBar->restore(state.value(filterKey()).toObject());
    QVector<double> widths;
    const QJsonArray columns = state.value(columnsKey()).toArray();
    for (const auto &width : columns) {
        widths << width.toDouble();
    }
    m_table->setWidths(widths);
}

void FramesPage::setPaused(bool paused)
{
    m_pause->setChecked(paused);
    if (m_recorder.isPaused() != paused) {
        m_recorder.setPaused(paused);
    }
}

void FramesPage::clearFrames()
{
    if (isLive()) {
        m_recorder.clear();
        m_detail->clear();
    }
}

void FramesPage::choose(FrameModel &model)
{
    m_filter.setFrames(&model);
    const bool live = isLive();
    m_pause->setEnabled(live);
    m_clear->setEnabled(live);
    m_detail->clear();
    showStatus();
}

// What was shown last stays there once its row has left the table.
void FramesPage::showFrame()
{
    const qint64 number = m_table->currentNumber();
    const FrameRow *const row = shown().log().find(number);
    if (row == nullptr) {
        return;
    }
    shown().mark(row->request);
    m_detail->setFrame(headline(*row, number), shown().log().decode(number, Detail::Fields));
}

QString FramesPage::headline(const FrameRow &row, qint64 number) const
{
    QStringList parts{timeWords(row),     wayWords(row),           kindWords(row.kind),
                      responseWords(row), shown().meaning(number), resultWords(row)};
    if (row.faults == FrameFaults() && row.note != shown().meaning(number)) {
        parts << row.note;
    }
    parts.removeAll(QString());
    return parts.join(QLatin1String("  |  "));
}

void FramesPage::showPartner()
{
    const qint64 number = m_table->currentNumber();
    const FrameRow *const row = shown().log().find(number);
    if (row == nullptr) {
        Q_EMIT told(tr("Select a frame first."));
        return;
    }
    if (!m_table->goTo(row->request == number ? row->answer : row->request)) {
        Q_EMIT told(row->request == number ? tr("Its answer is not here.")
                                           : tr("Its request is not here any more."));
    }
}

void FramesPage::showStatus()
{
    const FrameLog &log = shown().log();
    QString text;
    if (isLive()) {
        text = tr("%n exchanges", "", static_cast<int>(m_recorder.total()));
        text += QLatin1String(", ") + tr("%n faults", "", static_cast<int>(m_recorder.faulty()));
    } else {
        text = tr("%n exchanges", "", log.exchanges());
    }
    if (!m_filter.query().isAll()) {
        text += QLatin1String(", ") +
                tr("%1 of %2 rows shown").arg(m_filter.rowCount()).arg(log.size());
    }
    if (isLive() && m_recorder.isPaused()) {
        text += QLatin1String(", ") + tr("paused: %n more wait", "", m_recorder.waiting());
    }
    m_status->setText(text);
}

void FramesPage::copySelected()
{
    const QString text = m_table->selectedText();
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

void FramesPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        m_live.setLook(palette());
        m_opened.setLook(palette());
    }
}

} // namespace cnet::view
