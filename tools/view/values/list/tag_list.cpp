#include "view/values/list/tag_list.h"

#include "host/tag/typed_item.h"

#include <QFileInfo>
#include <QSet>
#include <QUndoCommand>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace cnet::view {

namespace {

constexpr int kMostChanges = 100;

} // namespace

/// The tags before and after; what both have is shared.
class TagList::Change : public QUndoCommand
{
public:
    Change(TagList &list, TagSet after, const QString &what)
        : QUndoCommand(what)
        , m_list(list)
        , m_before(list.m_tags.tags())
        , m_after(std::move(after))
    {}

    /// Tags of another file: it changes with them, or one would be saved into the other.
    void setDocument(const TagDocument &document)
    {
        m_documents = std::make_pair(m_list.m_document, document);
    }

    void undo() override
    {
        if (m_documents) {
            m_list.m_document = m_documents->first;
        }
        m_list.watch(m_before);
    }

    void redo() override
    {
        if (m_documents) {
            m_list.m_document = m_documents->second;
        }
        m_list.watch(m_after);
    }

private:
    TagList &m_list;
    TagSet m_before;
    TagSet m_after;
    std::optional<std::pair<TagDocument, TagDocument>> m_documents;
};

TagList::TagList(WatchedTags &tags, QObject *parent)
    : QObject(parent)
    , m_tags(tags)
{
    m_stack.setUndoLimit(kMostChanges);
    connect(&tags, &WatchedTags::tagsChanged, this, [this] {
        if (!m_isOwn) {
            m_stack.clear();
        }
    });
}

void TagList::watch(const TagSet &tags)
{
    m_isOwn = true;
    m_tags.setTags(tags);
    m_isOwn = false;
}

bool TagList::add(const Tag &tag, QString &error)
{
    if (m_tags.tags().find(tagText(tag)) != nullptr) {
        error = tr("%1 is in the table already").arg(tagText(tag));
        return false;
    }
    QVector<Tag> all = m_tags.tags().all();
    all.append(tag);
    m_stack.push(new Change(*this, TagSet(all), tr("add %1").arg(tagText(tag))));
    return true;
}

void TagList::remove(const QVector<int> &tags)
{
    const QSet<int> gone(tags.cbegin(), tags.cend());
    const QVector<Tag> all = m_tags.tags().all();
    QVector<Tag> kept;
    QString last;
    for (int i = 0; i < all.size(); ++i) {
        if (gone.contains(i)) {
            last = tagText(all.at(i));
        } else {
            kept.append(all.at(i));
        }
    }
    const int count = static_cast<int>(all.size() - kept.size());
    if (count > 0) {
        const QString what =
            count == 1 ? tr("remove %1").arg(last) : tr("remove %n tags", "", count);
        m_stack.push(new Change(*this, TagSet(kept), what));
    }
}

void TagList::open(const TagSet &tags, const TagDocument &document)
{
    const QString name = QFileInfo(document.path()).fileName();
    auto change = std::make_unique<Change>(*this, tags, tr("open %1").arg(name));
    change->setDocument(document);
    m_stack.push(change.release());
}

int TagList::nameAll()
{
    const QVector<Tag> all = m_tags.tags().all();
    const auto nameless =
        std::count_if(all.cbegin(), all.cend(), [](const Tag &tag) { return tag.name.isEmpty(); });
    if (nameless > 0) {
        m_stack.push(new Change(*this, TagSet(namedTags(all)), tr("name tags")));
    }
    return static_cast<int>(nameless);
}

void TagList::reset(const TagSet &tags)
{
    m_document = TagDocument();
    watch(tags);
    m_stack.clear();
}

} // namespace cnet::view
