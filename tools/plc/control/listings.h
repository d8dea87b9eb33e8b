#pragma once

#include "plc/control/reply.h"
#include "plc/servers/connections.h"
#include "plc/setup/point_text.h"
#include "plc/stations/bus.h"

#include <vector>

namespace plc {

/** `show` shows at most so many values at once. */
constexpr int kMostShown = 4096;

/** The values of ranges; refused if there are more than `kMostShown`, or one does not exist. */
Reply showValues(const std::vector<Range> &ranges, Bus &bus);

/** The faults that may still fire. */
Reply listFaults(Bus &bus);

Reply listMotions(Bus &bus);
Reply listStations(Bus &bus);

/** @param nowMs on the clock that says since when they are there */
Reply listConnections(const Connections &connections, qint64 nowMs);

} // namespace plc
