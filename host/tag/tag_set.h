#pragma once

#include "host/tag/tag.h"

#include <QHash>
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

} // namespace cnet
