#include "view/frames/frame_table.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace cnet::view {

namespace {

// Enough for what mostly stands there; in widths of a digit.
constexpr double kFirstWidths[] = {14, 11, 8, 11, 10, 18, 42, 30};
constexpr double kNarrowest = 2;
constexpr double kWidest = 1000;

} // namespace

FrameTable::FrameTable(FrameFilter &filter, QWidget *parent)
    : QTableView(parent)
    , m_filter(filter)
{
    setModel(&filter);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setWordWrap(false);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setAccessibleName(tr("Frames of the line"));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    fitRows();
    setWidths(QVector<double>(std::begin(kFirstWidths), std::end(kFirstWidths)));
    connect(&filter, &QAbstractItemModel::rowsInserted, this, [this] {
        if (m_follows) {
            setFollows(true);
        }
    });
    connect(&filter, &QAbstractItemModel::modelReset, this, [this] { setFollows(m_follows); });
    connect(&filter, &FrameFilter::aboutToShow, this, [this] { m_kept = currentNumber(); });
    connect(&filter, &FrameFilter::shown, this, &FrameTable::goToKept);
    connect(&filter, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex &, int first, int last) { keepPlace(first, last); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &FrameTable::noteScrolled);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &FrameTable::noteWidth);
}

void FrameTable::fitRows()
{
    const int height = fontMetrics().height() + fontMetrics().height() / 4;
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(height);
}

void FrameTable::setFollows(bool follows)
{
    if (follows && isVisible()) { // else showEvent() does it, once
        const QScopedValueRollback<bool> own(m_ownChange, true);
        scrollToBottom();
    }
    if (m_follows != follows) {
        m_follows = follows;
        Q_EMIT followsChanged(follows);
    }
}

void FrameTable::noteScrolled(int value)
{
    if (!m_ownChange) {
        setFollows(value >= verticalScrollBar()->maximum());
    }
}

// The bar counts rows: those that went from above it are no longer there to be counted.
void FrameTable::keepPlace(int first, int last)
{
    const int at = verticalScrollBar()->value();
    if (!m_follows && first < at) {
        const QScopedValueRollback<bool> own(m_ownChange, true);
        verticalScrollBar()->setValue(at - (std::min(last, at - 1) - first + 1));
    }
}

// All rows are new ones for the base class when another filter counts.
void FrameTable::goToKept()
{
    {
        const QScopedValueRollback<bool> own(m_ownChange, true);
        goTo(m_kept);
    }
    setFollows(m_follows);
}

// The base class would go on to the next row, and to the one after that.
void FrameTable::rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end)
{
    const int row = currentIndex().row();
    if (row >= start && row <= end) {
        selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
    }
    QTableView::rowsAboutToBeRemoved(parent, start, end);
}

void FrameTable::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    Q_EMIT currentMoved();
}

qint64 FrameTable::currentNumber() const
{
    const QModelIndex source = m_filter.mapToSource(currentIndex());
    return source.isValid() ? m_filter.frames()->numberAt(source.row()) : -1;
}

bool FrameTable::goTo(qint64 number)
{
    const FrameModel *const frames = m_filter.frames();
    if (frames == nullptr || frames->log().find(number) == nullptr) {
        return false;
    }
    const int row = static_cast<int>(number - frames->log().first());
    const QModelIndex index = m_filter.mapFromSource(frames->index(row, FrameModel::Time));
    if (index.isValid()) {
        setCurrentIndex(index);
        scrollTo(index);
    }
    return index.isValid();
}

QString FrameTable::selectedText() const
{
    QVector<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows()) {
        rows << m_filter.mapToSource(index).row();
    }
    std::sort(rows.begin(), rows.end());
    QString text;
    for (const int row : rows) {
        text += m_filter.frames()->line(row) + QLatin1Char('\n');
    }
    return text;
}

double FrameTable::digit() const
{
    return std::max(1, fontMetrics().horizontalAdvance(QLatin1Char('0')));
}

QVector<double> FrameTable::widths() const
{
    QVector<double> widths;
    for (int column = 0; column < FrameModel::ColumnCount; ++column) {
        widths << columnWidth(column) / digit();
    }
    return widths;
}

void FrameTable::setWidths(const QVector<double> &widths)
{
    if (widths.size() != FrameModel::ColumnCount) {
        return;
    }
    const QScopedValueRollback<bool> own(m_ownChange, true);
    for (int column = 0; column < FrameModel::ColumnCount; ++column) {
        const double width = widths.at(column);
        if (width > 0) {
            setColumnWidth(column,
                           static_cast<int>(std::clamp(width, kNarrowest, kWidest) * digit()));
        }
    }
}

// The last one is as wide as is left, which is nobody's choice.
void FrameTable::noteWidth(int column, int /*before*/, int /*now*/)
{
    if (!m_ownChange && column < FrameModel::ColumnCount - 1) {
        Q_EMIT widthsChanged();
    }
}

void FrameTable::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitRows();
    }
}

void FrameTable::showEvent(QShowEvent *event)
{
    QTableView::showEvent(event);
    setFollows(m_follows);
}

} // namespace cnet::view
