#include "host/value/string_text.h"

#include "host/address/value_text.h"

namespace cnet {

namespace {

const QChar kMark = QLatin1Char('"');
const QChar kEscape = QLatin1Char('\\');

bool isControl(QChar letter)
{
    return letter.category() == QChar::Other_Control;
}

/// Reads what stands behind a "\". @param at its index; is set to that of the last character read
std::optional<QChar> escaped(const QString &text, int &at)
{
    const QChar letter = at + 1 < text.size() ? text.at(++at) : QChar();
    if (letter == kMark || letter == kEscape) {
        return letter;
    }
    if (letter == QLatin1Char('n')) {
        return QLatin1Char('\n');
    }
    if (letter == QLatin1Char('r')) {
        return QLatin1Char('\r');
    }
    if (letter == QLatin1Char('t')) {
        return QLatin1Char('\t');
    }
    // Qt's conversion alone would take a sign and blanks, too.
    const QByteArray digits = text.mid(at + 1, 2).toLatin1();
    const QByteArray code = QByteArray::fromHex(digits);
    if (letter != QLatin1Char('x') || code.toHex() != digits.toLower() || code.size() != 1) {
        return std::nullopt;
    }
    at += 2;
    return QLatin1Char(code.at(0));
}

} // namespace

QString quotedText(const QString &text)
{
    QString quoted = kMark;
    for (const QChar letter : text) {
        if (letter == kMark || letter == kEscape) {
            quoted += kEscape;
        }
        if (isControl(letter)) {
            const QString code = QString::number(letter.unicode(), 16).toUpper();
            quoted += QLatin1String("\\x") + code.rightJustified(2, QLatin1Char('0'));
        } else {
            quoted += letter;
        }
    }
    return quoted + kMark;
}

std::optional<QString> unquotedText(const QString &text, QString &error)
{
    if (!text.startsWith(kMark)) {
        return text;
    }
    QString read;
    int at = 1;
    for (; at < text.size() && text.at(at) != kMark; ++at) {
        const auto letter = text.at(at) == kEscape ? escaped(text, at) : text.at(at);
        if (!letter) {
            error = QString::fromLatin1("%1: expected \\\\, \\\", \\n, \\r, \\t or \\x and two "
                                        "hexadecimal digits, for example \"a\\x0Ab\"")
                        .arg(quotable(text));
            return std::nullopt;
        }
        read += *letter;
    }
    if (at + 1 != text.size()) {
        error = QString::fromLatin1("%1: expected one quotation mark at the end, for example "
                                    "\"abc\"")
                    .arg(quotable(text));
        return std::nullopt;
    }
    return read;
}

QStringList splitValues(const QString &list)
{
    QStringList values(QString{});
    bool isQuoted = false;
    for (int i = 0; i < list.size(); ++i) {
        const QChar letter = list.at(i);
        if (letter == kMark) {
            isQuoted = isQuoted || values.last().trimmed().isEmpty() ? !isQuoted : isQuoted;
        }
        if (letter == QLatin1Char(',') && !isQuoted) {
            values.append(QString());
            continue;
        }
        values.last() += letter;
        if (letter == kEscape && isQuoted && i + 1 < list.size()) {
            values.last() += list.at(++i);
        }
    }
    return values;
}

} // namespace cnet
