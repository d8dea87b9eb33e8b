#pragma once

#include <QMetaType>
#include <QString>

#include <optional>

namespace cnet {

/** What the words of an item stand for. */
enum class ValueKind {
    Raw,    ///< each unit by itself: a word without sign, or a bit
    Bool,   ///< a bit or contact; of a word: anything but 0
    U16,    ///< a word without sign
    I16,    ///< a word in two's complement
    U32,    ///< two words without sign
    I32,    ///< two words in two's complement
    U64,    ///< four words without sign
    I64,    ///< four words in two's complement
    F32,    ///< two words, IEEE 754
    F64,    ///< four words, IEEE 754
    Bcd4,   ///< a word of four decimal digits
    Bcd8,   ///< two words of four decimal digits each
    Bit,    ///< one bit of a word
    String, ///< two characters a word
    Enum,   ///< a word without sign, of which numbers have a text
};

/** Which word of a value that takes several has the lower address. */
enum class WordOrder {
    LowFirst,  ///< the lower half, as the PLC's own instructions store it
    HighFirst, ///< the upper half
};

/** Which character of a word of a string comes first. */
enum class ByteOrder {
    LowFirst,  ///< the one in bits 0 to 7, as the PLC's own instructions store it
    HighFirst, ///< the one in bits 8 to 15
};

/** What fills a string up to its length. */
enum class Padding {
    Zero,  ///< a 0; the text ends at the first one
    Space, ///< blanks; those at the end are no part of the text, and a 0 ends it all the same
};

/** How the words of one value are to be read and written; no scale and no unit. */
struct ValueType
{
    ValueKind kind = ValueKind::Raw;
    WordOrder words = WordOrder::LowFirst;
    ByteOrder bytes = ByteOrder::LowFirst; ///< of String
    Padding padding = Padding::Zero;       ///< of String
    int bit = 0;                           ///< of Bit: 0 to 15
    int characters = 0;                    ///< of String: 1 or more

    /** Units of the register that one value takes: words, or 1 for a bit. At least 1. */
    int unitsPerValue() const;

    /** True where its values are whole numbers or bits, which no double may stand between. */
    bool isWhole() const;

    /** As parseValueType() takes it: "f32", "i32 high-first", "bit3", "string10". */
    QString text() const;

    bool operator==(const ValueType &other) const;
    bool operator!=(const ValueType &other) const { return !(*this == other); }
};

/**
 * Reads a type: its name, then in any order and where the name takes them "high-first" or
 * "low-first" (word order), "swapped" (byte order of a string) and "spaces" (its padding), with a
 * blank or a "," in front. A bit has its number behind the name, "bit3" or "bit 3"; a string its
 * number of characters, "string10" or "string 10".
 *
 * @param error receives one sentence, with what was expected, when the result is empty
 */
std::optional<ValueType> parseValueType(const QString &text, QString &error);

} // namespace cnet

Q_DECLARE_METATYPE(cnet::ValueType)
