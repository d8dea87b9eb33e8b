#include "view/connect/connection_link.h"

#include "plc/scenario/scenarios.h"
#include "simulation/link_sim.h"

namespace cnet::view {

namespace {

// The press is the same one each time.
constexpr quint32 kSeed = 1;

} // namespace

std::unique_ptr<Link> makeConnectionLink(const Connection &connection, const LineSettings &line)
{
    if (connection.kind != Connection::Kind::Simulator) {
        LinkAddress address = connection.address;
        address.line = line;
        return makeLink(address);
    }
    auto link = std::make_unique<LinkSim>(QVector<int>(), connection.address.line.baud);
    link->bus().add(connection.station).scenario = plc::makeScenario(QLatin1String("press"), kSeed);
    return link;
}

plc::Bus *simulatorOf(Link &link)
{
    auto *simulated = dynamic_cast<LinkSim *>(&link);
    return simulated != nullptr ? &simulated->bus() : nullptr;
}

} // namespace cnet::view
