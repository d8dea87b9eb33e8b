#include "view/values/table/values_view.h"

#include "view/values/table/value_delegate.h"

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QSet>

#include <algorithm>
#include <utility>

namespace cnet::view {

namespace {

constexpr int kAgeingMs = 500;
constexpr int kFadingMs = 60;

/// Characters that a column has room for at first.
int charactersOf(ValueColumn column)
{
    switch (column) {
    case ValueColumn::Name:
        return 28;
    case ValueColumn::Quality:
        return 16;
    case ValueColumn::Value:
    case ValueColumn::Raw:
        return 18;
    case ValueColumn::Write:
        return 22;
    case ValueColumn::Changed:
        return 17;
    case ValueColumn::Age:
        return 9;
    case ValueColumn::Min:
    case ValueColumn::Max:
        return 11;
    case ValueColumn::Description:
        break;
    }
    return 18;
}

} // namespace

ValuesView::ValuesView(ValuesModel &model, ValuesFilter &shown, QWidget *parent)
    : QTableView(parent)
    , m_model(model)
    , m_shown(shown)
{
    setModel(&shown);
    setItemDelegate(new ValueDelegate(model, this));
    setAccessibleName(tr("Values"));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    setDragDropOverwriteMode(false); // no drag clears what it took
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setSizes();
    for (int i = 0; i < kValueColumns; ++i) {
        const int characters = charactersOf(static_cast<ValueColumn>(i));
        setColumnWidth(i, fontMetrics().averageCharWidth() * characters);
    }
    m_ageing.setInterval(kAgeingMs);
    m_fading.setInterval(kFadingMs);
    connect(&m_ageing, &QTimer::timeout, this, [this] { paintColumn(ValueColumn::Age); });
    connect(&m_fading, &QTimer::timeout, this, &ValuesView::fade);
    connect(&model, &ValuesModel::freshened, this, &ValuesView::beginFading);
    connect(&shown, &QAbstractItemModel::modelAboutToBeReset, this, &ValuesView::keepPlace);
    connect(&shown, &QAbstractItemModel::modelReset, this, &ValuesView::findPlace);
}

void ValuesView::setSizes()
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    const int side = fontMetrics().ascent();
    setIconSize(QSize(side, side));
}

QList<int> ValuesView::selectedRows() const
{
    QList<int> rows;
    const QModelIndexList indexes = selectionModel()->selectedRows();
    for (const QModelIndex &index : indexes) {
        rows.append(index.row());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

QStringList ValuesView::selectedNames() const
{
    QStringList names;
    QList<int> rows = selectedRows();
    if (rows.isEmpty() && currentIndex().isValid()) {
        rows.append(currentIndex().row());
    }
    for (const int row : std::as_const(rows)) {
        names.append(nameOf(m_shown.index(row, 0)));
    }
    return names;
}

QString ValuesView::selectedText() const
{
    QVector<int> columns;
    for (int i = 0; i < kValueColumns; ++i) {
        const int column = horizontalHeader()->logicalIndex(i);
        if (!isColumnHidden(column)) {
            columns.append(column);
        }
    }
    QStringList lines;
    const auto append = [&lines, &columns](const auto &textOf) {
        QStringList fields;
        for (const int column : columns) {
            fields.append(textOf(column).toString().simplified());
        }
        lines.append(fields.join(QLatin1Char('\t')));
    };
    append([this](int column) { return m_shown.headerData(column, Qt::Horizontal); });
    const QList<int> rows = selectedRows();
    for (const int row : rows) {
        append([this, row](int column) { return m_shown.index(row, column).data(); });
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QStringList ValuesView::order() const
{
    QStringList ids;
    for (int i = 0; i < kValueColumns; ++i) {
        ids.append(valueColumnId(static_cast<ValueColumn>(horizontalHeader()->logicalIndex(i))));
    }
    return ids;
}

void ValuesView::setOrder(const QStringList &ids)
{
    QVector<int> columns;
    for (const QString &id : ids) {
        for (int column = 0; column < kValueColumns; ++column) {
            const bool isMeant = valueColumnId(static_cast<ValueColumn>(column)) == id;
            if (isMeant && !columns.contains(column)) {
                columns.append(column);
            }
        }
    }
    for (int column = 0; column < kValueColumns; ++column) {
        if (!columns.contains(column)) {
            columns.append(column);
        }
    }
    for (int place = 0; place < kValueColumns; ++place) {
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(columns.at(place)), place);
    }
}

// Not what the cell shows: while other tags come, that is nothing.
QString ValuesView::nameOf(const QModelIndex &index) const
{
    const int row = m_shown.mapToSource(index).row();
    return row >= 0 && row < m_model.rowCount() ? m_model.row(row).name : QString();
}

bool ValuesView::reveal(const QString &name)
{
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (m_model.row(row).name == name) {
            const QModelIndex index = m_shown.mapFromSource(m_model.index(row, 0));
            if (index.isValid()) {
                setCurrentIndex(index);
                scrollTo(index);
            }
            return index.isValid();
        }
    }
    return false;
}

bool ValuesView::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    const bool isWanted = trigger == DoubleClicked || trigger == EditKeyPressed;
    if (!isWanted || !index.isValid()) {
        return QTableView::edit(index, trigger, event);
    }
    const QModelIndex value = index.siblingAtColumn(static_cast<int>(ValueColumn::Value));
    if (!value.flags().testFlag(Qt::ItemIsEditable)) {
        Q_EMIT readOnlyTouched(nameOf(index));
        return false;
    }
    selectionModel()->setCurrentIndex(value, QItemSelectionModel::NoUpdate);
    return QTableView::edit(value, trigger, event);
}

void ValuesView::beginFading()
{
    if (isVisible() && !m_fading.isActive()) {
        m_fading.start();
    }
}

void ValuesView::fade()
{
    paintColumn(ValueColumn::Value);
    if (!m_model.isAnyFresh()) {
        m_fading.stop();
    }
}

void ValuesView::paintColumn(ValueColumn column)
{
    const int section = static_cast<int>(column);
    viewport()->update(columnViewportPosition(section), 0, columnWidth(section),
                       viewport()->height());
}

void ValuesView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        setSizes();
    }
    if (event->type() == QEvent::PaletteChange) {
        m_model.setPalette(palette());
    }
}

void ValuesView::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (m_shown.rowCount() > 0) {
        return;
    }
    // An empty table says how it gets values.
    const QString hint = m_model.rowCount() > 0
                             ? tr("The filter or the group hides all values.")
                             : tr("Nothing to show yet. Type an address into Add above, like "
                                  "D_W:100 or D_W:112@u16*0.1-40, or open a tag file: Tags, Open "
                                  "tags.");
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    const int margin = fontMetrics().height();
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     static_cast<int>(Qt::AlignHCenter | Qt::AlignTop) | Qt::TextWordWrap, hint);
}

void ValuesView::showEvent(QShowEvent *event)
{
    QTableView::showEvent(event);
    m_model.setPalette(palette());
    m_ageing.start();
}

void ValuesView::hideEvent(QHideEvent *event)
{
    QTableView::hideEvent(event);
    m_ageing.stop();
    m_fading.stop();
}

void ValuesView::keepPlace()
{
    m_currentName = nameOf(currentIndex());
    m_selectedNames = selectionModel()->hasSelection() ? selectedNames() : QStringList();
    m_top = verticalScrollBar()->value();
}

void ValuesView::findPlace()
{
    const QStringList names = std::exchange(m_selectedNames, {});
    const QSet<QString> wanted(names.cbegin(), names.cend());
    QItemSelection selection;
    QModelIndex current;
    for (int row = 0; row < m_shown.rowCount(); ++row) {
        const QModelIndex index = m_shown.index(row, 0);
        const QString name = nameOf(index);
        if (wanted.contains(name)) {
            selection.select(index, index);
        }
        if (name == m_currentName) {
            current = index;
        }
    }
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    verticalScrollBar()->setValue(m_top);
}

} // namespace cnet::view
