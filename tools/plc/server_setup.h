#pragma once

#include "line.h"

#include <QElapsedTimer>
#include <QString>

#include <functional>

namespace plc {

/** What all servers of one program share. */
struct ServerSetup
{
    Bus *bus = nullptr;  ///< outlives the servers
    QElapsedTimer clock; ///< started; the time for ramps
    int baud = 0;        ///< see Line::setBaud()
    /** Gets each exchange and the name of the connection it came by; may be empty. */
    std::function<void(const QString &connection, const Exchange &)> trace;
};

} // namespace plc
