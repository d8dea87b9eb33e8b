#pragma once

#include "host/tag/tag_set.h"
#include "host/tagfile/tag_columns.h"

#include <QMetaType>
#include <QStringList>
#include <QVector>

namespace cnet {

/** A tag that two sets have, and not as the same. */
struct TagChange
{
    QString name;
    QVector<TagColumn> columns; ///< in which they differ
};

/** What makes one set of tags another one. */
struct TagDiff
{
    QStringList added;
    QStringList removed;
    QVector<TagChange> changed;
    QStringList unchanged;

    /** True where both say the same; their order does not matter. */
    bool isEmpty() const { return added.isEmpty() && removed.isEmpty() && changed.isEmpty(); }

    /** "tags: 2 added, 1 changed (press.speed: scale, unit), 97 unchanged", for people. */
    QString text() const;
};

/** Tags are the same by their names, or by what they stand for where they have none. */
TagDiff tagDiff(const TagSet &before, const TagSet &after);

} // namespace cnet

Q_DECLARE_METATYPE(cnet::TagDiff)
