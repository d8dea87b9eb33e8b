#include "host/tag/scaling.h"

#include "host/text/number_text.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet {

namespace {

// Fifteen digits survive the way through a double and back.
const double kMostExact = 1e15;

bool isWholeNumber(double number)
{
    return std::trunc(number) == number && std::fabs(number) < kMostExact;
}

bool isExact(const Tag &tag)
{
    return tag.type.isWhole() && isWholeNumber(tag.scale) && isWholeNumber(tag.offset);
}

int decimalsOf(double number)
{
    const QString text = QString::number(number, 'f', QLocale::FloatingPointShortest);
    const int point = static_cast<int>(text.indexOf(QLatin1Char('.')));
    return point < 0 ? 0 : std::min(kMostDecimals, static_cast<int>(text.size()) - point - 1);
}

/// The greatest numbers are beyond a qint64; they are scaled by 1 only.
TypedValue scaledLarge(const Tag &tag, quint64 number)
{
    const auto offset = static_cast<qint64>(tag.offset);
    quint64 sum = 0;
    const bool tooLarge =
        tag.scale != 1 || (offset >= 0 && __builtin_add_overflow(number, offset, &sum));
    if (tooLarge) {
        return {Scalar(), ValueFault::TooLarge};
    }
    return {wholeScalar(offset >= 0 ? sum : number - static_cast<quint64>(-offset)),
            ValueFault::None};
}

TypedValue scaledExactly(const Tag &tag, const Scalar &raw)
{
    if (const auto *large = std::get_if<quint64>(&raw)) {
        return scaledLarge(tag, *large);
    }
    qint64 product = 0;
    qint64 sum = 0;
    const auto offset = static_cast<qint64>(tag.offset);
    if (__builtin_mul_overflow(std::get<qint64>(raw), static_cast<qint64>(tag.scale), &product)) {
        return {Scalar(), ValueFault::TooLarge};
    }
    if (!__builtin_add_overflow(product, offset, &sum)) {
        return {sum, ValueFault::None};
    }
    // Two that are positive, since the offset is the smaller one of the two.
    return product < 0 ? TypedValue{Scalar(), ValueFault::TooLarge}
                       : TypedValue{wholeScalar(static_cast<quint64>(product) +
                                                static_cast<quint64>(offset)),
                                    ValueFault::None};
}

TypedValue scaledRoughly(const Tag &tag, const Scalar &raw)
{
    const double number = approximately(raw);
    double result = number * tag.scale + tag.offset;
    if (!std::isfinite(result)) {
        return {Scalar(), ValueFault::TooLarge};
    }
    if (tag.type.isWhole()) {
        const double power = std::pow(10, decimalsOf(tag));
        if (std::fabs(number) > kMostExact) {
            return {Scalar(), ValueFault::TooLarge};
        }
        if (std::fabs(result) * power < kMostExact) {
            result = std::round(result * power) / power;
        }
    }
    return {result, ValueFault::None};
}

ValueFault boundFault(const Tag &tag, const Scalar &value)
{
    if (!isNumber(value)) {
        return ValueFault::None;
    }
    if (tag.min && compareNumber(value, *tag.min) < 0) {
        return ValueFault::BelowMin;
    }
    return tag.max && compareNumber(value, *tag.max) > 0 ? ValueFault::AboveMax : ValueFault::None;
}

/// Halves away from zero, as people round.
qint64 dividedRounded(qint64 number, qint64 by)
{
    const qint64 quotient = number / by;
    const qint64 rest = number % by;
    const quint64 size = rest < 0 ? static_cast<quint64>(-rest) : static_cast<quint64>(rest);
    const quint64 divisor = by < 0 ? static_cast<quint64>(-by) : static_cast<quint64>(by);
    const bool isNegative = (number < 0) != (by < 0);
    return size >= divisor - size ? quotient + (isNegative ? -1 : 1) : quotient;
}

std::optional<Scalar> unscaledExactly(const Tag &tag, const Scalar &wanted)
{
    const auto offset = static_cast<qint64>(tag.offset);
    if (const auto *large = std::get_if<quint64>(&wanted)) {
        if (tag.scale != 1 || offset < 0) {
            quint64 sum = 0;
            const bool fits = tag.scale == 1 && !__builtin_add_overflow(*large, -offset, &sum);
            return fits ? std::optional<Scalar>(wholeScalar(sum)) : std::nullopt;
        }
        return wholeScalar(*large - static_cast<quint64>(offset));
    }
    const qint64 number = std::get<qint64>(wanted);
    qint64 difference = 0;
    const auto scale = static_cast<qint64>(tag.scale);
    if (!__builtin_sub_overflow(number, offset, &difference)) {
        const bool isBeyond = scale == -1 && difference == std::numeric_limits<qint64>::min();
        return isBeyond ? std::nullopt : std::optional<Scalar>(dividedRounded(difference, scale));
    }
    // A large number and an offset below 0.
    const bool fits = tag.scale == 1 && number > 0;
    return fits ? std::optional<Scalar>(
                      wholeScalar(static_cast<quint64>(number) + static_cast<quint64>(-offset)))
                : std::nullopt;
}

/// Scale and offset are decimals to people, so the division is one of whole numbers.
std::optional<Scalar> unscaledRoughly(const Tag &tag, double wanted)
{
    const double power = tag.type.isWhole() ? std::pow(10, decimalsOf(tag)) : 1;
    double raw = (wanted - tag.offset) / tag.scale;
    if (tag.type.isWhole() && std::fabs(wanted) * power < kMostExact &&
        std::fabs(tag.offset) * power < kMostExact) {
        raw = (wanted * power - std::round(tag.offset * power)) / std::round(tag.scale * power);
    }
    if (!std::isfinite(raw)) {
        return std::nullopt;
    }
    if (!tag.type.isWhole()) {
        return raw;
    }
    // std::round() takes halves away from zero.
    return std::fabs(raw) <= kMostExact
               ? std::optional<Scalar>(static_cast<qint64>(std::round(raw)))
               : std::nullopt;
}

/// What would come back decides: it may be beyond what is held, or an offset far larger than the
/// scale.
bool isWithinHalfStep(const Tag &tag, const Scalar &raw, double wanted)
{
    const TypedValue back = scaledValue(tag, {raw, ValueFault::None});
    const double slack = 1 + 1e-9;
    return back.isKnown() && std::fabs(approximately(back.value) - wanted) <=
                                 std::fabs(tag.scale) / 2 * slack + std::fabs(wanted) * 1e-15;
}

QString boundError(const Tag &tag, const Scalar &wanted)
{
    const ValueFault fault = boundFault(tag, wanted);
    if (fault == ValueFault::None) {
        return QString();
    }
    const bool isLow = fault == ValueFault::BelowMin;
    return QString::fromLatin1("%1 is %2 of %3, which is %4")
        .arg(numberText(approximately(wanted)), faultText(fault), tag.title(),
             numberText(isLow ? *tag.min : *tag.max));
}

} // namespace

QString scaleMisfit(const Tag &tag)
{
    if (!std::isfinite(tag.scale) || !std::isfinite(tag.offset) || tag.scale == 0) {
        return QLatin1String("a scale is a number other than 0, for example 0.1");
    }
    const ValueKind kind = tag.type.kind;
    const bool takesScale = kind != ValueKind::Bool && kind != ValueKind::Bit &&
                            kind != ValueKind::String && kind != ValueKind::Enum &&
                            !tag.item.reg.isBit();
    return takesScale || !tag.isScaled()
               ? QString()
               : QString::fromLatin1("a scale is for numbers, and %1 is none; for example %2")
                     .arg(tag.item.reg.isBit() ? tag.item.reg.name : tag.type.text(),
                          QLatin1String("D_W:100@i16*0.1"));
}

int decimalsOf(const Tag &tag)
{
    return std::max(decimalsOf(tag.scale), decimalsOf(tag.offset));
}

TypedValue scaledValue(const Tag &tag, const TypedValue &raw)
{
    if (raw.fault != ValueFault::None || !isNumber(raw.value)) {
        return raw;
    }
    TypedValue result = raw;
    if (tag.isScaled()) {
        result = isExact(tag) ? scaledExactly(tag, raw.value) : scaledRoughly(tag, raw.value);
    }
    if (result.fault == ValueFault::None) {
        result.fault = boundFault(tag, result.value);
    }
    return result;
}

std::optional<Scalar> unscaledValue(const Tag &tag, const Scalar &wanted, QString &error)
{
    const bool isFraction = std::holds_alternative<double>(wanted);
    if (isFraction && !std::isfinite(std::get<double>(wanted))) {
        error = QLatin1String("what is written must be a number, for example 12.5");
        return std::nullopt;
    }
    error = boundError(tag, wanted);
    if (!error.isEmpty()) {
        return std::nullopt;
    }
    if (!tag.isScaled()) {
        return wanted;
    }
    if (!isNumber(wanted)) {
        error = QLatin1String("a scaled value is a number, for example 12.5");
        return std::nullopt;
    }
    const double about = approximately(wanted);
    if (isExact(tag) && std::fabs(tag.scale) == 1 && isFraction && std::trunc(about) != about) {
        error =
            QString::fromLatin1("%1 is no whole number, and %2 with a scale of 1 takes no other")
                .arg(numberText(about), tag.type.text());
        return std::nullopt;
    }
    const bool exactly = isExact(tag) && !isFraction;
    auto raw = exactly ? unscaledExactly(tag, wanted) : unscaledRoughly(tag, about);
    const bool fits = raw && (!tag.type.isWhole() || isWithinHalfStep(tag, *raw, about));
    if (!fits) {
        error = QString::fromLatin1("%1 cannot be scaled exactly: it has more than fifteen digits")
                    .arg(numberText(about));
        return std::nullopt;
    }
    return raw;
}

} // namespace cnet
