#pragma once

#include "host/tag/tag_set.h"

#include <QTreeWidget>

namespace cnet::view {

/** The groups of tags as a tree: "press", and "hydraulics" in it. */
class GroupTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit GroupTree(QWidget *parent = nullptr);

    /** Shows the groups of these; the one that was chosen stays so where it still is. */
    void setTags(const TagSet &tags);

    /** "press/hydraulics"; empty: all. */
    QString chosen() const;

    /** Chooses one; what is no group stands for all. */
    void choose(const QString &group);

Q_SIGNALS:
    /** @param group empty: all */
    void groupChosen(const QString &group);

private:
    QTreeWidgetItem *itemOf(const QString &group);

    QHash<QString, QTreeWidgetItem *> m_items; ///< by group; the empty one has all
};

} // namespace cnet::view
