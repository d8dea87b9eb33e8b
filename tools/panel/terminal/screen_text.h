#pragma once

#include "panel/output/monitor_output.h"

#include <QStringList>

namespace cnet::panel {

/**
 * The monitor's screen as lines of text: a heading, the items with their values, time of last
 * change and age of last reading, and a line for each station.
 *
 * @param columns,rows what the terminal can show; no line is longer, and items that do not fit are
 * replaced by a line that counts them
 */
QStringList screenText(const Monitor &monitor, const MonitorStatus &status, int columns, int rows);

/** "12 ms", "3.4 s", "15 min"; a dash for what never was. */
QString ageText(qint64 ageMs);

} // namespace cnet::panel
