#pragma once

#include "plc/options/options.h"
#include "plc/stations/bus.h"

#include <QStringList>

namespace plc {

/** Why the program does not start, or what is to be told though it does. */
struct Trouble
{
    ExitCode code = kExitFine; ///< kExitFine: it does
    QStringList messages;      ///< a line each
};

/** Adds the stations and what runs in them; the command line has the last word on their memory. */
Trouble fillBus(const Options &options, Bus &bus);

} // namespace plc
