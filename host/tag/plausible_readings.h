#pragma once

#include "host/tag/tag.h"
#include "host/value/typed_value.h"

#include <QVector>

namespace cnet {

/** One way to take a row of words. */
struct PossibleReading
{
    Tag tag; ///< without a name; its item begins where the words do, and counts what they hold
    QVector<TypedValue> values;
    bool isPlausible = true; ///< false: hardly what the words mean, or they cannot mean it
    QString doubt;           ///< why not, in a few words; empty where it is plausible

    /** Its values as people read them, "1.5, -3". */
    QString valuesText() const;
};

/**
 * All ways to take words: without and with sign, as 32 and 64 bits and as floats in either word
 * order, as BCD, as text in either byte order, and as bits. Ways that need more words than there
 * are are left out; words that are left over at the end are not part of a reading.
 *
 * @param item of words; at least one
 * @param words as many as the item counts
 */
QVector<PossibleReading> possibleReadings(const Item &item, const QVector<quint16> &words);

} // namespace cnet
