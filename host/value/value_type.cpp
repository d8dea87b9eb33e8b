#include "host/value/value_type.h"

#include "host/address/value_text.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace cnet {

namespace {

const int kHighestBit = 15;
const int kMostCharacters = 65535; // more than any memory of the PLC holds
const int kCharactersPerWord = 2;

struct KindName
{
    ValueKind kind;
    const char *name;
};

const std::array<KindName, 15> kKinds = {{
    {ValueKind::Raw, "raw"},
    {ValueKind::Bool, "bool"},
    {ValueKind::U16, "u16"},
    {ValueKind::I16, "i16"},
    {ValueKind::U32, "u32"},
    {ValueKind::I32, "i32"},
    {ValueKind::U64, "u64"},
    {ValueKind::I64, "i64"},
    {ValueKind::F32, "f32"},
    {ValueKind::F64, "f64"},
    {ValueKind::Bcd4, "bcd4"},
    {ValueKind::Bcd8, "bcd8"},
    {ValueKind::Bit, "bit"},
    {ValueKind::String, "string"},
    {ValueKind::Enum, "enum"},
}};

bool isNumber(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), [](QChar letter) {
        return letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
    });
}

/// "bit 3" as two words of the text is "bit3".
QStringList wordsOf(const QString &text)
{
    QString blanks = text.toLower();
    blanks.replace(QLatin1Char(','), QLatin1Char(' '));
    QStringList words = blanks.simplified().split(QLatin1Char(' '));
    const bool takesNumber =
        words.first() == QLatin1String("bit") || words.first() == QLatin1String("string");
    if (takesNumber && words.size() > 1 && isNumber(words.at(1))) {
        words.first() += words.takeAt(1);
    }
    return words;
}

QString unknownType(const QString &word)
{
    return QString::fromLatin1("'%1' is no type; expected bool, u16, i16, u32, i32, u64, i64, f32, "
                               "f64, bcd4, bcd8, bit0 to bit15, string1 and up, enum or raw, for "
                               "example f32")
        .arg(quotable(word));
}

/// Reads what stands behind "bit" or "string".
bool readNumber(const QString &digits, int low, int high, int &number)
{
    bool fits = isNumber(digits);
    number = fits ? digits.toInt(&fits) : 0;
    return fits && number >= low && number <= high;
}

std::optional<ValueType> parseName(const QString &word, QString &error)
{
    ValueType type;
    for (const KindName &known : kKinds) {
        if (word == QLatin1String(known.name)) {
            type.kind = known.kind;
        }
    }
    const QString bit = QLatin1String("bit");
    const QString string = QLatin1String("string");
    if (word.startsWith(bit)) {
        type.kind = ValueKind::Bit;
        if (!readNumber(word.mid(bit.size()), 0, kHighestBit, type.bit)) {
            error = QString::fromLatin1("'%1': expected the number of a bit, 0 to %2, for example "
                                        "bit3")
                        .arg(quotable(word))
                        .arg(kHighestBit);
            return std::nullopt;
        }
    } else if (word.startsWith(string)) {
        type.kind = ValueKind::String;
        if (!readNumber(word.mid(string.size()), 1, kMostCharacters, type.characters)) {
            error = QString::fromLatin1("'%1': expected a number of characters, 1 to %2, for "
                                        "example string10")
                        .arg(quotable(word))
                        .arg(kMostCharacters);
            return std::nullopt;
        }
    } else if (type.kind == ValueKind::Raw && word != QLatin1String("raw")) {
        error = unknownType(word);
        return std::nullopt;
    }
    return type;
}

bool hasWordOrder(ValueKind kind)
{
    ValueType type;
    type.kind = kind;
    return kind != ValueKind::String && type.unitsPerValue() > 1;
}

/// @return false where the word is none that this type takes
bool takeDetail(const QString &word, ValueType &type)
{
    const bool isText = type.kind == ValueKind::String;
    const bool isLong = hasWordOrder(type.kind);
    if (isLong && word == QLatin1String("high-first")) {
        type.words = WordOrder::HighFirst;
    } else if (isText && word == QLatin1String("swapped")) {
        type.bytes = ByteOrder::HighFirst;
    } else if (isText && word == QLatin1String("spaces")) {
        type.padding = Padding::Space;
    } else {
        return isLong && word == QLatin1String("low-first");
    }
    return true;
}

/// Of the two word orders only one can be told.
QString kindOfDetail(const QString &word)
{
    return word.endsWith(QLatin1String("-first")) ? QLatin1String("order") : word;
}

QString detailHint(const ValueType &type)
{
    if (type.kind == ValueKind::String) {
        return QLatin1String("each of 'swapped' and 'spaces' once, for example string10 swapped");
    }
    return hasWordOrder(type.kind)
               ? QLatin1String("one of 'low-first' and 'high-first', for example f32 high-first")
               : QLatin1String("nothing more");
}

} // namespace

int ValueType::unitsPerValue() const
{
    switch (kind) {
    case ValueKind::U32:
    case ValueKind::I32:
    case ValueKind::F32:
    case ValueKind::Bcd8:
        return 2;
    case ValueKind::U64:
    case ValueKind::I64:
    case ValueKind::F64:
        return 4;
    case ValueKind::String:
        return std::max(1, (characters + kCharactersPerWord - 1) / kCharactersPerWord);
    default:
        return 1;
    }
}

bool ValueType::isWhole() const
{
    return kind != ValueKind::F32 && kind != ValueKind::F64 && kind != ValueKind::String;
}

QString ValueType::text() const
{
    QString text = QLatin1String(kKinds.at(static_cast<std::size_t>(kind)).name);
    if (kind == ValueKind::Bit) {
        text += QString::number(bit);
    } else if (kind == ValueKind::String) {
        text += QString::number(characters);
        text += QLatin1String(bytes == ByteOrder::HighFirst ? " swapped" : "");
        text += QLatin1String(padding == Padding::Space ? " spaces" : "");
    } else if (hasWordOrder(kind) && words == WordOrder::HighFirst) {
        text += QLatin1String(" high-first");
    }
    return text;
}

bool ValueType::operator==(const ValueType &other) const
{
    return kind == other.kind && words == other.words && bytes == other.bytes &&
           padding == other.padding && bit == other.bit && characters == other.characters;
}

std::optional<ValueType> parseValueType(const QString &text, QString &error)
{
    QStringList words = wordsOf(text);
    auto type = parseName(words.takeFirst(), error);
    if (!type) {
        return std::nullopt;
    }
    QStringList taken;
    for (const QString &word : words) {
        const ValueType before = *type;
        if (taken.contains(kindOfDetail(word)) || !takeDetail(word, *type)) {
            error = QString::fromLatin1("'%1' does not fit behind %2; expected %3")
                        .arg(quotable(word), before.text(), detailHint(before));
            return std::nullopt;
        }
        taken.append(kindOfDetail(word));
    }
    return type;
}

} // namespace cnet
