#include "host/value/typed_value.h"

#include <limits>

namespace cnet {

namespace {

// Every whole number up to it is a double.
const qint64 kExactInDouble = qint64(1) << 53;

int signOf(bool isLess, bool isEqual)
{
    return isEqual ? 0 : isLess ? -1 : 1;
}

// Beyond 2^53 a double is whole, so cutting it off changes nothing.
int compareWhole(qint64 number, double bound)
{
    if (number >= -kExactInDouble && number <= kExactInDouble) {
        const double exact = static_cast<double>(number);
        return signOf(exact < bound, !(exact < bound) && !(exact > bound));
    }
    const double least = static_cast<double>(std::numeric_limits<qint64>::min());
    if (bound >= -least) {
        return -1;
    }
    if (bound < least) {
        return 1;
    }
    const auto whole = static_cast<qint64>(bound);
    return signOf(number < whole, number == whole);
}

} // namespace

QString faultText(ValueFault fault)
{
    switch (fault) {
    case ValueFault::NotDecimal:
        return QLatin1String("wrong BCD digit");
    case ValueFault::NotANumber:
        return QLatin1String("not a number");
    case ValueFault::TooLarge:
        return QLatin1String("too large to be scaled exactly");
    case ValueFault::BelowMin:
        return QLatin1String("below the minimum");
    case ValueFault::AboveMax:
        return QLatin1String("above the maximum");
    case ValueFault::None:
        break;
    }
    return QString();
}

Scalar wholeScalar(quint64 number)
{
    const auto most = static_cast<quint64>(std::numeric_limits<qint64>::max());
    return number <= most ? Scalar(static_cast<qint64>(number)) : Scalar(number);
}

bool isNumber(const Scalar &value)
{
    return std::holds_alternative<qint64>(value) || std::holds_alternative<quint64>(value) ||
           std::holds_alternative<double>(value);
}

double approximately(const Scalar &value)
{
    if (const auto *number = std::get_if<qint64>(&value)) {
        return static_cast<double>(*number);
    }
    if (const auto *number = std::get_if<quint64>(&value)) {
        return static_cast<double>(*number);
    }
    const auto *number = std::get_if<double>(&value);
    return number == nullptr ? 0 : *number;
}

int compareNumber(const Scalar &number, double bound)
{
    if (const auto *whole = std::get_if<qint64>(&number)) {
        return compareWhole(*whole, bound);
    }
    if (const auto *large = std::get_if<quint64>(&number)) {
        // Half of each compares alike, but for the lowest bit, which decides where halves are
        // equal.
        const int halves = compareWhole(static_cast<qint64>(*large / 2), bound / 2);
        return halves == 0 && *large % 2 == 1 ? 1 : halves;
    }
    const double value = approximately(number);
    return signOf(value < bound, !(value < bound) && !(value > bound));
}

} // namespace cnet
