#pragma once

#include "panel/views/view_body.h"

namespace cnet::panel {

/**
 * The monitor's screen: a heading, and the view that the user has chosen.
 *
 * The view of values has the items with their values, quality, age of the last reading and time of
 * the last change, and a line for each station. In front of each item is a mark: "!" not good,
 * "~" stale, ">" waiting for the PLC, "-" never read; behind a value that has just changed is "*".
 *
 * @param columns,rows what the terminal can show; no line is longer
 * @param scrolled lines of the list above the first one shown, where not all fit; is kept within
 * bounds
 */
QVector<StyledLine> screenLines(const ViewInput &input, int columns, int rows, int &scrolled);

} // namespace cnet::panel
