#include "panel/options/planned_write.h"

#include "host/address/value_text.h"
#include "host/tag/tag_values.h"
#include "host/tag/tag_writing.h"
#include "host/tag/value_format.h"

#include <QStringList>

#include <algorithm>

namespace cnet::panel {

namespace {

const int kShownValues = 8;

QString joined(const QStringList &texts, const char *between)
{
    QStringList shown = texts.mid(0, kShownValues);
    if (texts.size() > kShownValues) {
        shown.append(QLatin1String("..."));
    }
    return shown.join(QLatin1String(between));
}

/// @param first of the values of the whole tag; @param all how many it has
QString askedText(const TypedAssignment &asked, int first, int all)
{
    QStringList texts;
    for (const Scalar &value : asked.values) {
        texts.append(typedText(asked.tag, {value, ValueFault::None}));
    }
    QString name = tagText(asked.tag);
    const int count = asked.tag.count;
    if (!asked.tag.name.isEmpty() && count < all) {
        name += count == 1 ? QString::fromLatin1("[%1]").arg(first)
                           : QString::fromLatin1("[%1..%2]").arg(first).arg(first + count - 1);
    }
    return QString::fromLatin1("%1=%2").arg(name, joined(texts, ","));
}

/// What the PLC was found to hold, with its words where they stand for no value.
QString heldText(const Tag &tag, const ReadResult &now)
{
    if (tag.type.kind == ValueKind::Bit) {
        return valuesText(now.values, true);
    }
    QStringList texts;
    for (const TagValue &own : readTag(tag, now.values, now.known, Quality::Good)) {
        const QString shown = shownText(tag, own.value);
        const QString words = valuesText(own.units, tag.item.reg.isBit());
        texts.append(own.value.isGood() ? shown : QString::fromLatin1("%1, %2").arg(words, shown));
    }
    return joined(texts, ", ");
}

/// A name never has a colon, an item always has one.
bool isNamed(const QString &text, const TagSet &tags)
{
    return !tags.isEmpty() && !text.section(QLatin1Char('='), 0, 0).contains(QLatin1Char(':'));
}

std::optional<TypedAssignment> readNamed(const QString &text, const TagSet &tags, QString &error)
{
    const QString name = text.section(QLatin1Char('='), 0, 0).trimmed();
    const auto tag = oneTag(name, tags, error);
    if (tag && text.contains(QLatin1Char('='))) {
        return parseTagValues(*tag, text.section(QLatin1Char('='), 1), error);
    }
    if (tag) {
        error = QString::fromLatin1("'%1': expected NAME=VALUE[,VALUE...]").arg(quotable(name));
    }
    return std::nullopt;
}

std::optional<QVector<PlannedWrite>> planTyped(const std::optional<TypedAssignment> &asked,
                                               const WriteReading &reading, QString &error)
{
    const auto assignments =
        asked ? assignmentsOf(asked->tag, asked->values, reading.driver.registers(),
                              std::min(reading.blockWords, kHighestWriteWords), error)
              : std::nullopt;
    if (!assignments) {
        return std::nullopt;
    }
    QVector<PlannedWrite> writes;
    int first = 0;
    const bool isBit = asked->tag.type.kind == ValueKind::Bit;
    const int units = asked->tag.type.unitsPerValue();
    for (const Assignment &assignment : *assignments) {
        const int count = isBit ? 1 : assignment.item.count / units;
        PlannedWrite write{assignment, {asked->tag, asked->values.mid(first, count)}, {}};
        write.asked.tag.item.start += first * units;
        write.asked.tag.item.count = count * units;
        write.asked.tag.count = count;
        write.title = askedText(write.asked, first, asked->tag.count);
        writes.append(write);
        first += count;
    }
    return writes;
}

} // namespace

QString PlannedWrite::resultText(const WriteResult &result) const
{
    QString text = result.text();
    const QString name = assignment.text();
    if (isPlain(asked.tag)) {
        return text;
    }
    text.replace(0, name.size(), title);
    const QString held =
        result.now ? valuesText(result.now->values, assignment.item.reg.isBit()) : QString();
    const QString end = QLatin1String("; it holds ") + held;
    if (result.now && text.endsWith(end)) {
        text.chop(held.size());
        text += heldText(asked.tag, *result.now);
    }
    return text;
}

std::optional<QVector<PlannedWrite>> planWrite(const QString &text, const WriteReading &reading,
                                               QString &error)
{
    const RegisterCatalog &registers = reading.driver.registers();
    std::optional<QVector<PlannedWrite>> writes;
    if (isNamed(text, reading.tags)) {
        writes = planTyped(readNamed(text, reading.tags, error), reading, error);
    } else if (hasType(text)) {
        writes = planTyped(parseTypedAssignment(text, reading.station, registers, error), reading,
                           error);
    } else if (const auto plain = parseAssignment(text, reading.station, registers, error)) {
        Tag tag;
        tag.item = plain->item;
        tag.count = plain->item.count;
        writes = QVector<PlannedWrite>{{*plain, {tag, {}}, plain->text()}};
    }
    if (!writes) {
        return std::nullopt;
    }
    for (const PlannedWrite &write : *writes) {
        if (!reading.driver.check(write.assignment.item, Access::Write, error)) {
            return std::nullopt;
        }
    }
    return writes;
}

QVector<Assignment> assignmentsOf(const QVector<PlannedWrite> &writes)
{
    QVector<Assignment> assignments;
    for (const PlannedWrite &write : writes) {
        assignments.append(write.assignment);
    }
    return assignments;
}

} // namespace cnet::panel
