#include "host/tag/plausible_readings.h"

#include "host/tag/value_format.h"
#include "host/value/value_codec.h"

#include <QStringList>

#include <array>
#include <cmath>

namespace cnet {

namespace {

// What a machine measures lies well within; words that mean something else mostly do not.
const double kSmallestSize = 1e-9;
const double kGreatestSize = 1e12;

const std::array<ValueKind, 10> kNumbers = {
    ValueKind::U16, ValueKind::I16, ValueKind::U32, ValueKind::I32,  ValueKind::F32,
    ValueKind::U64, ValueKind::I64, ValueKind::F64, ValueKind::Bcd4, ValueKind::Bcd8};

QString doubtOfNumber(const TypedValue &value)
{
    if (value.fault != ValueFault::None) {
        return faultText(value.fault);
    }
    const double size = std::fabs(approximately(value.value));
    if (size > kGreatestSize) {
        return QLatin1String("very large");
    }
    return size > 0 && size < kSmallestSize ? QLatin1String("very small") : QString();
}

QString doubtOfText(const ValueType &type, const TypedValue &value, const QVector<quint16> &words)
{
    const QString text = std::get<QString>(value.value);
    QString ignored;
    if (text.isEmpty()) {
        return QLatin1String("empty");
    }
    for (const QChar letter : text) {
        if (!letter.isPrint()) {
            return QLatin1String("not printable");
        }
    }
    const bool isAll = encodeValue(type, value.value, ignored) == words;
    return isAll ? QString() : QLatin1String("more behind its end");
}

PossibleReading readingOf(const Item &item, const QVector<quint16> &words, const ValueType &type)
{
    PossibleReading reading;
    reading.tag.item = item;
    reading.tag.type = type;
    reading.values = decodeValues(type, words);
    reading.tag.count = static_cast<int>(reading.values.size());
    reading.tag.item.count = reading.tag.count * type.unitsPerValue();
    for (const TypedValue &value : reading.values) {
        const QString doubt =
            type.kind == ValueKind::String ? doubtOfText(type, value, words) : doubtOfNumber(value);
        reading.doubt = reading.doubt.isEmpty() ? doubt : reading.doubt;
    }
    reading.isPlausible = reading.doubt.isEmpty();
    return reading;
}

QVector<ValueType> typesFor(int words)
{
    QVector<ValueType> types;
    for (const ValueKind kind : kNumbers) {
        ValueType type;
        type.kind = kind;
        types.append(type);
        if (type.unitsPerValue() > 1) {
            type.words = WordOrder::HighFirst;
            types.append(type);
        }
    }
    ValueType text;
    text.kind = ValueKind::String;
    text.characters = 2 * words;
    types.append(text);
    text.bytes = ByteOrder::HighFirst;
    types.append(text);
    return types;
}

} // namespace

QString PossibleReading::valuesText() const
{
    QStringList texts;
    for (const TypedValue &value : values) {
        texts.append(typedText(tag, value));
    }
    return texts.join(QLatin1String(", "));
}

QVector<PossibleReading> possibleReadings(const Item &item, const QVector<quint16> &words)
{
    QVector<PossibleReading> readings;
    for (const ValueType &type : typesFor(static_cast<int>(words.size()))) {
        if (type.unitsPerValue() <= words.size()) {
            readings.append(readingOf(item, words, type));
        }
    }
    for (int bit = 0; bit < kBitsOfWord; ++bit) {
        ValueType type;
        type.kind = ValueKind::Bit;
        type.bit = bit;
        readings.append(readingOf(item, words, type));
    }
    return readings;
}

} // namespace cnet
