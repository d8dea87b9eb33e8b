#pragma once

#include "host/monitor/monitor.h"
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
 * quality column has too much, and the mark in front stays in any case.
 */
ValueColumns valueColumns(const Monitor &monitor, Trend trend, int columns);

/** How many values of an item stand on one line. */
int valuesOfLine(const RegisterInfo &reg, const ValueColumns &widths, Trend trend);

/** Columns of one value. */
int cellWidth(const RegisterInfo &reg, const ValueColumns &widths);

/** "1/D_W:100" */
QString placeText(const Item &item, int offset);

} // namespace cnet::panel
