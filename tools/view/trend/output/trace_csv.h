#pragma once

#include "view/trend/traces/trace_set.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace cnet::view {

/** A spreadsheet does not take many more rows. */
constexpr int kMostCsvRows = 1000000;

/**
 * The visible traces as rows of time, name and value: first what held when the time began, then
 * each change. Where nothing is known the value is empty.
 *
 * @param error receives one sentence when the result is empty: there is nothing, or too much
 */
std::optional<QByteArray> traceCsv(const TraceSet &traces, const Range &time, QString &error);

} // namespace cnet::view
