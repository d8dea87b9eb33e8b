// How the page is put together, and what a project keeps of it.
#include "view/values/values_page.h"

#include "view/values/list/group_tree.h"
#include "view/values/list/mistake_list.h"
#include "view/values/list/tag_entry.h"
#include "view/values/list/tag_list.h"
#include "view/values/table/values_view.h"

#include "host/tag/typed_item.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSet>
#include <QSplitter>

#include <algorithm>

namespace cnet::view {

namespace {

constexpr int kWidest = 10000; // of a column, whatever a file says

const QLatin1String kTags("tags");
const QLatin1String kNameless("nameless");
const QLatin1String kColumns("columns");
const QLatin1String kOrder("order");
const QLatin1String kFilter("filter");
const QLatin1String kGroup("group");
const QLatin1String kSort("sort");
const QLatin1String kDescending("descending");

} // namespace

void ValuesPage::makeLayout()
{
    auto *const filterLabel = new QLabel(tr("Fi&lter:"));
    filterLabel->setBuddy(m_filter);
    m_filter->setAccessibleName(tr("Filter"));
    m_filter->setPlaceholderText(tr("Words of a name, group, description or quality"));
    m_filter->setClearButtonEnabled(true);
    auto *const button = new QPushButton(tr("Ta&gs"));
    button->setAccessibleName(tr("What can be done with the tags"));
    button->setMenu(m_menu);
    auto *const top = new QHBoxLayout;
    top->addWidget(filterLabel, 0, Qt::AlignTop);
    top->addWidget(m_filter, 1, Qt::AlignTop);
    top->addWidget(m_entry, 2, Qt::AlignTop);
    top->addWidget(button, 0, Qt::AlignTop);
    filterLabel->setMinimumHeight(m_filter->sizeHint().height());
    auto *const splitter = new QSplitter;
    splitter->addWidget(m_groups);
    splitter->addWidget(m_view);
    splitter->setStretchFactor(1, 1);
    const int groups = fontMetrics().averageCharWidth() * 24;
    splitter->setSizes({groups, groups * 6});
    auto *const column = new QVBoxLayout(this);
    column->addLayout(top);
    column->addWidget(m_mistakes);
    column->addWidget(splitter, 1);
    auto *const hint = new QLabel(
        tr("F2 writes, T shows in the trend, Insert adds, Delete removes; more under Tags"));
    hint->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    hint->setWordWrap(true);
    auto *const bottom = new QHBoxLayout;
    bottom->addWidget(m_count);
    bottom->addWidget(hint, 1);
    column->addLayout(bottom);
    setFocusProxy(m_view);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &place) { m_menu->popup(m_view->viewport()->mapToGlobal(place)); });
}

QAction *ValuesPage::addTo(QMenu *menu, const QString &text, const QKeySequence &keys,
                           void (ValuesPage::*what)())
{
    QAction *const action = menu->addAction(text);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, what);
    return action;
}

void ValuesPage::makeActions()
{
    // Keys without Ctrl are for the table alone: elsewhere they are what one types.
    const auto forTable = [this](QAction *action) { m_view->addAction(action); };
    const auto forPage = [this](QAction *action) { addAction(action); };
    forTable(addTo(m_menu, tr("Change the &value"), Qt::Key_F2, &ValuesPage::editCurrent));
    forTable(addTo(m_menu, tr("Show in the &trend"), Qt::Key_T, &ValuesPage::showTrend));
    forTable(addTo(m_menu, tr("&Copy rows"), QKeySequence::Copy, &ValuesPage::copySelected));
    forTable(addTo(m_menu, tr("&Remove from the table"), QKeySequence::Delete,
                   &ValuesPage::removeSelected));
    m_menu->addSeparator();
    QAction *const undo = undoStack().createUndoAction(this, tr("&Undo"));
    QAction *const redo = undoStack().createRedoAction(this, tr("Re&do"));
    undo->setShortcut(QKeySequence::Undo);
    redo->setShortcut(QKeySequence::Redo);
    for (QAction *const action : {undo, redo}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        m_menu->addAction(action);
        forPage(action);
    }
    m_menu->addSeparator();
    addTo(m_menu, tr("&Open tags..."), {}, &ValuesPage::askOpen);
    addTo(m_menu, tr("&Save tags"), {}, &ValuesPage::save);
    addTo(m_menu, tr("Save tags &as..."), {}, &ValuesPage::askSave);
    m_menu->addSeparator();
    addTo(m_menu, tr("Reset &min and max"), {}, &ValuesPage::resetExtremes);
    addTo(m_menu, tr("Sort as &listed"), {}, &ValuesPage::sortAsListed);
    forPage(addTo(m_menu, tr("&Filter"), QKeySequence::Find, &ValuesPage::findFilter));
    forPage(addTo(m_menu, tr("Add a ta&g"), Qt::Key_Insert, &ValuesPage::findEntry));
}

void ValuesPage::editCurrent()
{
    m_view->editValue();
}

void ValuesPage::resetExtremes()
{
    m_model->resetExtremes();
}

void ValuesPage::sortAsListed()
{
    m_view->sortByColumn(-1, Qt::AscendingOrder);
}

void ValuesPage::findFilter()
{
    m_filter->setFocus(Qt::ShortcutFocusReason);
    m_filter->selectAll();
}

void ValuesPage::findEntry()
{
    m_entry->field().setFocus(Qt::ShortcutFocusReason);
}

QJsonObject ValuesPage::saved() const
{
    const QVector<Tag> &all = m_tags.tags().all();
    const QVector<Tag> named = namedTags(all);
    QJsonObject state;
    QJsonArray nameless;
    for (int i = 0; i < all.size(); ++i) {
        if (all.at(i).name.isEmpty()) {
            nameless.append(named.at(i).name);
        }
    }
    state.insert(kTags, all.isEmpty() ? QString() : QString::fromUtf8(TagFile::written(named)));
    state.insert(kNameless, nameless);
    for (auto part = m_refused.begin(); part != m_refused.end(); ++part) {
        state.insert(part.key(), part.value());
    }
    QJsonObject columns;
    for (int i = 0; i < kValueColumns; ++i) {
        columns.insert(valueColumnId(static_cast<ValueColumn>(i)), m_view->columnWidth(i));
    }
    state.insert(kColumns, columns);
    state.insert(kOrder, QJsonArray::fromStringList(m_view->order()));
    state.insert(kFilter, m_filter->text());
    state.insert(kGroup, m_groups->chosen());
    const int sorted = m_shown->sortColumn();
    if (sorted >= 0 && sorted < kValueColumns) {
        state.insert(kSort, valueColumnId(static_cast<ValueColumn>(sorted)));
        state.insert(kDescending, m_shown->sortOrder() == Qt::DescendingOrder);
    }
    return state;
}

void ValuesPage::restore(const QJsonObject &state)
{
    if (restoreTags(state)) {
        m_mistakes->clear();
    }
    restoreLook(state);
}

bool ValuesPage::restoreTags(const QJsonObject &state)
{
    const QJsonValue saved = state.value(kTags);
    if (!saved.isUndefined() && !saved.isString()) {
        refuse(state);
        Q_EMIT troubled(tr("The tags of the project are no text, so none is shown; the project "
                           "keeps them."),
                        tr("Open the project in an editor, or add tags here in their place."));
        return false;
    }
    const QString text = saved.toString();
    if (text.isEmpty()) {
        setTags(TagSet());
        return true;
    }
    const TagFile file = TagFile::parse(text.toUtf8(), m_tags.reading());
    if (!file.isGood()) {
        refuse(state);
        const QString what = tr("The tags of the project are wrong, so none is shown; the project "
                                "keeps them. Mistakes: %1")
                                 .arg(file.mistakes().count());
        m_mistakes->tell(what, file.mistakes());
        Q_EMIT troubled(what, tr("The page of values lists them."));
        return false;
    }
    if (!isRoomFor(file.tags())) {
        refuse(state);
        return false;
    }
    QSet<QString> nameless;
    const QJsonArray names = state.value(kNameless).toArray();
    for (const QJsonValue &name : names) {
        nameless.insert(name.toString());
    }
    QVector<Tag> tags = file.tags();
    QSet<QString> taken;
    for (Tag &tag : tags) {
        const QString name = tag.name;
        if (nameless.contains(name)) {
            tag.name.clear();
        }
        if (taken.contains(tagText(tag))) {
            tag.name = name; // two tags of one place need names
        }
        taken.insert(tagText(tag));
    }
    setTags(TagSet(tags));
    return true;
}

// Those of the project before would be read from another PLC, and take the place of these in the
// file.
void ValuesPage::refuse(const QJsonObject &state)
{
    setTags(TagSet());
    m_refused = {{kTags, state.value(kTags)}, {kNameless, state.value(kNameless)}};
}

void ValuesPage::restoreLook(const QJsonObject &state)
{
    QStringList order;
    const QJsonArray ids = state.value(kOrder).toArray();
    for (const QJsonValue &id : ids) {
        order.append(id.toString());
    }
    m_view->setOrder(order);
    const QJsonObject columns = state.value(kColumns).toObject();
    int sorted = -1;
    for (int i = 0; i < kValueColumns; ++i) {
        const QLatin1String id = valueColumnId(static_cast<ValueColumn>(i));
        const int width = columns.value(id).toInt();
        if (width > 0) {
            m_view->setColumnWidth(i, std::min(width, kWidest));
        }
        if (state.value(kSort).toString() == id) {
            sorted = i;
        }
    }
    m_filter->setText(state.value(kFilter).toString());
    m_groups->choose(state.value(kGroup).toString());
    m_view->sortByColumn(sorted, state.value(kDescending).toBool() ? Qt::DescendingOrder
                                                                   : Qt::AscendingOrder);
}

} // namespace cnet::view
