#include "host/link/link.h"
#include "host/link/link_serial.h"
#include "host/link/link_tcp.h"

namespace cnet {

std::unique_ptr<Link> makeLink(const LinkAddress &address)
{
    switch (address.kind) {
    case LinkAddress::Kind::Tcp:
        return std::make_unique<LinkTcp>(address.host, address.port);
    case LinkAddress::Kind::Serial:
        break;
    }
    return std::make_unique<LinkSerial>(address.device, address.line);
}

} // namespace cnet
