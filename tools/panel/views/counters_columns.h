#pragma once

#include "host/statistics/exchange_counters.h"
#include "panel/views/styled_line.h"

namespace cnet::panel {

/** The titles of appendCounters(). */
void appendCounterTitles(StyledLine &line);

/** Counters and response times, in columns that do not move. */
void appendCounters(StyledLine &line, const ExchangeCounters &counters);

} // namespace cnet::panel
