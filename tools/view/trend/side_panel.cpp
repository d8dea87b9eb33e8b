#include "view/trend/side_panel.h"

#include "view/look/readable_palette.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <set>

namespace cnet::view {

namespace {

/** Edits the scale and the pane of a trace. */
class PlaceDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                          const QModelIndex &index) const override
    {
        if (index.column() == TraceSet::PaneNumber) {
            auto *number = new QSpinBox(parent);
            number->setRange(1, TrendView::kMostPanes);
            number->setAccessibleName(TraceSet::tr("Pane"));
            return number;
        }
        auto *side = new QComboBox(parent);
        side->addItems({TraceSet::tr("left"), TraceSet::tr("right")});
        side->setAccessibleName(TraceSet::tr("Scale"));
        return side;
    }

    void setEditorData(QWidget *editor, const QModelIndex &index) const override
    {
        const int number = index.data(Qt::EditRole).toInt();
        if (auto *side = qobject_cast<QComboBox *>(editor); side != nullptr) {
            side->setCurrentIndex(number);
        } else if (auto *pane = qobject_cast<QSpinBox *>(editor); pane != nullptr) {
            pane->setValue(number);
        }
    }

    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override
    {
        if (auto *side = qobject_cast<QComboBox *>(editor); side != nullptr) {
            model->setData(index, side->currentIndex());
        } else if (auto *pane = qobject_cast<QSpinBox *>(editor); pane != nullptr) {
            pane->interpretText();
            model->setData(index, pane->value());
        }
    }
};

/** Buttons for a table's actions: there to be seen, while keys and the menu do the same. */
QWidget *buttons(const QTableView *table)
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto actions = table->actions();
    for (QAction *action : actions) {
        auto *button = new QToolButton;
        button->setDefaultAction(action);
        button->setFocusPolicy(Qt::TabFocus);
        layout->addWidget(button);
    }
    layout->addStretch();
    return row;
}

} // namespace

SidePanel::SidePanel(TraceSet &traces, Markers &markers, QWidget *parent)
    : QWidget(parent)
    , m_traces(traces)
    , m_markers(markers)
    , m_traceList(makeTable(&traces, tr("Traces")))
    , m_noteList(makeTable(&markers, tr("Notes")))
{
    auto *places = new PlaceDelegate(m_traceList);
    m_traceList->setItemDelegateForColumn(TraceSet::ScaleSide, places);
    m_traceList->setItemDelegateForColumn(TraceSet::PaneNumber, places);
    m_traceList->horizontalHeader()->setSectionResizeMode(TraceSet::Name, QHeaderView::Stretch);
    m_traceList->setPalette(withVisibleBoxes(m_traceList->palette()));
    m_traceList->setShowGrid(false);              // it would be as bright as the boxes
    m_traceList->setWordWrap(false);              // names have no words
    m_traceList->setTextElideMode(Qt::ElideLeft); // the end of a name tells it from others
    m_noteList->setColumnWidth(Markers::Time, 15 * fontMetrics().averageCharWidth());
    m_noteList->horizontalHeader()->setStretchLastSection(true);
    for (const int column :
         {static_cast<int>(TraceSet::Value), static_cast<int>(TraceSet::ScaleSide),
          static_cast<int>(TraceSet::PaneNumber)}) {
        const int letters = column == TraceSet::Value ? 14 : 8;
        m_traceList->setColumnWidth(column, letters * fontMetrics().averageCharWidth());
    }
    makeTraceActions();
    makeNoteActions();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_traceList, 3);
    column->addWidget(buttons(m_traceList));
    column->addWidget(m_noteList, 1);
    column->addWidget(buttons(m_noteList));
}

QTableView *SidePanel::makeTable(QAbstractItemModel *model, const QString &name)
{
    auto *table = new QTableView;
    table->setModel(model);
    table->setAccessibleName(name);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    table->setTabKeyNavigation(false);
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() * 3 / 2);
    return table;
}

QAction *SidePanel::makeAction(QTableView *table, const QString &text, const QKeySequence &key)
{
    auto *action = new QAction(text, table);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(QLatin1String("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText)));
    table->addAction(action);
    return action;
}

std::vector<int> SidePanel::chosen(const QTableView *table) const
{
    std::set<int> rows;
    const auto selected = table->selectionModel()->selectedIndexes();
    for (const QModelIndex &index : selected) {
        rows.insert(index.row());
    }
    return {rows.rbegin(), rows.rend()};
}

void SidePanel::makeTraceActions()
{
    const auto *remove = makeAction(m_traceList, tr("Remove"), Qt::Key_Delete);
    connect(remove, &QAction::triggered, this, [this] {
        for (const int row : chosen(m_traceList)) {
            m_traces.removeAt(row);
        }
    });
    const auto *front = makeAction(m_traceList, tr("Highlight"), Qt::Key_H);
    connect(front, &QAction::triggered, this, [this] {
        const int row = m_traceList->currentIndex().row();
        m_traces.setHighlighted(row == m_traces.highlighted() ? -1 : row);
    });
    const auto *colour = makeAction(m_traceList, tr("Next colour"), Qt::Key_C);
    connect(colour, &QAction::triggered, this, [this] {
        for (const int row : chosen(m_traceList)) {
            m_traces.setColour(row, m_traces.at(row).choice.colour + 1);
        }
    });
}

void SidePanel::makeNoteActions()
{
    const auto *go = makeAction(m_noteList, tr("Go to"), Qt::Key_G);
    const auto goTo = [this](const QModelIndex &index) {
        if (index.isValid()) {
            const auto &marker = m_markers.all()[static_cast<size_t>(index.row())];
            Q_EMIT timeChosen(static_cast<double>(marker.atMs));
        }
    };
    connect(go, &QAction::triggered, this, [this, goTo] { goTo(m_noteList->currentIndex()); });
    connect(m_noteList, &QTableView::doubleClicked, this, [goTo](const QModelIndex &index) {
        if (index.column() == Markers::Time) {
            goTo(index);
        }
    });
    const auto *edit = makeAction(m_noteList, tr("Edit"), Qt::Key_E);
    connect(edit, &QAction::triggered, this,
            [this] { editNote(m_noteList->currentIndex().row()); });
    const auto *remove = makeAction(m_noteList, tr("Remove"), Qt::Key_Delete);
    connect(remove, &QAction::triggered, this, [this] {
        for (const int row : chosen(m_noteList)) {
            m_markers.removeAt(row);
        }
    });
}

void SidePanel::editNote(int row)
{
    const QModelIndex index = m_markers.index(row, Markers::Note);
    if (index.isValid()) {
        m_noteList->setFocus();
        m_noteList->setCurrentIndex(index);
        m_noteList->edit(index);
    }
}

} // namespace cnet::view
