#include "host/value/json_value.h"

#include <QLocale>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace cnet {

namespace {

const qint64 kExactInDouble = qint64(1) << 53;

bool isExact(qint64 number)
{
    return number >= -kExactInDouble && number <= kExactInDouble;
}

QByteArray quoted(const QByteArray &digits)
{
    return '"' + digits + '"';
}

// As JSON has it: control characters are never themselves.
void appendEscaped(QByteArray &to, char character)
{
    const char *const hex = "0123456789abcdef";
    const auto code = static_cast<unsigned char>(character);
    to += '\\';
    if (code >= 0x20) {
        to += character;
        return;
    }
    to += "u00";
    to += hex[code >> 4U];
    to += hex[code & 0xfU];
}

} // namespace

QJsonValue jsonValue(const Scalar &value)
{
    if (const auto *truth = std::get_if<bool>(&value)) {
        return *truth;
    }
    if (const auto *number = std::get_if<qint64>(&value)) {
        return isExact(*number) ? QJsonValue(*number) : QJsonValue(QString::number(*number));
    }
    if (const auto *number = std::get_if<quint64>(&value)) {
        return QString::number(*number);
    }
    if (const auto *number = std::get_if<double>(&value)) {
        return *number;
    }
    const auto *text = std::get_if<QString>(&value);
    return text == nullptr ? QJsonValue() : QJsonValue(*text);
}

void appendJson(QByteArray &to, const Scalar &value)
{
    if (const auto *truth = std::get_if<bool>(&value)) {
        to += *truth ? "true" : "false";
    } else if (const auto *number = std::get_if<qint64>(&value)) {
        if (isExact(*number)) {
            appendNumber(to, *number);
        } else {
            to += quoted(QByteArray::number(*number));
        }
    } else if (const auto *large = std::get_if<quint64>(&value)) {
        to += quoted(QByteArray::number(*large));
    } else if (const auto *fraction = std::get_if<double>(&value);
               fraction != nullptr && std::isfinite(*fraction)) {
        to += QByteArray::number(*fraction, 'g', QLocale::FloatingPointShortest);
    } else if (const auto *text = std::get_if<QString>(&value)) {
        appendJson(to, *text);
    } else {
        to += "null";
    }
}

void appendNumber(QByteArray &to, qint64 number)
{
    std::array<char, std::numeric_limits<qint64>::digits10 + 2> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    to.append(digits.data(), static_cast<int>(end.ptr - digits.data()));
}

void appendJson(QByteArray &to, const QString &text)
{
    to += '"';
    for (const char character : text.toUtf8()) {
        if (character == '"' || character == '\\' || static_cast<unsigned char>(character) < 0x20) {
            appendEscaped(to, character);
        } else {
            to += character;
        }
    }
    to += '"';
}

} // namespace cnet
