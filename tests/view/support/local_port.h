#pragma once

#include "view/connect/connection.h"

namespace cnet::view {

/** To a PLC, or to whatever listens, on this machine. */
inline Connection connectionTo(quint16 port)
{
    Connection connection;
    connection.kind = Connection::Kind::Tcp;
    connection.address.kind = LinkAddress::Kind::Tcp;
    connection.address.host = QLatin1String("127.0.0.1");
    connection.address.port = port;
    return connection;
}

} // namespace cnet::view
