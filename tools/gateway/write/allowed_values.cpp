#include "gateway/write/allowed_values.h"

#include "host/address/value_text.h"
#include "host/jobs/write_job.h"
#include "host/tag/scaling.h"
#include "host/tag/tag_values.h"
#include "host/tag/tag_writing.h"
#include "host/tag/typed_item.h"
#include "host/tag/value_format.h"
#include "host/text/near_miss.h"
#include "host/text/number_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace cnet::gateway {

namespace {

bool isWhole(double number)
{
    return std::trunc(number) == number && std::fabs(number) < 1e15;
}

bool takesNumbers(const Tag &tag)
{
    const ValueKind kind = tag.type.kind;
    return !tag.item.reg.isBit() && kind != ValueKind::Bool && kind != ValueKind::Bit &&
           kind != ValueKind::String && kind != ValueKind::Enum;
}

/// A tag's name stands for all its values.
bool fits(const AllowRule &rule, const QString &value)
{
    const QString tag = value.section(QLatin1Char('['), 0, 0);
    return fitsGlob(value, rule.pattern) || fitsGlob(tag, rule.pattern);
}

bool fitsAny(const AllowRule &rule, const Tag &tag)
{
    bool found = fitsGlob(tagText(tag), rule.pattern);
    for (int index = 0; index < tag.count && !found; ++index) {
        found = fits(rule, tagText(tag, index));
    }
    return found;
}

/// To the last digit where all are whole; else as people count decimals.
bool isOnStep(const Scalar &value, double from, double step)
{
    const auto *whole = std::get_if<qint64>(&value);
    qint64 above = 0;
    if (whole != nullptr && isWhole(from) && isWhole(step) &&
        !__builtin_sub_overflow(*whole, static_cast<qint64>(from), &above)) {
        return above % static_cast<qint64>(step) == 0;
    }
    const double number = approximately(value);
    const double slack = 1e-9 * std::max({std::fabs(number), std::fabs(from), step});
    return std::fabs(std::remainder(number - from, step)) <= slack;
}

QString beyondRule(const AllowRule &rule, const Tag &tag, const Scalar &value)
{
    const bool hasLimits = rule.min || rule.max || rule.step;
    if (!hasLimits) {
        return QString();
    }
    if (!isNumber(value)) {
        return QString::fromLatin1("%1 takes numbers only from outside").arg(tag.title());
    }
    const QString number = typedText(tag, {value, ValueFault::None});
    if (rule.min && compareNumber(value, *rule.min) < 0) {
        return QString::fromLatin1("%1 is below what may be written to %2 from outside, which is "
                                   "%3 or more")
            .arg(number, tag.title(), numberText(*rule.min));
    }
    if (rule.max && compareNumber(value, *rule.max) > 0) {
        return QString::fromLatin1("%1 is above what may be written to %2 from outside, which is "
                                   "%3 or less")
            .arg(number, tag.title(), numberText(*rule.max));
    }
    const double from = rule.min.value_or(0);
    if (rule.step && !isOnStep(value, from, *rule.step)) {
        return QString::fromLatin1("%1 is between the steps of %2 for %3, counted from %4")
            .arg(number, numberText(*rule.step), tag.title(), numberText(from));
    }
    return QString();
}

/// What the PLC would have: a whole number is rounded to the scale's step, also beyond a bound.
std::optional<TypedValue> asWritten(const Tag &tag, const QVector<Assignment> &assignments)
{
    if (!tag.type.isWhole() || !takesNumbers(tag)) {
        return std::nullopt;
    }
    const QVector<quint16> units = assignments.first().values;
    const QVector<bool> known(static_cast<int>(units.size()), true);
    return readTag(tag, units, known, Quality::Good).first().value;
}

QString beyondRules(const QVector<AllowRule> &rules, const Tag &tag, const Scalar &value)
{
    QString error;
    for (const AllowRule &rule : rules) {
        error = error.isEmpty() ? beyondRule(rule, tag, value) : error;
    }
    return error;
}

/// Rounding may not carry a value out of its bounds. Steps are checked as it was asked for.
QString beyondOnceRounded(QVector<AllowRule> rules, const Tag &tag,
                          const QVector<Assignment> &assignments)
{
    const auto written = asWritten(tag, assignments);
    if (!written) {
        return QString();
    }
    for (AllowRule &rule : rules) {
        rule.step.reset();
    }
    return written->isGood()
               ? beyondRules(rules, tag, written->value)
               : QString::fromLatin1("%1 would be written to %2, which is %3")
                     .arg(typedText(tag, *written), tag.title(), faultText(written->fault));
}

} // namespace

AllowedValues::AllowedValues(const QVector<AllowRule> &rules, const TagSet &tags,
                             const RegisterCatalog &registers, int blockWords, Check check)
    : m_rules(rules)
    , m_tags(tags)
    , m_registers(registers)
    , m_words(std::min(blockWords, kHighestWriteWords))
    , m_check(std::move(check))
{}

QVector<AllowRule> AllowedValues::rulesFor(const Tag &value) const
{
    QVector<AllowRule> own;
    for (const AllowRule &rule : m_rules) {
        if (fits(rule, tagText(value))) {
            own.append(rule);
        }
    }
    return own;
}

std::optional<PlannedWrite> AllowedValues::plan(const QString &name, const QString &text,
                                                QString &error) const
{
    const auto tag = oneTag(name, m_tags, error);
    if (!tag) {
        return std::nullopt;
    }
    if (tag->count != 1) {
        error = QString::fromLatin1("%1 has %2 values, and one is written at a time: %1[0] to "
                                    "%1[%3]")
                    .arg(tag->title())
                    .arg(tag->count)
                    .arg(tag->count - 1);
        return std::nullopt;
    }
    const QVector<AllowRule> rules = rulesFor(*tag);
    if (rules.isEmpty() || tag->access == TagAccess::Read) {
        error = QString::fromLatin1(rules.isEmpty() ? "%1 may not be written from outside"
                                                    : "%1 can only be read")
                    .arg(tag->title());
        return std::nullopt;
    }
    const auto value = parseTyped(*tag, text, error);
    if (!value) {
        return std::nullopt;
    }
    PlannedWrite planned{*tag, *value, {}};
    const auto assignments = assignmentsOf(*tag, {*value}, m_registers, m_words, error);
    if (!assignments) {
        return std::nullopt;
    }
    planned.assignments = *assignments;
    error = beyondRules(rules, *tag, *value);
    error = error.isEmpty() ? beyondOnceRounded(rules, *tag, *assignments) : error;
    const bool isFine = error.isEmpty() && std::all_of(assignments->cbegin(), assignments->cend(),
                                                       [this, &error](const Assignment &own) {
                                                           return m_check(own.item, error);
                                                       });
    return isFine ? std::optional<PlannedWrite>(planned) : std::nullopt;
}

void checkRules(const QVector<AllowRule> &rules, const TagSet &tags, const QString &title,
                Findings &findings)
{
    for (const AllowRule &rule : rules) {
        QVector<const Tag *> found;
        for (const Tag &tag : tags.all()) {
            if (fitsAny(rule, tag)) {
                found.append(&tag);
            }
        }
        const auto writable = [](const Tag *tag) { return tag->access == TagAccess::ReadWrite; };
        const bool isLimited = rule.min || rule.max || rule.step;
        const auto plain = std::find_if(found.cbegin(), found.cend(), [isLimited](const Tag *tag) {
            return isLimited && !takesNumbers(*tag);
        });
        QString error;
        if (found.isEmpty()) {
            error = QString::fromLatin1("no tag fits '%1'%2")
                        .arg(quotable(rule.pattern), nearMissHint(rule.pattern, tags.names()));
        } else if (std::none_of(found.cbegin(), found.cend(), writable)) {
            error = QString::fromLatin1("%1 can only be read").arg(found.first()->title());
        } else if (plain != found.cend()) {
            error = QString::fromLatin1("min, max and step are for numbers, and %1 is none")
                        .arg((*plain)->title());
        }
        if (!error.isEmpty()) {
            findings.add({rule.place.line, rule.place.column, title, error});
        }
    }
}

} // namespace cnet::gateway
