#pragma once

#include <QMetaType>
#include <QString>

#include <variant>

namespace cnet {

/**
 * What a value is to people: nothing, a truth, a whole number, a number with a fraction, or text. A
 * whole number is a qint64 wherever that holds it, and a quint64 beyond; no double ever stands
 * between.
 */
using Scalar = std::variant<std::monostate, bool, qint64, quint64, double, QString>;

/** Why the words of a value cannot be what they are taken for. */
enum class ValueFault {
    None,
    NotDecimal, ///< a digit of a BCD number is above 9
    NotANumber, ///< a floating-point number that is infinite or none
    TooLarge,   ///< behind the scale it is beyond what is held exactly
    BelowMin,   ///< less than the tag's least plausible value
    AboveMax,   ///< more than its greatest one
};

/** One value of a tag. */
struct TypedValue
{
    Scalar value; ///< nothing: not read yet, or the words stand for no value
    ValueFault fault = ValueFault::None;

    bool isKnown() const { return !std::holds_alternative<std::monostate>(value); }
    bool isGood() const { return isKnown() && fault == ValueFault::None; }

    bool operator==(const TypedValue &other) const
    {
        return value == other.value && fault == other.fault;
    }
    bool operator!=(const TypedValue &other) const { return !(*this == other); }
};

/** "wrong BCD digit", "below the minimum"...; empty for None. */
QString faultText(ValueFault fault);

/** A whole number as a scalar holds it: as a qint64 where it fits. */
Scalar wholeScalar(quint64 number);

/** True for a whole number or one with a fraction. */
bool isNumber(const Scalar &value);

/** The number as a double, for comparing and drawing; 0 for what is none. A large one is rounded.
 */
double approximately(const Scalar &value);

/**
 * Compares a number with a bound, without rounding either.
 * @param number isNumber()
 * @param bound finite
 * @return below 0, 0 or above 0, as the number is below, at or above the bound
 */
int compareNumber(const Scalar &number, double bound);

} // namespace cnet

Q_DECLARE_METATYPE(cnet::TypedValue)
