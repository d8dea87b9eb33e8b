#pragma once

#include "view/tags/watched_tags.h"
#include "view/values/list/tag_document.h"

#include <QObject>
#include <QUndoStack>
#include <QVector>

namespace cnet::view {

/** What is watched as a list that people change, and change back. */
class TagList : public QObject
{
    Q_OBJECT

public:
    /** @param tags must outlive this object */
    explicit TagList(WatchedTags &tags, QObject *parent = nullptr);

    /** Its entries go when somebody else sets other tags: they would bring back what is gone. */
    QUndoStack &undoStack() { return m_stack; }

    /** Appends one. @param error receives one sentence when the result is false: it is there */
    bool add(const Tag &tag, QString &error);

    /** Takes tags away. @param tags indexes; those that do not exist do not count */
    void remove(const QVector<int> &tags);

    /** The file that the tags are of. */
    TagDocument &document() { return m_document; }

    /** Watches the tags of a file, which is the one that is open then. */
    void open(const TagSet &tags, const TagDocument &document);

    /** Gives names to the tags that have none. @return how many */
    int nameAll();

    /** Watches others, of no file, and forgets what was before. */
    void reset(const TagSet &tags);

private:
    class Change;

    void watch(const TagSet &tags);

    WatchedTags &m_tags;
    TagDocument m_document;
    QUndoStack m_stack;
    bool m_isOwn = false; ///< the change underway is one of this list
};

} // namespace cnet::view
