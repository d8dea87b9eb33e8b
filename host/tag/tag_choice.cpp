#include "host/tag/tag_choice.h"

#include "host/address/value_text.h"
#include "host/tag/typed_item.h"

#include <QRegularExpression>

namespace cnet {

namespace {

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
