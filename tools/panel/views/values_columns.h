#pragma once

#include "host/monitor/monitor.h"
#include "host/tag/tag.h"
#include "panel/views/view_state.h"

namespace cnet::panel {

/** Columns of the list of values; 0: the terminal has no room for it. */
struct ValueColumns
{
    static constexpr int kMark = 2; ///< what cannot be cut away: is the value good

    int address = 0;
    int values = 0;
    int quality = 0;
    int extremes = 0; ///< least and greatest value, the curve behind them; else on a line below
    int age = 0;
    int change = 0;
    bool isDecimalOnly = false; ///< words are shown without their hexadecimal form
};

/**
 * Shares out the columns of a terminal. What tells whether a value is good is the last to go: the
 * age and the time of the change go first, then the hexadecimal form of words, then what the
 * quality column has too much, and the mark in front stays in any case. Names take half of the
 * columns at most.
 *
 * @param tags what the monitor's items stand for, as many; empty: plain words and bits
 */
ValueColumns valueColumns(const Monitor &monitor, Trend trend, int columns,
                          const QVector<Tag> &tags = {});

/** How many values of an item stand on one line. */
int valuesOfLine(const RegisterInfo &reg, const ValueColumns &widths, Trend trend);

/** Columns of one value. */
int cellWidth(const RegisterInfo &reg, const ValueColumns &widths);

/** "1/D_W:100", or the name of a tag that has one. @param offset of the value in the item */
QString placeText(const Tag &tag, const Item &item, int offset);

/** A name that fits a column: of a long one the end, as in "..oil.pressure". @param width above 2
 */
QString shortenedName(const QString &name, int width);

/** What a filter looks for: name, group, address and quality. */
QString searchedText(const Tag &tag, const ItemState &state);

} // namespace cnet::panel
