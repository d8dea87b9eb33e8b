#include "panel/output/typed_output.h"

#include "host/tag/value_format.h"

#include <QJsonArray>

#include <algorithm>

namespace cnet::panel {

QString csvField(const QString &text)
{
    const bool needsMarks = std::any_of(text.cbegin(), text.cend(), [](QChar letter) {
        return letter == QLatin1Char('"') || letter == QLatin1Char(',') ||
               letter == QLatin1Char('\n') || letter == QLatin1Char('\r');
    });
    QString inner = text;
    inner.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return needsMarks ? QLatin1Char('"') + inner + QLatin1Char('"') : text;
}

QString csvValue(const Tag &tag, const TypedValue &value)
{
    if (!value.isKnown()) {
        return QString();
    }
    const auto *text = std::get_if<QString>(&value.value);
    return csvField(text != nullptr ? *text : typedText(tag, value));
}

NamedTags namedTags(const QVector<Tag> &tags)
{
    return std::any_of(tags.cbegin(), tags.cend(),
                       [](const Tag &tag) { return !tag.name.isEmpty(); })
               ? NamedTags::Some
               : NamedTags::None;
}

void addNames(QJsonObject &line, const Tag &tag)
{
    if (tag.name.isEmpty()) {
        return;
    }
    line.insert(QLatin1String("name"), tag.name);
    if (!tag.unit.isEmpty()) {
        line.insert(QLatin1String("unit"), tag.unit);
    }
    if (!tag.group.isEmpty()) {
        line.insert(QLatin1String("group"), tag.group);
    }
}

QString csvNames(const Tag &tag, NamedTags named)
{
    return named == NamedTags::None
               ? QString()
               : QString::fromLatin1(",%1,%2").arg(csvField(tag.name), csvField(tag.unit));
}

QVector<TypedChange> typedChanges(const Tag &tag, const ItemState &state,
                                  const QVector<ValueChange> &changes, int &first)
{
    const QVector<TagValue> values = readTag(tag, state);
    const int item = changes.at(first).item;
    QVector<TypedChange> typed;
    for (; first < changes.size() && changes.at(first).item == item; ++first) {
        const ValueChange &change = changes.at(first);
        const int index = change.offset / tag.type.unitsPerValue();
        const bool isNew = typed.isEmpty() || typed.last().index != index;
        // A value of which a word was never read is none yet.
        if (isNew && !values.at(index).units.isEmpty()) {
            typed.append({index, change.atMs, values.at(index)});
        }
    }
    return typed;
}

QVector<TypedChange> ToldValues::toTell(const Tag &tag, const QVector<TypedChange> &changes)
{
    if (!tag.deadband) {
        return changes;
    }
    QVector<TypedValue> &told = m_told[tag.name];
    told.resize(tag.count);
    QVector<TypedChange> wanted;
    for (const TypedChange &change : changes) {
        if (isChange(tag, told.at(change.index), change.value.value)) {
            told[change.index] = change.value.value;
            wanted.append(change);
        }
    }
    return wanted;
}

void ToldValues::forget(const QVector<Tag> &tags, const QVector<int> &before)
{
    for (int i = 0; i < tags.size(); ++i) {
        if (before.at(i) < 0) {
            m_told.remove(tags.at(i).name);
        }
    }
}

void addTypedValues(QJsonObject &line, const Tag &tag, const QVector<TagValue> &values)
{
    QJsonArray typed;
    QJsonArray words;
    QJsonArray faults;
    for (const TagValue &own : values) {
        typed.append(jsonValue(own.value.value));
        const QString fault = faultText(own.value.fault);
        faults.append(fault.isEmpty() ? QJsonValue() : QJsonValue(fault));
        for (int i = 0; i < tag.type.unitsPerValue(); ++i) {
            words.append(own.units.isEmpty() ? QJsonValue() : QJsonValue(own.units.at(i)));
        }
    }
    line.insert(QLatin1String("type"), tag.type.text());
    line.insert(QLatin1String("values"), typed);
    line.insert(QLatin1String("words"), words);
    if (!firstFault(values).isEmpty()) {
        line.insert(QLatin1String("faults"), faults);
    }
}

Quality wholeQuality(const QVector<TagValue> &values, Quality quality)
{
    const bool isImplausible = std::any_of(values.cbegin(), values.cend(), [](const TagValue &own) {
        return own.quality == Quality::Implausible;
    });
    return isImplausible ? Quality::Implausible : quality;
}

QString firstFault(const QVector<TagValue> &values)
{
    for (const TagValue &own : values) {
        if (own.value.fault != ValueFault::None) {
            return faultText(own.value.fault);
        }
    }
    return QString();
}

} // namespace cnet::panel
