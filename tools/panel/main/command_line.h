#pragma once

#include "panel/system/messages.h"

#include <QStringList>

namespace cnet::panel {

/**
 * Finds the command on the command line and runs it.
 *
 * @param arguments with the program's name
 * @return exit code
 */
int runCommandLine(const QStringList &arguments, Messages &messages);

} // namespace cnet::panel
