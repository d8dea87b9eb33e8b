#include "panel/link.h"

#include "panel/link_serial.h"
#include "panel/link_sim.h"
#include "panel/link_tcp.h"

namespace panel {

std::unique_ptr<Link> makeLink(const LinkAddress &address, const QVector<int> &stations)
{
    switch (address.kind) {
    case LinkAddress::Kind::Tcp:
        return std::make_unique<LinkTcp>(address.host, address.port);
    case LinkAddress::Kind::Serial:
        return std::make_unique<LinkSerial>(address.device, address.line);
    case LinkAddress::Kind::Sim:
        break;
    }
    return std::make_unique<LinkSim>(stations, address.line.baud);
}

} // namespace panel
