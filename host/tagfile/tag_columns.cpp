#include "host/tagfile/tag_columns.h"

#include "host/address/address.h"
#include "host/text/number_text.h"

#include <algorithm>
#include <array>

namespace cnet {

namespace {

const int kLongestName = 120;

const std::array<const char *, kTagColumns> kNames = {
    "name", "register", "address", "station",  "type",   "count", "scale",       "offset",
    "unit", "min",      "max",     "deadband", "access", "texts", "description", "group"};

QString boundText(const std::optional<double> &number)
{
    return number ? numberText(*number) : QString();
}

QString textsText(const QMap<qint64, QString> &texts)
{
    QStringList parts;
    for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
        parts.append(QString::number(it.key()) + QLatin1Char('=') + it.value());
    }
    return parts.join(QLatin1Char(';'));
}

QString placeText(const Tag &tag, TagColumn column)
{
    switch (column) {
    case TagColumn::Register:
        return tag.item.reg.name;
    case TagColumn::Address:
        return addressText(tag.item.reg, tag.item.start);
    case TagColumn::Station:
        return QString::number(tag.item.station);
    case TagColumn::Type:
        return tag.type.text();
    case TagColumn::Count:
        return QString::number(tag.count);
    default:
        return tag.access == TagAccess::Read ? QLatin1String("read") : QLatin1String("read-write");
    }
}

} // namespace

QString tagColumnName(TagColumn column)
{
    return QLatin1String(kNames.at(static_cast<std::size_t>(column)));
}

QStringList tagColumnNames()
{
    QStringList names;
    for (const char *const name : kNames) {
        names.append(QLatin1String(name));
    }
    return names;
}

std::optional<TagColumn> tagColumnOf(const QString &heading)
{
    const int index = static_cast<int>(tagColumnNames().indexOf(heading.toLower()));
    return index < 0 ? std::nullopt : std::optional<TagColumn>(static_cast<TagColumn>(index));
}

bool isNeeded(TagColumn column)
{
    return column == TagColumn::Name || column == TagColumn::Register ||
           column == TagColumn::Address;
}

QString tagFieldText(const Tag &tag, TagColumn column)
{
    switch (column) {
    case TagColumn::Name:
        return tag.name;
    case TagColumn::Scale:
        return numberText(tag.scale);
    case TagColumn::Offset:
        return numberText(tag.offset);
    case TagColumn::Unit:
        return tag.unit;
    case TagColumn::Min:
        return boundText(tag.min);
    case TagColumn::Max:
        return boundText(tag.max);
    case TagColumn::Deadband:
        return boundText(tag.deadband);
    case TagColumn::Texts:
        return textsText(tag.texts);
    case TagColumn::Description:
        return tag.description;
    case TagColumn::Group:
        return tag.group;
    default:
        return placeText(tag, column);
    }
}

QString tagFieldDefault(TagColumn column)
{
    return isNeeded(column) || column == TagColumn::Station ? QString()
                                                            : tagFieldText(Tag(), column);
}

QVector<TagColumn> tagDifferences(const Tag &left, const Tag &right)
{
    QVector<TagColumn> differences;
    for (int i = 0; i < kTagColumns; ++i) {
        const auto column = static_cast<TagColumn>(i);
        if (tagFieldText(left, column) != tagFieldText(right, column)) {
            differences.append(column);
        }
    }
    return differences;
}

bool isTagName(const QString &text)
{
    const auto fits = [](QChar letter) {
        return letter.isLetterOrNumber() || QLatin1String("._-/").contains(letter);
    };
    return !text.isEmpty() && text.size() <= kLongestName &&
           (text.front().isLetter() || text.front() == QLatin1Char('_')) &&
           std::all_of(text.cbegin(), text.cend(), fits);
}

} // namespace cnet
