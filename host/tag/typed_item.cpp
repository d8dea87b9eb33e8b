#include "host/tag/typed_item.h"

#include "host/address/address.h"
#include "host/address/value_text.h"
#include "host/tag/scaling.h"
#include "host/tag/value_format.h"
#include "host/text/number_text.h"
#include "host/value/string_text.h"
#include "host/value/value_codec.h"

#include <QRegularExpression>

namespace cnet {

namespace {

QString itemError(const QString &text, const QString &what)
{
    return QString::fromLatin1("'%1': %2").arg(quotable(text), what);
}

QString scaleText(const Tag &tag)
{
    QString text;
    if (tag.scale != 1) {
        text += QLatin1Char('*') + numberText(tag.scale);
    }
    if (tag.offset != 0) {
        text += (tag.offset > 0 ? QLatin1String("+") : QLatin1String("")) + numberText(tag.offset);
    }
    return text;
}

/// Cuts "i16*0.1-5" into the type's text, the scale and the offset.
bool readType(const QString &text, Tag &tag, QString &what)
{
    static const QRegularExpression form(
        QLatin1String("\\A([^*+]*?)(?:\\*(-?[0-9]*\\.?[0-9]+(?:[eE][+-]?[0-9]{1,3})?))?"
                      "([+-][0-9]*\\.?[0-9]+(?:[eE][+-]?[0-9]{1,3})?)?\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        what = QLatin1String("expected ITEM@TYPE[*SCALE][+OFFSET], for example "
                             "D_W:0*4@i16*0.1-5");
        return false;
    }
    const auto type = parseValueType(match.captured(1), what);
    if (!type) {
        return false;
    }
    tag.type = *type;
    tag.scale = match.captured(2).isEmpty() ? 1 : match.captured(2).toDouble();
    tag.offset = match.captured(3).isEmpty() ? 0 : match.captured(3).toDouble();
    what = typeMisfit(tag.item.reg, tag.type);
    if (what.isEmpty()) {
        what = scaleMisfit(tag);
    }
    return what.isEmpty();
}

/// Gives the tag so many values. @return false, with why not, where they do not fit
bool setCount(Tag &tag, int count, QString &what)
{
    const Item &item = tag.item;
    const qint64 units = qint64(count) * tag.type.unitsPerValue();
    const int room = item.reg.highest - item.start + 1;
    if (units > room) {
        what = QString::fromLatin1(
                   "%1 of %2 would take %3, and %4 can be had from there; an address of %5 "
                   "is %6")
                   .arg(counted(count, "value"), tag.type.text(),
                        counted(units, item.reg.isBit() ? "bit" : "word"), QString::number(room),
                        item.reg.name, addressHint(item.reg));
        return false;
    }
    tag.count = count;
    tag.item.count = static_cast<int>(units);
    return true;
}

std::optional<QVector<Scalar>> readValues(const Tag &tag, const QString &list, QString &what)
{
    QVector<Scalar> values;
    for (const QString &field : splitValues(list)) {
        const auto value = parseTyped(tag, field, what);
        if (!value) {
            return std::nullopt;
        }
        values.append(*value);
    }
    return values;
}

} // namespace

bool hasType(const QString &text)
{
    return text.section(QLatin1Char('='), 0, 0).indexOf(QLatin1Char('@')) > 0;
}

bool isPlain(const Tag &tag)
{
    return tag.type.kind == ValueKind::Raw && !tag.isScaled() && tag.name.isEmpty();
}

std::optional<Tag> parseTypedItem(const QString &text, int defaultStation,
                                  const RegisterCatalog &registers, QString &error)
{
    const int at = static_cast<int>(text.indexOf(QLatin1Char('@')));
    const auto item = parseItem(at > 0 ? text.left(at) : text, defaultStation, registers, error);
    if (!item) {
        return std::nullopt;
    }
    Tag tag;
    tag.item = *item;
    tag.count = item->count;
    QString what;
    if (at > 0 && (!readType(text.mid(at + 1), tag, what) || !setCount(tag, item->count, what))) {
        error = itemError(text, what);
        return std::nullopt;
    }
    return tag;
}

QString typedItemText(const Tag &tag)
{
    Item item = tag.item;
    item.count = tag.count;
    return isPlain(tag)
               ? item.text()
               : QString::fromLatin1("%1@%2%3").arg(item.text(), tag.type.text(), scaleText(tag));
}

QString typedItemText(const Tag &tag, int index)
{
    Tag one = tag;
    one.item.start += index * tag.type.unitsPerValue();
    one.count = 1;
    return typedItemText(one);
}

QString tagText(const Tag &tag)
{
    return tag.name.isEmpty() ? typedItemText(tag) : tag.name;
}

QString tagText(const Tag &tag, int index)
{
    if (tag.name.isEmpty()) {
        return typedItemText(tag, index);
    }
    return tag.count == 1 ? tag.name : QString::fromLatin1("%1[%2]").arg(tag.name).arg(index);
}

std::optional<TypedAssignment> parseTagValues(const Tag &tag, const QString &list, QString &error)
{
    QString what;
    const auto values = readValues(tag, list, what);
    const int given = values ? static_cast<int>(values->size()) : 0;
    if (values && given != 1 && given != tag.count) {
        what = wrongCountText(tag.count, given);
    }
    if (!what.isEmpty()) {
        error = itemError(tagText(tag), what);
        return std::nullopt;
    }
    return TypedAssignment{tag, given == 1 ? QVector<Scalar>(tag.count, values->first()) : *values};
}

std::optional<TypedAssignment> parseTypedAssignment(const QString &text, int defaultStation,
                                                    const RegisterCatalog &registers,
                                                    QString &error)
{
    const int equals = static_cast<int>(text.indexOf(QLatin1Char('=')));
    if (equals < 1) {
        error = itemError(text, QLatin1String("expected ITEM@TYPE=VALUE[,VALUE...], for example "
                                              "D_W:100@f32=12.5"));
        return std::nullopt;
    }
    const QString place = text.left(equals);
    const auto tag = parseTypedItem(place, defaultStation, registers, error);
    if (!tag) {
        return std::nullopt;
    }
    QString what;
    auto values = readValues(*tag, text.mid(equals + 1), what);
    TypedAssignment assignment{*tag, values.value_or(QVector<Scalar>())};
    const int given = static_cast<int>(assignment.values.size());
    const bool hasCount = place.section(QLatin1Char('@'), 0, 0).contains(QLatin1Char('*'));
    if (values && given == 1) {
        assignment.values.fill(values->first(), tag->count);
    } else if (values && hasCount && given != tag->count) {
        what = wrongCountText(tag->count, given);
        values.reset();
    }
    if (!values || !setCount(assignment.tag, static_cast<int>(assignment.values.size()), what)) {
        error = itemError(text, what);
        return std::nullopt;
    }
    return assignment;
}

} // namespace cnet
