#include "host/tagfile/tag_monitor.h"

#include <algorithm>

namespace cnet {

TagMonitor::TagMonitor(Monitor *monitor, const TagSet &tags)
    : QObject(monitor)
    , m_monitor(*monitor)
{
    connect(monitor, &Monitor::valuesChanged, this, &TagMonitor::handleValues);
    // One item for each tag, in the same order.
    connect(monitor, &Monitor::itemStateChanged, this, &TagMonitor::tagStateChanged);
    setTags(tags);
}

TagDiff TagMonitor::setTags(const TagSet &tags)
{
    TagDiff diff = tagDiff(m_tags, tags);
    m_tags = tags;
    QVector<Item> items;
    items.reserve(tags.all().size());
    for (const Tag &tag : tags.all()) {
        items.append(tag.item);
    }
    if (!isWatched(items)) {
        m_monitor.setItems(items);
    }
    if (!diff.isEmpty()) {
        Q_EMIT tagsChanged(diff);
    }
    return diff;
}

// Other descriptions and units are no reason to set up the polls again.
bool TagMonitor::isWatched(const QVector<Item> &items) const
{
    const QVector<ItemState> &watched = m_monitor.items();
    return std::equal(items.cbegin(), items.cend(), watched.cbegin(), watched.cend(),
                      [](const Item &item, const ItemState &state) {
                          return item.station == state.item.station &&
                                 item.start == state.item.start && item.count == state.item.count &&
                                 item.reg.name == state.item.reg.name;
                      });
}

TagReload TagMonitor::reload(const QByteArray &content, const TagReading &reading)
{
    TagReload reload{TagFile::parse(content, reading), TagDiff()};
    if (reload.file.isGood()) {
        reload.diff = setTags(TagSet(reload.file.tags()));
    }
    return reload;
}

void TagMonitor::handleValues(const QVector<ValueChange> &changes)
{
    QVector<int> tags;
    for (const ValueChange &change : changes) {
        if (tags.isEmpty() || tags.last() != change.item) {
            tags.append(change.item);
        }
    }
    Q_EMIT valuesChanged(tags);
}

} // namespace cnet
