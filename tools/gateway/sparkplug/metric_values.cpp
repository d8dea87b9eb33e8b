#include "gateway/sparkplug/metric_values.h"

#include "host/value/string_text.h"
#include "host/value/value_codec.h"

#include <QHash>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet::gateway {

namespace {

constexpr int kMostInMessage = 2000;

bool isWholeNumber(double number)
{
    return std::trunc(number) == number;
}

/// Bits that a whole datatype has; 0 for one that is not whole.
int bitsOf(Datatype datatype)
{
    switch (datatype) {
    case Datatype::Int16:
    case Datatype::UInt16:
        return 16;
    case Datatype::Int32:
    case Datatype::UInt32:
        return 32;
    case Datatype::Int64:
    case Datatype::UInt64:
        return 64;
    default:
        return 0;
    }
}

bool isSigned(Datatype datatype)
{
    return datatype == Datatype::Int16 || datatype == Datatype::Int32 ||
           datatype == Datatype::Int64;
}

/// A whole number where the datatype holds it.
Scalar wholeAs(Datatype datatype, const Scalar &value)
{
    const int bits = bitsOf(datatype);
    if (const auto *large = std::get_if<quint64>(&value)) {
        return datatype == Datatype::UInt64 ? wholeScalar(*large) : Scalar();
    }
    const auto *truth = std::get_if<bool>(&value);
    const auto *number = std::get_if<qint64>(&value);
    if (truth == nullptr && number == nullptr) {
        return {};
    }
    const qint64 whole = truth == nullptr ? *number : qint64(*truth ? 1 : 0);
    const bool isNegative = whole < 0;
    if (isNegative && !isSigned(datatype)) {
        return {};
    }
    if (bits == 64) {
        return whole;
    }
    const qint64 end = qint64(1) << (isSigned(datatype) ? bits - 1 : bits);
    return whole < end && whole >= -end ? Scalar(whole) : Scalar();
}

Scalar fractionAs(Datatype datatype, const Scalar &value)
{
    if (!isNumber(value)) {
        return {};
    }
    const double number = approximately(value);
    const bool fits = datatype == Datatype::Double ||
                      std::fabs(number) <= double(std::numeric_limits<float>::max());
    return fits && std::isfinite(number) ? Scalar(number) : Scalar();
}

/// The number that stood in the field, as the datatype has it.
Scalar wholeFrom(const CameValue &value, Datatype datatype)
{
    const int bits = bitsOf(datatype);
    const auto *narrow = std::get_if<quint32>(&value);
    const auto *wide = std::get_if<quint64>(&value);
    if (bits == 64 && wide != nullptr) {
        return datatype == Datatype::Int64 ? Scalar(static_cast<qint64>(*wide))
                                           : wholeScalar(*wide);
    }
    if (bits == 64 || narrow == nullptr) {
        return {};
    }
    // Some fill the upper half with the sign, others leave it 0.
    if (datatype == Datatype::Int16) {
        const auto number = static_cast<qint16>(*narrow);
        const bool fits = *narrow <= std::numeric_limits<quint16>::max() ||
                          static_cast<qint32>(*narrow) == number;
        return fits ? Scalar(qint64(number)) : Scalar();
    }
    const Scalar number = datatype == Datatype::Int32 ? Scalar(qint64(static_cast<qint32>(*narrow)))
                                                      : Scalar(qint64(*narrow));
    return wholeAs(datatype, number);
}

/// With the digits of a float: 0.1 and not 0.10000000149011612.
QString floatText(float number)
{
    int digits = std::numeric_limits<float>::digits10;
    QString text = QString::number(double(number), 'g', digits);
    while (text.toFloat() != number && digits < std::numeric_limits<float>::max_digits10) {
        text = QString::number(double(number), 'g', ++digits);
    }
    return text;
}

Scalar scalarFrom(const CameValue &value, Datatype datatype)
{
    const auto *truth = std::get_if<bool>(&value);
    const auto *text = std::get_if<QString>(&value);
    const auto *single = std::get_if<float>(&value);
    const auto *fraction = std::get_if<double>(&value);
    switch (datatype) {
    case Datatype::Boolean:
        return truth == nullptr ? Scalar() : Scalar(*truth);
    case Datatype::String:
        return text == nullptr ? Scalar() : Scalar(*text);
    case Datatype::Float:
        return single == nullptr ? Scalar() : fractionAs(datatype, double(*single));
    case Datatype::Double:
        return fraction == nullptr ? Scalar() : fractionAs(datatype, *fraction);
    default:
        return wholeFrom(value, datatype);
    }
}

} // namespace

Datatype datatypeOf(const ChangeSource &source)
{
    const ValueKind kind = source.type.kind;
    const bool isScaled = source.scale != 1 || source.offset != 0;
    if (kind == ValueKind::Bool || kind == ValueKind::Bit) {
        return Datatype::Boolean;
    }
    if (kind == ValueKind::String) {
        return Datatype::String;
    }
    if (isScaled) {
        const bool isWhole =
            source.type.isWhole() && isWholeNumber(source.scale) && isWholeNumber(source.offset);
        return isWhole ? Datatype::Int64 : Datatype::Double;
    }
    switch (kind) {
    case ValueKind::I16:
        return Datatype::Int16;
    case ValueKind::U32:
    case ValueKind::Bcd8:
        return Datatype::UInt32;
    case ValueKind::I32:
        return Datatype::Int32;
    case ValueKind::U64:
        return Datatype::UInt64;
    case ValueKind::I64:
        return Datatype::Int64;
    case ValueKind::F32:
        return Datatype::Float;
    case ValueKind::F64:
        return Datatype::Double;
    default:
        return Datatype::UInt16;
    }
}

Scalar valueAs(Datatype datatype, const Scalar &value)
{
    switch (datatype) {
    case Datatype::Boolean:
        return std::holds_alternative<bool>(value) ? value : Scalar();
    case Datatype::String:
        return std::holds_alternative<QString>(value) ? value : Scalar();
    case Datatype::Float:
    case Datatype::Double:
        return fractionAs(datatype, value);
    default:
        return wholeAs(datatype, value);
    }
}

MetricQuality metricQuality(Quality quality)
{
    switch (quality) {
    case Quality::Good:
    case Quality::Waiting:
        return MetricQuality::Good;
    case Quality::Stale:
    case Quality::NeverRead:
        return MetricQuality::Stale;
    default:
        return MetricQuality::Bad;
    }
}

bool isAnswered(Quality quality)
{
    return quality == Quality::Good || quality == Quality::Waiting ||
           quality == Quality::Implausible || quality == Quality::Refused;
}

bool isUnanswered(Quality quality)
{
    return quality == Quality::NoAnswer || quality == Quality::LineDown;
}

QString shownText(const CameValue &value)
{
    if (const auto *text = std::get_if<QString>(&value)) {
        return *text;
    }
    if (const auto *truth = std::get_if<bool>(&value)) {
        return QLatin1String(*truth ? "true" : "false");
    }
    if (const auto *number = std::get_if<quint32>(&value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<quint64>(&value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<float>(&value)) {
        return floatText(*number);
    }
    const auto *number = std::get_if<double>(&value);
    return number == nullptr ? QString()
                             : QString::number(*number, 'g', QLocale::FloatingPointShortest);
}

std::optional<QString> commandText(const CameMetric &command, Datatype datatype)
{
    if (command.datatype && *command.datatype != static_cast<quint32>(datatype)) {
        return std::nullopt;
    }
    const Scalar value = scalarFrom(command.value, datatype);
    if (const auto *truth = std::get_if<bool>(&value)) {
        return QLatin1String(*truth ? "true" : "false");
    }
    if (const auto *number = std::get_if<qint64>(&value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<quint64>(&value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<double>(&value)) {
        return datatype == Datatype::Float
                   ? floatText(static_cast<float>(*number))
                   : QString::number(*number, 'g', QLocale::FloatingPointShortest);
    }
    if (const auto *text = std::get_if<QString>(&value)) {
        return quotedText(*text);
    }
    return std::nullopt;
}

QVector<QVector<Metric>> inMessages(const QVector<Metric> &metrics)
{
    QVector<QVector<Metric>> messages;
    QHash<quint64, qint64> times;
    for (const Metric &metric : metrics) {
        const auto before = times.constFind(*metric.alias);
        const bool wentBack = before != times.cend() && metric.atMs < *before;
        if (messages.isEmpty() || wentBack || messages.last().size() >= kMostInMessage) {
            messages.append(QVector<Metric>());
            times.clear();
        }
        messages.last().append(metric);
        times.insert(*metric.alias, metric.atMs);
    }
    for (QVector<Metric> &message : messages) {
        std::stable_sort(
            message.begin(), message.end(),
            [](const Metric &one, const Metric &other) { return one.atMs < other.atMs; });
    }
    return messages;
}

} // namespace cnet::gateway
