#pragma once

#include "host/capture/capture.h"
#include "plc/stations/line.h"

#include <QElapsedTimer>
#include <QString>

#include <functional>

namespace plc {

/** The settings that all servers of one program share. */
struct ServerSetup
{
    Bus *bus = nullptr;  ///< must outlive the servers
    QElapsedTimer clock; ///< running; the time for motions
    int baud = 0;        ///< see Line::setBaud()
    /** Called for each exchange, with the name of its connection; may be empty. */
    std::function<void(const QString &connection, const Exchange &)> trace;
    cnet::Capture *capture = nullptr; ///< must outlive the servers; null: none
};

} // namespace plc
