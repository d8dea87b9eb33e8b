#include "host/address/value_text.h"

#include <QRegularExpression>
#include <QStringList>

namespace cnet {

namespace {

const int kLowestSigned = -32768;
const int kHighestUnsigned = 65535;
const int kLongestQuote = 60;

bool isHexadecimal(const QString &text)
{
    return text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
}

} // namespace

std::optional<quint16> parseValue(const QString &text, bool isBit)
{
    // Qt's own conversion also takes signs, blanks and other prefixes within the text.
    static const QRegularExpression hexadecimal(QLatin1String("\\A0[xX]0*([0-9A-Fa-f]{1,4})\\z"));
    static const QRegularExpression decimal(QLatin1String("\\A-?0*([0-9]{1,5})\\z"));
    const QString trimmed = text.trimmed();
    if (isBit) {
        const bool isOne = trimmed == QLatin1String("1");
        return isOne || trimmed == QLatin1String("0") ? std::optional<quint16>(isOne ? 1 : 0)
                                                      : std::nullopt;
    }
    const QRegularExpressionMatch hex = hexadecimal.match(trimmed);
    if (hex.hasMatch()) {
        return hex.captured(1).toUShort(nullptr, 16);
    }
    const QRegularExpressionMatch digits = decimal.match(trimmed);
    if (!digits.hasMatch()) {
        return std::nullopt;
    }
    const int size = digits.captured(1).toInt();
    const int number = trimmed.startsWith(QLatin1Char('-')) ? -size : size;
    if (number < kLowestSigned || number > kHighestUnsigned) {
        return std::nullopt;
    }
    return static_cast<quint16>(number);
}

QString valueText(quint16 value, bool isBit)
{
    if (isBit) {
        return QString::number(value);
    }
    // By hand: it is made for many a value of each captured frame.
    QString text = QString::number(value) + QLatin1String(" 0x");
    const int bitsPerDigit = 4;
    for (int shift = 12; shift >= 0; shift -= bitsPerDigit) {
        text += QLatin1Char("0123456789ABCDEF"[value >> shift & 0xF]);
    }
    return text;
}

QString valuesText(const QVector<quint16> &values, bool isBit)
{
    const int most = 8;
    QStringList texts;
    for (const quint16 value : values.mid(0, most)) {
        texts.append(valueText(value, isBit));
    }
    const QString text = texts.join(QLatin1String(", "));
    return values.size() <= most
               ? text
               : QString::fromLatin1("%1, ... (%2 in all)").arg(text).arg(values.size());
}

QString valueHint(bool isBit)
{
    return isBit ? QLatin1String("0 or 1") : QLatin1String("-32768 to 65535 or 0x0 to 0xFFFF");
}

QString valueTextLike(quint16 value, const QString &like)
{
    const auto before = parseValue(like, false);
    if (before && *before == value) {
        return like;
    }
    const QString trimmed = like.trimmed();
    if (isHexadecimal(trimmed)) {
        const QString digits = QString::number(value, 16).toUpper();
        return QLatin1String("0x") + digits.rightJustified(4, QLatin1Char('0'));
    }
    return trimmed.startsWith(QLatin1Char('-')) ? QString::number(static_cast<qint16>(value))
                                                : QString::number(value);
}

QString quotable(const QString &text)
{
    QString line = text.left(kLongestQuote);
    for (QChar &letter : line) {
        if (!letter.isPrint() || letter == QChar(QChar::ReplacementCharacter)) {
            letter = QLatin1Char('?');
        }
    }
    return text.size() > kLongestQuote ? line + QLatin1String("...") : line;
}

QString counted(qint64 count, const char *noun)
{
    return QString::fromLatin1("%1 %2%3").arg(count).arg(QLatin1String(noun),
                                                         QLatin1String(count == 1 ? "" : "s"));
}

QString wrongCountText(qint64 count, qint64 given)
{
    return count == 1
               ? QString::fromLatin1("expected 1 value, not %1").arg(given)
               : QString::fromLatin1("expected 1 or %1 values, not %2").arg(count).arg(given);
}

} // namespace cnet
