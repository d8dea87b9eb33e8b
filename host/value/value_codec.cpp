#include "host/value/value_codec.h"

#include "host/address/value_text.h"
#include "host/value/string_codec.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace cnet {

namespace {

const int kBitsOfDigit = 4;
const int kHighestDigit = 9;
const quint64 kFourDigits = 10000;

/// The words as one number, the least significant word from where the order has it.
quint64 joined(const ValueType &type, const QVector<quint16> &units, int first)
{
    const int count = type.unitsPerValue();
    quint64 number = 0;
    for (int i = 0; i < count; ++i) {
        const int highest = type.words == WordOrder::LowFirst ? count - 1 - i : i;
        number = number << kBitsOfWord | units.at(first + highest);
    }
    return number;
}

QVector<quint16> split(const ValueType &type, quint64 number)
{
    const int count = type.unitsPerValue();
    QVector<quint16> units(count);
    for (int i = 0; i < count; ++i) {
        const int lowest = type.words == WordOrder::LowFirst ? i : count - 1 - i;
        units[lowest] = static_cast<quint16>(number >> (kBitsOfWord * i));
    }
    return units;
}

TypedValue decodeDecimal(quint64 digits, int words)
{
    quint64 number = 0;
    for (int i = words * kBitsOfWord / kBitsOfDigit - 1; i >= 0; --i) {
        const quint64 digit = digits >> (kBitsOfDigit * i) & 0xF;
        if (digit > kHighestDigit) {
            return {Scalar(), ValueFault::NotDecimal};
        }
        number = number * 10 + digit;
    }
    return {wholeScalar(number), ValueFault::None};
}

quint64 encodeDecimal(quint64 number)
{
    quint64 digits = 0;
    for (int place = 0; number > 0; place += kBitsOfDigit, number /= 10) {
        digits |= (number % 10) << place;
    }
    return digits;
}

template <typename Float, typename Bits>
TypedValue decodeFloat(quint64 number)
{
    const auto bits = static_cast<Bits>(number);
    Float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) {
        return {Scalar(), ValueFault::NotANumber};
    }
    return {static_cast<double>(value), ValueFault::None};
}

template <typename Float, typename Bits>
quint64 bitsOf(Float value)
{
    Bits bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

qint64 withSign(quint64 number, ValueKind kind)
{
    switch (kind) {
    case ValueKind::I16:
        return static_cast<qint16>(number);
    case ValueKind::I32:
        return static_cast<qint32>(number);
    default:
        return static_cast<qint64>(number);
    }
}

QString textOf(const Scalar &value)
{
    if (const auto *number = std::get_if<qint64>(&value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<quint64>(&value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<double>(&value)) {
        return QString::number(*number, 'g', QLocale::FloatingPointShortest);
    }
    if (const auto *text = std::get_if<QString>(&value)) {
        return QString::fromLatin1("'%1'").arg(quotable(*text));
    }
    const auto *truth = std::get_if<bool>(&value);
    return QLatin1String(truth == nullptr ? "nothing" : *truth ? "true" : "false");
}

/// A double that is whole as the number that it is; everything else as it was.
Scalar asWhole(const Scalar &value)
{
    if (const auto *truth = std::get_if<bool>(&value)) {
        return qint64(*truth ? 1 : 0);
    }
    const auto *number = std::get_if<double>(&value);
    if (number == nullptr || !(std::trunc(*number) == *number)) {
        return value;
    }
    if (std::fabs(*number) < std::ldexp(1, 63)) {
        return static_cast<qint64>(*number);
    }
    return *number > 0 && *number < std::ldexp(1, 64) ? Scalar(static_cast<quint64>(*number))
                                                      : value;
}

/// The bits of a whole number that its type holds.
std::optional<quint64> wholeBits(const ValueType &type, const Scalar &given, QString &error)
{
    const Scalar value = asWhole(given);
    const auto range = wholeRange(type.kind).value_or(WholeRange());
    const auto *small = std::get_if<qint64>(&value);
    const auto *large = std::get_if<quint64>(&value);
    const bool fits = small != nullptr
                          ? *small >= range.least &&
                                (*small < 0 || static_cast<quint64>(*small) <= range.greatest)
                          : large != nullptr && *large <= range.greatest;
    if (!fits) {
        error = QString::fromLatin1("%1 does not fit %2, which is a whole number from %3 to %4")
                    .arg(textOf(given), type.text())
                    .arg(range.least)
                    .arg(range.greatest);
        return std::nullopt;
    }
    return small != nullptr ? static_cast<quint64>(*small) : *large;
}

/// The greatest float in nine digits is a little more than it is.
float nearestFloat(double value)
{
    const auto most = static_cast<double>(std::numeric_limits<float>::max());
    return static_cast<float>(std::clamp(value, -most, most));
}

std::optional<quint64> floatBits(const ValueType &type, const Scalar &given, QString &error)
{
    const double value = approximately(given);
    const bool isShort = type.kind == ValueKind::F32;
    const double beyondFloat = std::ldexp(1 - std::ldexp(1, -25), 128); // rounds to no float
    const bool isTooLarge = !std::isfinite(value) || (isShort && std::fabs(value) >= beyondFloat);
    const bool vanishes = isShort && !isTooLarge && value != 0 && nearestFloat(value) == 0;
    if (!isNumber(given) || isTooLarge || vanishes) {
        error = QString::fromLatin1("%1 does not fit %2, which is 0 or a number of a size from "
                                    "%3, for example 12.5")
                    .arg(textOf(given), type.text(),
                         QLatin1String(isShort ? "1.4e-45 to 3.4e38" : "4.9e-324 to 1.8e308"));
        return std::nullopt;
    }
    return isShort ? bitsOf<float, quint32>(nearestFloat(value)) : bitsOf<double, quint64>(value);
}

std::optional<quint64> truthBits(const ValueType &type, const Scalar &given, QString &error)
{
    const Scalar value = asWhole(given);
    if (value != Scalar(qint64(0)) && value != Scalar(qint64(1))) {
        error = QString::fromLatin1("%1 does not fit %2, which is 0 or 1")
                    .arg(textOf(given), type.text());
        return std::nullopt;
    }
    return value == Scalar(qint64(1)) ? 1 : 0;
}

} // namespace

QString typeMisfit(const RegisterInfo &reg, const ValueType &type)
{
    const bool fits = !reg.isBit() || type.kind == ValueKind::Raw || type.kind == ValueKind::Bool ||
                      type.kind == ValueKind::Enum;
    return fits ? QString()
                : QString::fromLatin1("%1 takes words, and %2 has %3; expected bool, enum or raw, "
                                      "or a register of words, for example D_W")
                      .arg(type.text(), reg.name,
                           QLatin1String(reg.isContact() ? "contacts" : "bits"));
}

std::optional<WholeRange> wholeRange(ValueKind kind)
{
    using I16 = std::numeric_limits<qint16>;
    using I32 = std::numeric_limits<qint32>;
    using I64 = std::numeric_limits<qint64>;
    switch (kind) {
    case ValueKind::Raw:
    case ValueKind::Enum:
    case ValueKind::U16:
        return WholeRange{0, std::numeric_limits<quint16>::max()};
    case ValueKind::U32:
        return WholeRange{0, std::numeric_limits<quint32>::max()};
    case ValueKind::U64:
        return WholeRange{0, std::numeric_limits<quint64>::max()};
    case ValueKind::I16:
        return WholeRange{I16::min(), static_cast<quint64>(I16::max())};
    case ValueKind::I32:
        return WholeRange{I32::min(), static_cast<quint64>(I32::max())};
    case ValueKind::I64:
        return WholeRange{I64::min(), static_cast<quint64>(I64::max())};
    case ValueKind::Bcd4:
        return WholeRange{0, kFourDigits - 1};
    case ValueKind::Bcd8:
        return WholeRange{0, kFourDigits * kFourDigits - 1};
    case ValueKind::Bool:
    case ValueKind::Bit:
        return WholeRange{0, 1};
    default:
        return std::nullopt;
    }
}

TypedValue decodeValue(const ValueType &type, const QVector<quint16> &units, int first)
{
    if (first < 0 || first + type.unitsPerValue() > units.size()) {
        return {};
    }
    if (type.kind == ValueKind::String) {
        return {decodeString(type, units, first), ValueFault::None};
    }
    const quint64 number = joined(type, units, first);
    switch (type.kind) {
    case ValueKind::Bool:
        return {number != 0, ValueFault::None};
    case ValueKind::Bit:
        return {(number >> type.bit & 1) != 0, ValueFault::None};
    case ValueKind::I16:
    case ValueKind::I32:
    case ValueKind::I64:
        return {withSign(number, type.kind), ValueFault::None};
    case ValueKind::F32:
        return decodeFloat<float, quint32>(number);
    case ValueKind::F64:
        return decodeFloat<double, quint64>(number);
    case ValueKind::Bcd4:
    case ValueKind::Bcd8:
        return decodeDecimal(number, type.unitsPerValue());
    default:
        return {wholeScalar(number), ValueFault::None};
    }
}

QVector<TypedValue> decodeValues(const ValueType &type, const QVector<quint16> &units)
{
    QVector<TypedValue> values;
    const int step = type.unitsPerValue();
    for (int first = 0; first + step <= units.size(); first += step) {
        values.append(decodeValue(type, units, first));
    }
    return values;
}

std::optional<QVector<quint16>> encodeValue(const ValueType &type, const Scalar &value,
                                            QString &error)
{
    if (type.kind == ValueKind::String) {
        const auto *text = std::get_if<QString>(&value);
        if (text == nullptr) {
            error = QString::fromLatin1("%1 is no text, which %2 takes, for example \"abc\"")
                        .arg(textOf(value), type.text());
            return std::nullopt;
        }
        return encodeString(type, *text, error);
    }
    std::optional<quint64> bits;
    if (!type.isWhole()) {
        bits = floatBits(type, value, error);
    } else if (type.kind == ValueKind::Bool || type.kind == ValueKind::Bit) {
        bits = truthBits(type, value, error);
    } else {
        bits = wholeBits(type, value, error);
    }
    if (!bits) {
        return std::nullopt;
    }
    const bool isDecimal = type.kind == ValueKind::Bcd4 || type.kind == ValueKind::Bcd8;
    return split(type, isDecimal ? encodeDecimal(*bits) : *bits);
}

} // namespace cnet
