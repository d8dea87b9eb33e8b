#pragma once

#include "host/statistics/exchange_counters.h"
#include "panel/terminal/styled_line.h"

namespace cnet::panel {

/** "999999", "1.0M", "12.3G": what a column of seven has room for, and never a number cut short. */
QString countText(qint64 count);

/** The titles of appendCounters(). */
void appendCounterTitles(StyledLine &line);

/** Counters and response times, in columns that do not move. */
void appendCounters(StyledLine &line, const ExchangeCounters &counters);

} // namespace cnet::panel
