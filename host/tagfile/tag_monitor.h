#pragma once

#include "host/monitor/monitor.h"
#include "host/tag/tag_set.h"
#include "host/tagfile/tag_diff.h"
#include "host/tagfile/tag_file.h"

#include <QObject>

namespace cnet {

/** What came of reading a tag file again. */
struct TagReload
{
    TagFile file; ///< with its mistakes and warnings
    TagDiff diff; ///< what is watched otherwise now; nothing where there is a mistake
};

/**
 * Tags that are watched, by one monitor. Others may take their place while it runs: what stays is
 * read on, keeps its value, and nobody is told of a change that is none.
 */
class TagMonitor : public QObject
{
    Q_OBJECT

public:
    /**
     * @param monitor without items, as Session::monitor() makes it; this object has it for itself,
     * and is its child
     * @param tags whose addresses were checked
     */
    explicit TagMonitor(Monitor *monitor, const TagSet &tags = TagSet());

    const TagSet &tags() const { return m_tags; }
    Monitor &monitor() const { return m_monitor; }

    /** What is known of a tag: its words, their age and quality. @param tag index in tags() */
    const ItemState &state(int tag) const { return m_monitor.items().at(tag); }

    /** Watches these from the next poll on; an exchange that is underway is not disturbed. */
    TagDiff setTags(const TagSet &tags);

    /** Reads a tag file and watches what it says. One with a mistake changes nothing. */
    TagReload reload(const QByteArray &content, const TagReading &reading);

Q_SIGNALS:
    /** setTags() or reload() made a difference. The indexes of tags may be others now. */
    void tagsChanged(const cnet::TagDiff &diff);
    /** Values of tags were read for the first time or have changed. @param tags indexes, in order
     */
    void valuesChanged(const QVector<int> &tags);
    /** The quality of a tag changed, or which of its values wait. @param tag index */
    void tagStateChanged(int tag);

private:
    bool isWatched(const QVector<Item> &items) const;
    void handleValues(const QVector<ValueChange> &changes);

    Monitor &m_monitor;
    TagSet m_tags;
};

} // namespace cnet
