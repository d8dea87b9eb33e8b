#include "host/text/byte_text.h"

#include "host/wire/characters.h"

#include <QLatin1String>

namespace cnet {

namespace {

struct ControlName
{
    const char *name;
    char byte;
};

const ControlName kControlNames[] = {{"<ETX>", kEtx}, {"<EOT>", kEot}, {"<ENQ>", kEnq},
                                     {"<ACK>", kAck}, {"<NAK>", kNak}, {"<CR>", '\r'},
                                     {"<LF>", '\n'}};

const int kHighestByte = 0xff;

ByteText wrong(int at, const char *what)
{
    ByteText result;
    result.column = at + 1;
    result.error = QLatin1String(what);
    return result;
}

int digitAt(const QString &text, int at)
{
    const ushort letter = at < text.size() ? text.at(at).unicode() : 0;
    if (letter >= '0' && letter <= '9') {
        return letter - '0';
    }
    const ushort lower = letter | 0x20;
    return lower >= 'a' && lower <= 'f' && letter < 0x80 ? lower - 'a' + 10 : -1;
}

bool isSeparator(QChar letter)
{
    return letter.isSpace() || QLatin1String(",;:-").contains(letter);
}

bool startsAt(const QString &text, int at, const char *what)
{
    const QLatin1String name(what);
    return text.size() - at >= name.size() && text.at(at) == QLatin1Char(what[0]) &&
           text.mid(at, name.size()).compare(name, Qt::CaseInsensitive) == 0;
}

// "<ENQ>" and the like, in either case. @return its length, 0 where there is none
int readName(const QString &text, int at, char &byte)
{
    for (const ControlName &control : kControlNames) {
        if (text.at(at) == QLatin1Char('<') && startsAt(text, at, control.name)) {
            byte = control.byte;
            return static_cast<int>(qstrlen(control.name));
        }
    }
    return 0;
}

// What stands behind a backslash. @return the length of both, 0 where it is no escape
int readEscape(const QString &text, int at, char &byte)
{
    const ushort letter = at + 1 < text.size() ? text.at(at + 1).unicode() : 0;
    switch (letter) {
    case '\\':
        byte = '\\';
        return 2;
    case 'r':
        byte = '\r';
        return 2;
    case 'n':
        byte = '\n';
        return 2;
    case 't':
        byte = '\t';
        return 2;
    case 'x':
        if (digitAt(text, at + 2) >= 0 && digitAt(text, at + 3) >= 0) {
            byte = static_cast<char>(digitAt(text, at + 2) * 16 + digitAt(text, at + 3));
            return 4;
        }
        return 0;
    default:
        return 0;
    }
}

} // namespace

ByteText readHexText(const QString &text)
{
    ByteText result;
    const int size = static_cast<int>(text.size());
    for (int at = 0; at < size;) {
        if (isSeparator(text.at(at))) {
            ++at;
            continue;
        }
        const bool prefixed = startsAt(text, at, "0x");
        at += prefixed ? 2 : 0;
        const int high = digitAt(text, at);
        const int low = digitAt(text, at + 1);
        const bool single =
            prefixed && high >= 0 && low < 0 && (at + 1 >= size || isSeparator(text.at(at + 1)));
        if (high < 0 || (low < 0 && !single)) {
            return wrong(high < 0 ? at : at + 1, "expected two hexadecimal digits, as in 05");
        }
        result.bytes.append(static_cast<char>(single ? high : high * 16 + low));
        at += single ? 1 : 2;
    }
    return result;
}

ByteText readEscapedText(const QString &text)
{
    ByteText result;
    for (int at = 0; at < text.size();) {
        const QChar letter = text.at(at);
        char byte = '\0';
        int length = readName(text, at, byte);
        if (letter == QLatin1Char('\\')) {
            length = readEscape(text, at, byte);
            if (length == 0) {
                return wrong(at, "expected \\x and two hexadecimal digits, or \\\\");
            }
        }
        if (letter.unicode() > kHighestByte) {
            return wrong(at, "expected a character of one byte");
        }
        if (length > 0) {
            result.bytes.append(byte);
            at += length;
        } else {
            result.bytes.append(letter.toLatin1());
            ++at;
        }
    }
    return result;
}

} // namespace cnet
