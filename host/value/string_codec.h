#pragma once

#include "host/value/value_type.h"

#include <QVector>

#include <optional>

namespace cnet {

/**
 * The text in the words of a string, each byte a character of Latin-1. It ends at the first 0,
 * since a memory that was never written is full of them; with Padding::Space blanks at the end do
 * not count.
 *
 * @param type of ValueKind::String
 * @param units has unitsPerValue() words from `first` on
 */
QString decodeString(const ValueType &type, const QVector<quint16> &units, int first);

/**
 * The words of a text, filled up to the end of the last one.
 * @param error receives one sentence when the result is empty: a text too long, or a character that
 * Latin-1 does not have or that would end the text
 */
std::optional<QVector<quint16>> encodeString(const ValueType &type, const QString &text,
                                             QString &error);

} // namespace cnet
