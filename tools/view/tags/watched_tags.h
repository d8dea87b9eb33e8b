#pragma once

#include "view/connect/line.h"

#include "host/tag/tag_values.h"
#include "host/tagfile/tag_monitor.h"

#include <QObject>
#include <QVector>

namespace cnet::view {

/**
 * The tags that the window watches, for all its pages, whatever line there is. While none is
 * connected they keep what was known last, and are not good.
 */
class WatchedTags : public QObject
{
    Q_OBJECT

public:
    /** @param line must outlive this object */
    explicit WatchedTags(Line &line, QObject *parent = nullptr);

    Line &line() const { return m_line; }
    const TagSet &tags() const { return m_tags; }

    /**
     * Watches these from now on. Those that stay keep what is known of them.
     * @param tags whose addresses the driver takes, with names that differ
     */
    void setTags(const TagSet &tags);

    /** What is known of a tag's words. @param tag index in tags() */
    const ItemState &state(int tag) const;

    /** Its values as people read them. @param tag index in tags() */
    QVector<TagValue> values(int tag) const { return readTag(m_tags.all().at(tag), state(tag)); }

    /** How far its values can be trusted, with what their words mean. @param tag index in tags() */
    Quality quality(int tag) const;

    /** What a tag file is read with: the driver's check of addresses. */
    TagReading reading();

    /** Reads a tag as people type it: "D_W:100@u16*0.1". @param error a sentence where it is empty
     */
    std::optional<Tag> parse(const QString &text, QString &error);

Q_SIGNALS:
    /** Indexes are others now. @param diff what came, went and became different */
    void tagsChanged(const cnet::TagDiff &diff);
    /** Values were read for the first time or have changed. @param tags indexes, rising */
    void valuesChanged(const QVector<int> &tags);
    /** The quality of a tag changed, or which of its values wait. @param tag index */
    void stateChanged(int tag);

private:
    void begin(Session *session);
    void end();

    Line &m_line;
    TagSet m_tags;
    TagMonitor *m_monitor = nullptr; ///< null: no session
    QVector<ItemState> m_last;       ///< of each tag, where there is no session
};

} // namespace cnet::view
