#pragma once

#include "host/address/register_catalog.h"
#include "host/tag/tag.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace cnet {

/** Tags by their names, and by typedItemText() where they have none. */
class TagSet
{
public:
    TagSet() = default;

    /** @param tags with names that differ, or none */
    explicit TagSet(const QVector<Tag> &tags);

    const QVector<Tag> &all() const { return m_tags; }
    bool isEmpty() const { return m_tags.isEmpty(); }

    /** @return its index, or -1 */
    int indexOf(const QString &name) const { return m_indexes.value(name, -1); }

    /** @return nullptr where no tag has the name */
    const Tag *find(const QString &name) const;

    QStringList names() const;
    /** Each one once, in the order of the tags. */
    QStringList groups() const;

    /**
     * Chooses tags. Each word is the name of one, or a group, which "press" is for the tags of
     * press/hydraulics, too, or a pattern for names, with * for any letters and ? for one.
     *
     * @param words none stands for all tags
     * @param error receives one sentence, with what was probably meant, when the result is empty
     * @return indexes, each once: those of the first word first
     */
    std::optional<QVector<int>> select(const QStringList &words, QString &error) const;

private:
    QVector<int> chosenBy(const QString &word) const;

    QVector<Tag> m_tags;
    QHash<QString, int> m_indexes;
};

/** True where a name fits a pattern. @param glob * stands for any letters or none, ? for one */
bool fitsGlob(const QString &name, const QString &glob);

/** One value of an array as a tag of its own, "mould.zones[2]". @param index from 0 */
Tag oneValue(const Tag &tag, int index);

/**
 * The one tag that a word stands for: the name of a tag, or one value of an array,
 * "mould.zones[2]", counted from 0.
 *
 * @param error receives one sentence when the result is empty
 */
std::optional<Tag> oneTag(const QString &word, const TagSet &tags, QString &error);

/**
 * The tags that a word stands for: what oneTag() and TagSet::select() take, or an item without a
 * name, "D_W:100@f32", whose address the driver has not checked yet. No name has a colon, and every
 * item has one.
 *
 * @param station of an item that names none
 * @param error receives one sentence when the result is empty
 */
std::optional<QVector<Tag>> tagsOrItem(const QString &word, const TagSet &tags, int station,
                                       const RegisterCatalog &registers, QString &error);

} // namespace cnet
