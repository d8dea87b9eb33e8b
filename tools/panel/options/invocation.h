#pragma once

#include "host/driver/driver.h"
#include "panel/system/messages.h"

#include <QCommandLineParser>
#include <QStringList>

namespace cnet::panel {

/** What a command is given: its command line, parsed, and the loaded driver. */
struct Invocation
{
    const QCommandLineParser &parser;
    QStringList arguments; ///< positional ones behind the command's name
    Driver &driver;
    Messages &messages;
};

} // namespace cnet::panel
