#pragma once

#include "host/address/register_info.h"
#include "host/value/typed_value.h"
#include "host/value/value_type.h"

#include <QVector>

#include <optional>

namespace cnet {

constexpr int kBitsOfWord = 16;

/**
 * Whether the values of a register can be of a type: a bit or contact is raw, bool or enum.
 * @return empty, or why not, in one sentence with an example
 */
QString typeMisfit(const RegisterInfo &reg, const ValueType &type);

/** The least and the greatest number that a whole type holds; of 64 bits see decodeValue(). */
struct WholeRange
{
    qint64 least = 0;
    quint64 greatest = 0;
};

/** @return nothing for types that are not whole */
std::optional<WholeRange> wholeRange(ValueKind kind);

/**
 * What the words of one value stand for, without scale. Nothing is guessed: where the words stand
 * for no value, there is a fault and no value. The text of a string may have control characters in
 * it.
 *
 * @param units words of the item, or 0 and 1 for bits and contacts
 * @param first index of the value's first unit; where units are missing the result is nothing
 */
TypedValue decodeValue(const ValueType &type, const QVector<quint16> &units, int first = 0);

/** All values that the units have room for. */
QVector<TypedValue> decodeValues(const ValueType &type, const QVector<quint16> &units);

/**
 * The words of one value: unitsPerValue() of them. Of Bit it is the 0 or 1 for the bit itself,
 * which must not go to the word.
 *
 * A floating-point number is rounded to what the type holds; everything else is exact or refused. A
 * shorter text is filled up, to the last word's end.
 *
 * @param error receives one sentence when the result is empty
 */
std::optional<QVector<quint16>> encodeValue(const ValueType &type, const Scalar &value,
                                            QString &error);

} // namespace cnet
