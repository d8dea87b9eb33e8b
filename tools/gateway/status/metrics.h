#pragma once

#include "gateway/status/process_usage.h"
#include "gateway/status/snapshot.h"

#include <QByteArray>

namespace cnet::gateway {

/**
 * All numbers of a snapshot as Prometheus reads them.
 * @param nowMs on the clock of the gateway
 */
QByteArray metricsText(const Snapshot &snapshot, const ProcessUsage &usage, qint64 nowMs);

} // namespace cnet::gateway
