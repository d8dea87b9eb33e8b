#include "view/tags/watched_tags.h"

#include "host/tag/typed_item.h"
#include "host/tagfile/tag_diff.h"

namespace cnet::view {

namespace {

ItemState unreadState(const Tag &tag)
{
    ItemState state;
    state.item = tag.item;
    state.values.resize(tag.item.count);
    return state;
}

} // namespace

WatchedTags::WatchedTags(Line &line, QObject *parent)
    : QObject(parent)
    , m_line(line)
{
    connect(&line, &Line::sessionBegan, this, &WatchedTags::begin);
    connect(&line, &Line::sessionEnding, this, &WatchedTags::end);
    if (line.session() != nullptr) {
        begin(line.session());
    }
}

void WatchedTags::setTags(const TagSet &tags)
{
    if (m_monitor != nullptr) {
        m_tags = tags;
        Q_EMIT tagsChanged(m_monitor->setTags(tags));
        return;
    }
    QHash<QString, ItemState> known;
    for (int i = 0; i < m_last.size(); ++i) {
        known.insert(typedItemText(m_tags.all().at(i)), m_last.at(i));
    }
    const TagDiff diff = tagDiff(m_tags, tags);
    m_tags = tags;
    m_last.clear();
    for (const Tag &tag : tags.all()) {
        m_last.append(known.value(typedItemText(tag), unreadState(tag)));
    }
    Q_EMIT tagsChanged(diff);
}

const ItemState &WatchedTags::state(int tag) const
{
    return m_monitor != nullptr ? m_monitor->state(tag) : m_last.at(tag);
}

Quality WatchedTags::quality(int tag) const
{
    const Quality ofWords = state(tag).quality;
    const auto read = values(tag);
    for (const TagValue &value : read) {
        if (value.quality != ofWords) {
            return value.quality;
        }
    }
    return ofWords;
}

TagReading WatchedTags::reading()
{
    const auto check = [this](const Item &item, TagAccess access, QString &error) {
        return m_line.driver().check(item, access == TagAccess::Read ? Access::Read : Access::Write,
                                     error);
    };
    return {m_line.registers(), check, m_line.connection().station};
}

std::optional<Tag> WatchedTags::parse(const QString &text, QString &error)
{
    const auto tag = parseTypedItem(text, m_line.connection().station, m_line.registers(), error);
    if (!tag || !m_line.driver().check(tag->item, Access::Read, error)) {
        return std::nullopt;
    }
    return tag;
}

void WatchedTags::begin(Session *session)
{
    m_monitor = new TagMonitor(session->monitor(), m_tags);
    connect(m_monitor, &TagMonitor::valuesChanged, this, &WatchedTags::valuesChanged);
    connect(m_monitor, &TagMonitor::tagStateChanged, this, &WatchedTags::stateChanged);
    m_last.clear();
    for (int i = 0; i < m_tags.all().size(); ++i) {
        Q_EMIT stateChanged(i);
    }
}

void WatchedTags::end()
{
    m_last = m_monitor->monitor().items();
    delete &m_monitor->monitor(); // the tag monitor is its child
    m_monitor = nullptr;
    for (int i = 0; i < m_last.size(); ++i) {
        m_last[i].quality = Quality::LineDown;
        Q_EMIT stateChanged(i);
    }
}

} // namespace cnet::view
