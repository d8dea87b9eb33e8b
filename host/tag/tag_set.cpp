#include "host/tag/tag_set.h"

#include "host/address/value_text.h"
#include "host/tag/typed_item.h"
#include "host/text/near_miss.h"

#include <QRegularExpression>
#include <QSet>

namespace cnet {

namespace {

bool isGlob(const QString &word)
{
    return word.contains(QLatin1Char('*')) || word.contains(QLatin1Char('?'));
}

/// "mould.zones[2]" as name and index, however wrong the index. No name has a bracket.
QRegularExpressionMatch indexed(const QString &word)
{
    static const QRegularExpression form(QLatin1String("\\A([^\\[\\]:]+)\\[(.*)\\]\\z"));
    return form.match(word);
}

std::optional<Tag> valueOfArray(const QString &word, const Tag &tag, const QString &indexText,
                                QString &error)
{
    static const QRegularExpression digits(QLatin1String("\\A[0-9]{1,9}\\z"));
    const int index = digits.match(indexText).hasMatch() ? indexText.toInt() : -1;
    if (tag.count > 1 && index >= 0 && index < tag.count) {
        return oneValue(tag, index);
    }
    error = tag.count == 1 ? QString::fromLatin1("'%1': %2 is one value, not an array; expected %2")
                                 .arg(quotable(word), tag.name)
                           : QString::fromLatin1("'%1': %2 has %3 values, %2[0] to %2[%4]")
                                 .arg(quotable(word), tag.name)
                                 .arg(tag.count)
                                 .arg(tag.count - 1);
    return std::nullopt;
}

} // namespace

TagSet::TagSet(const QVector<Tag> &tags)
    : m_tags(tags)
{
    m_indexes.reserve(tags.size());
    for (int i = 0; i < tags.size(); ++i) {
        m_indexes.insert(tagText(tags.at(i)), i);
    }
}

const Tag *TagSet::find(const QString &name) const
{
    const int index = indexOf(name);
    return index < 0 ? nullptr : &m_tags.at(index);
}

QStringList TagSet::names() const
{
    QStringList names;
    for (const Tag &tag : m_tags) {
        names.append(tag.name);
    }
    return names;
}

QStringList TagSet::groups() const
{
    QStringList groups;
    QSet<QString> known;
    for (const Tag &tag : m_tags) {
        if (!tag.group.isEmpty() && !known.contains(tag.group)) {
            known.insert(tag.group);
            groups.append(tag.group);
        }
    }
    return groups;
}

QVector<int> TagSet::chosenBy(const QString &word) const
{
    const int index = indexOf(word);
    if (index >= 0) {
        return {index};
    }
    QVector<int> chosen;
    const QString inside = word + QLatin1Char('/');
    for (int i = 0; i < m_tags.size(); ++i) {
        const Tag &tag = m_tags.at(i);
        const bool fits = isGlob(word) ? fitsGlob(tag.name, word)
                                       : tag.group == word || tag.group.startsWith(inside);
        if (fits && !word.isEmpty()) {
            chosen.append(i);
        }
    }
    return chosen;
}

std::optional<QVector<int>> TagSet::select(const QStringList &words, QString &error) const
{
    QVector<int> selected;
    QVector<bool> known(m_tags.size(), false);
    for (const QString &word : words.isEmpty() ? QStringList(QLatin1String("*")) : words) {
        const QVector<int> chosen = chosenBy(word);
        if (chosen.isEmpty()) {
            error = isGlob(word) ? QString::fromLatin1("no tag fits '%1'").arg(quotable(word))
                                 : QString::fromLatin1("no tag or group '%1'%2")
                                       .arg(quotable(word), nearMissHint(word, names() + groups()));
            return std::nullopt;
        }
        for (const int index : chosen) {
            if (!known.at(index)) {
                known[index] = true;
                selected.append(index);
            }
        }
    }
    return selected;
}

// A * is tried short first, and made longer from where the rest failed.
bool fitsGlob(const QString &name, const QString &glob)
{
    int at = 0;
    int star = -1;
    int resumed = 0;
    int next = 0;
    while (at < name.size()) {
        const QChar wanted = next < glob.size() ? glob.at(next) : QChar();
        if (wanted == QLatin1Char('*')) {
            star = next++;
            resumed = at;
        } else if (next < glob.size() && (wanted == QLatin1Char('?') || wanted == name.at(at))) {
            ++at;
            ++next;
        } else if (star >= 0) {
            next = star + 1;
            at = ++resumed;
        } else {
            return false;
        }
    }
    while (next < glob.size() && glob.at(next) == QLatin1Char('*')) {
        ++next;
    }
    return next == glob.size();
}

Tag oneValue(const Tag &tag, int index)
{
    Tag one = tag;
    one.name = tag.name.isEmpty() ? QString() : tagText(tag, index);
    one.count = 1;
    one.item.start += index * tag.type.unitsPerValue();
    one.item.count = tag.type.unitsPerValue();
    return one;
}

std::optional<Tag> oneTag(const QString &word, const TagSet &tags, QString &error)
{
    const QRegularExpressionMatch match = indexed(word);
    const QString name = match.hasMatch() ? match.captured(1) : word;
    if (const Tag *const tag = tags.find(name)) {
        return match.hasMatch() ? valueOfArray(word, *tag, match.captured(2), error) : *tag;
    }
    if (tags.select({name}, error)) {
        error = QString::fromLatin1("'%1' stands for several tags; expected the name of one")
                    .arg(quotable(name));
    }
    return std::nullopt;
}

std::optional<QVector<Tag>> tagsOrItem(const QString &word, const TagSet &tags, int station,
                                       const RegisterCatalog &registers, QString &error)
{
    if (indexed(word).hasMatch()) {
        const auto one = oneTag(word, tags, error);
        return one ? std::optional<QVector<Tag>>({*one}) : std::nullopt;
    }
    if (const auto selected = tags.select({word}, error)) {
        QVector<Tag> chosen;
        for (const int index : *selected) {
            chosen.append(tags.all().at(index));
        }
        return chosen;
    }
    if (!word.contains(QLatin1Char(':'))) {
        return std::nullopt;
    }
    const auto item = parseTypedItem(word, station, registers, error);
    return item ? std::optional<QVector<Tag>>({*item}) : std::nullopt;
}

} // namespace cnet
