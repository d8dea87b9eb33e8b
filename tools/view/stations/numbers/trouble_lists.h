#pragma once

#include "host/statistics/statistics.h"

#include <QStringList>
#include <QVector>

namespace cnet::view {

/**
 * What went wrong with requests to a station, by kind, with its number: "No answer", "12". Kinds
 * that never happened are left out.
 */
QVector<QStringList> troubleRows(const ExchangeCounters &counters);

/**
 * The blocks of a station that were refused: addresses, reason in words, how often. By register and
 * address; of each block its codes in turn.
 */
QVector<QStringList> refusedRows(const BlockBook &blocks, int station);

} // namespace cnet::view
