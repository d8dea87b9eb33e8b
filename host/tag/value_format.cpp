#include "host/tag/value_format.h"

#include "host/address/value_text.h"
#include "host/tag/scaling.h"
#include "host/value/string_text.h"
#include "host/value/value_codec.h"

#include <QLocale>
#include <QRegularExpression>

#include <cmath>

namespace cnet {

namespace {

const int kFloatDigits = 9; // as many as any float needs

/// 0.1 as a float is 0.100000001490116 as a double, and 0.1 to people.
QString floatText(double number)
{
    for (int digits = 1; digits < kFloatDigits; ++digits) {
        QString text = QString::number(number, 'g', digits);
        if (text.toFloat() == static_cast<float>(number)) {
            return text;
        }
    }
    return QString::number(number, 'g', kFloatDigits);
}

QString fractionText(const Tag &tag, double number)
{
    if (tag.isScaled() && tag.type.isWhole()) {
        return QString::number(number, 'f', decimalsOf(tag));
    }
    const bool isFloat = tag.type.kind == ValueKind::F32 && !tag.isScaled();
    return isFloat ? floatText(number)
                   : QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QString wholeText(const Tag &tag, qint64 number)
{
    const bool isEnum = tag.type.kind == ValueKind::Enum;
    return isEnum && tag.texts.contains(number) ? tag.texts.value(number) : QString::number(number);
}

QString mistake(const Tag &tag, const QString &text, const char *expected)
{
    return QString::fromLatin1("'%1' is no value of %2: expected %3")
        .arg(quotable(text), tag.type.text(), QLatin1String(expected));
}

std::optional<Scalar> parseTruth(const Tag &tag, const QString &text, QString &error)
{
    const QString word = text.toLower();
    for (const char *yes : {"1", "true", "on"}) {
        if (word == QLatin1String(yes)) {
            return true;
        }
    }
    for (const char *no : {"0", "false", "off"}) {
        if (word == QLatin1String(no)) {
            return false;
        }
    }
    error = mistake(tag, text, "0 or 1, false or true, off or on");
    return std::nullopt;
}

/// 0xFFFF of an i16 is -1: people who write hexadecimal have the words in mind.
std::optional<Scalar> parseHexadecimal(const Tag &tag, const QString &digits)
{
    bool ok = false;
    const quint64 bits = digits.toULongLong(&ok, 16);
    const int width = tag.type.unitsPerValue() * kBitsOfWord;
    if (!ok || (width < 64 && bits >> width != 0)) {
        return std::nullopt;
    }
    const auto range = wholeRange(tag.type.kind);
    const bool isSigned = range && range->least < 0;
    const bool isNegative = isSigned && (bits >> (width - 1) & 1) != 0;
    if (!isNegative) {
        return wholeScalar(bits);
    }
    return static_cast<qint64>(width < 64 ? bits | ~quint64(0) << width : bits);
}

std::optional<Scalar> wholeNumber(const QString &text)
{
    bool ok = false;
    if (const qint64 small = text.toLongLong(&ok); ok) {
        return Scalar(small);
    }
    if (const quint64 large = text.toULongLong(&ok); ok) {
        return Scalar(large);
    }
    return std::nullopt;
}

std::optional<Scalar> fraction(const QString &text)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok && std::isfinite(number) ? std::optional<Scalar>(number) : std::nullopt;
}

std::optional<Scalar> numberIn(const Tag &tag, const QString &text, bool takesHex)
{
    static const QRegularExpression hexadecimal(QLatin1String("\\A0[xX]([0-9A-Fa-f]+)\\z"));
    static const QRegularExpression whole(QLatin1String("\\A[+-]?[0-9]+\\z"));
    static const QRegularExpression number(
        QLatin1String("\\A[+-]?[0-9]*\\.?[0-9]+(?:[eE][+-]?[0-9]{1,3})?\\z"));
    const QRegularExpressionMatch hex = hexadecimal.match(text);
    if (hex.hasMatch() && takesHex) {
        return parseHexadecimal(tag, hex.captured(1));
    }
    if (whole.match(text).hasMatch() && tag.type.isWhole()) {
        return wholeNumber(text);
    }
    return number.match(text).hasMatch() ? fraction(text) : std::nullopt;
}

std::optional<Scalar> parseNumber(const Tag &tag, const QString &text, QString &error)
{
    const bool isDecimal = tag.type.kind == ValueKind::Bcd4 || tag.type.kind == ValueKind::Bcd8;
    const bool takesHex = tag.type.isWhole() && !tag.isScaled() && !isDecimal;
    std::optional<Scalar> value = numberIn(tag, text, takesHex);
    if (!value) {
        error =
            mistake(tag, text,
                    takesHex ? "a number, for example 12 or 0x1F" : "a number, for example 12.5");
    }
    return value;
}

std::optional<Scalar> parseEnum(const Tag &tag, const QString &text, QString &error)
{
    QString name = text;
    QString ignored;
    if (text.startsWith(QLatin1Char('"'))) {
        name = unquotedText(text, ignored).value_or(text);
    }
    for (const Qt::CaseSensitivity strictness : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (auto it = tag.texts.cbegin(); it != tag.texts.cend(); ++it) {
            if (it.value().compare(name, strictness) == 0) {
                return it.key();
            }
        }
    }
    auto number = parseNumber(tag, text, ignored);
    if (!number) {
        QStringList texts = tag.texts.values();
        error =
            mistake(tag, text, texts.isEmpty() ? "a number, for example 1" : "one of its texts");
        error += texts.isEmpty() ? QString()
                                 : QLatin1String(", ") + texts.mid(0, 8).join(QLatin1String(", ")) +
                                       QLatin1String(", or a number");
    }
    return number;
}

} // namespace

QString typedText(const Tag &tag, const TypedValue &value)
{
    if (const auto *truth = std::get_if<bool>(&value.value)) {
        const bool asDigit = tag.type.kind == ValueKind::Bit;
        return asDigit ? QString::number(*truth ? 1 : 0) : QLatin1String(*truth ? "true" : "false");
    }
    if (const auto *number = std::get_if<qint64>(&value.value)) {
        return wholeText(tag, *number);
    }
    if (const auto *number = std::get_if<quint64>(&value.value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<double>(&value.value)) {
        return fractionText(tag, *number);
    }
    const auto *text = std::get_if<QString>(&value.value);
    return text == nullptr ? QLatin1String("-") : quotedText(*text);
}

QString shownText(const Tag &tag, const TypedValue &value)
{
    QString text = typedText(tag, value);
    if (value.isKnown() && !tag.unit.isEmpty()) {
        text += QLatin1Char(' ') + tag.unit;
    }
    return value.fault == ValueFault::None
               ? text
               : QString::fromLatin1("%1 (%2)").arg(text, faultText(value.fault));
}

std::optional<Scalar> parseTyped(const Tag &tag, const QString &text, QString &error)
{
    const QString trimmed = text.trimmed();
    switch (tag.type.kind) {
    case ValueKind::String: {
        const auto read = unquotedText(trimmed, error);
        return read ? std::optional<Scalar>(*read) : std::nullopt;
    }
    case ValueKind::Bool:
    case ValueKind::Bit:
        return parseTruth(tag, trimmed, error);
    case ValueKind::Enum:
        return parseEnum(tag, trimmed, error);
    default:
        return tag.item.reg.isBit() ? parseTruth(tag, trimmed, error)
                                    : parseNumber(tag, trimmed, error);
    }
}

} // namespace cnet
