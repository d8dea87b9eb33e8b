#include "view/values/list/group_tree.h"

#include <QSignalBlocker>

namespace cnet::view {

namespace {

constexpr int kGroupRole = Qt::UserRole;
constexpr int kCountRole = Qt::UserRole + 1;

} // namespace

GroupTree::GroupTree(QWidget *parent)
    : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setColumnCount(1);
    setAccessibleName(tr("Groups of tags"));
    connect(this, &QTreeWidget::currentItemChanged, this, [this] { Q_EMIT groupChosen(chosen()); });
    setTags(TagSet());
}

QString GroupTree::chosen() const
{
    return currentItem() != nullptr ? currentItem()->data(0, kGroupRole).toString() : QString();
}

void GroupTree::choose(const QString &group)
{
    setCurrentItem(m_items.value(group, m_items.value(QString())));
}

QTreeWidgetItem *GroupTree::itemOf(const QString &group)
{
    if (QTreeWidgetItem *const known = m_items.value(group); known != nullptr) {
        return known;
    }
    // The part behind the last "/" is shown, in the group that the part before it is.
    const int slash = static_cast<int>(group.lastIndexOf(QLatin1Char('/')));
    QTreeWidgetItem *const parent = itemOf(slash > 0 ? group.left(slash) : QString());
    auto *const item = new QTreeWidgetItem(parent);
    item->setText(0, group.mid(slash + 1));
    item->setData(0, kGroupRole, group);
    m_items.insert(group, item);
    return item;
}

void GroupTree::setTags(const TagSet &tags)
{
    const QString before = chosen();
    {
        const QSignalBlocker quiet(this);
        clear();
        m_items.clear();
        auto *const all = new QTreeWidgetItem(this);
        all->setText(0, tr("All tags"));
        all->setData(0, kGroupRole, QString());
        m_items.insert(QString(), all);
        for (const Tag &tag : tags.all()) {
            QTreeWidgetItem *item = itemOf(tag.group);
            for (; item != nullptr; item = item->parent()) {
                item->setData(0, kCountRole, item->data(0, kCountRole).toInt() + 1);
            }
        }
        for (QTreeWidgetItem *const item : std::as_const(m_items)) {
            const int count = item->data(0, kCountRole).toInt();
            item->setText(0, tr("%1 (%2)").arg(item->text(0), QString::number(count)));
        }
        expandAll();
        choose(before);
    }
    if (chosen() != before) {
        Q_EMIT groupChosen(chosen());
    }
}

} // namespace cnet::view
