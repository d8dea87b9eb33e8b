#pragma once

#include "gateway/sinks/history_reader.h"

#include <QString>

namespace cnet::gateway {

enum class HistoryFormat { Text, Json, Csv };

/** What stands before the first row; with its line feed. */
QString historyHeader(HistoryFormat format);

/** A change on a line, with its line feed. */
QString historyLine(HistoryFormat format, const HistoryRow &row);

} // namespace cnet::gateway
