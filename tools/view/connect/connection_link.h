#pragma once

#include "view/connect/connection.h"

#include "host/link/link.h"

#include <memory>

namespace plc {
class Bus;
}

namespace cnet::view {

/**
 * The way to what somebody connects to, not opened yet.
 * @param line settings of the line, which count instead of the connection's own; a simulator has
 * its own
 */
std::unique_ptr<Link> makeConnectionLink(const Connection &connection, const LineSettings &line);

/** The stations behind a link, which has them; null where it is no simulator's. */
plc::Bus *simulatorOf(Link &link);

} // namespace cnet::view
