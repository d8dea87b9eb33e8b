#pragma once

#include "panel/output/monitor_output.h"

#include <QStringList>

namespace cnet::panel {

/**
 * The monitor's screen as lines of text: a heading, the items with their values, quality, age of
 * last reading and time of last change, and a line for each station. In front of each item is a
 * mark: "!" not good, "~" stale, ">" waiting for the PLC, "-" never read.
 *
 * @param columns,rows what the terminal can show; no line is longer
 * @param scrolled lines of items above the first one shown, where not all fit; is kept within
 * bounds
 */
QStringList screenText(const Monitor &monitor, const MonitorStatus &status, int columns, int rows,
                       int &scrolled);

/** "12 ms", "3.4 s", "15 min"; a dash for what never was. */
QString ageText(qint64 ageMs);

} // namespace cnet::panel
