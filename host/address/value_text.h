#pragma once

#include <QString>
#include <QVector>

#include <optional>

namespace cnet {

/**
 * Reads a value as the user writes it: a word as a decimal number from -32768 to 65535 or as 0x and
 * one to four hexadecimal digits, a bit or contact as 0 or 1. Blanks around it do not count.
 *
 * @return nothing for anything else; a negative word comes as its two's complement
 */
std::optional<quint16> parseValue(const QString &text, bool isBit);

/** "4660 0x1234", or "1" for a bit or contact. */
QString valueText(quint16 value, bool isBit);

/** Several of them: "4660 0x1234, 5 0x0005". Of a long row the first ones, and how many there are.
 */
QString valuesText(const QVector<quint16> &values, bool isBit);

/** What parseValue() takes, for a message: "0 or 1". */
QString valueHint(bool isBit);

/**
 * A value in the way of writing of another one, so that a hexadecimal or negative value in a file
 * stays one.
 *
 * @param like how the value was written before; it comes back as it is where it says the same
 */
QString valueTextLike(quint16 value, const QString &like);

/**
 * Text from a file or a command line, fit for one line of a message: control characters and what is
 * no character become "?", and a long text is cut.
 */
QString quotable(const QString &text);

/** "1 word", "2 words". */
QString counted(qint64 count, const char *noun);

/**
 * What is wrong with so many values for an item with a count, which takes that many, or one for
 * all: "expected 1 or 3 values, not 2".
 */
QString wrongCountText(qint64 count, qint64 given);

} // namespace cnet
