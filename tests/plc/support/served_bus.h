#pragma once

#include "plc/servers/server_setup.h"
#include "plc/support/wire_text.h"

/** A bus whose station 1 holds 1234 in D 100, as a server is given it, and a read of that word. */
struct ServedBus
{
    ServedBus()
    {
        bus.add(1).station.memory().setWord('D', 100, 0x1234);
        setup.bus = &bus;
        setup.clock.start();
    }

    plc::Bus bus;
    plc::ServerSetup setup;

    Q_DISABLE_COPY(ServedBus)
};

const QByteArray kRead = wire("[ENQ]01RSS0107%DW0100[EOT]");
const QByteArray kData = wire("[ACK]01RSS01021234[ETX]");
