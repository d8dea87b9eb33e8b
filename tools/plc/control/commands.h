#pragma once

#include "plc/control/reply.h"
#include "plc/servers/connections.h"
#include "plc/setup/text_error.h"
#include "plc/stations/bus.h"

#include <functional>
#include <optional>

namespace plc {

/** What commands act upon. Functions that are missing do nothing. */
struct ControlTarget
{
    Bus *bus = nullptr;                 ///< must outlive it
    Connections *connections = nullptr; ///< null: there are none
    std::function<qint64()> nowMs;      ///< the program's clock; missing: 0, and nothing moves
    /** Saves the memory. @return why it cannot. Missing: the program was given no file. */
    std::function<std::optional<TextError>()> save;
    std::function<void()> quit;
};

/**
 * Carries out one command, such as "set D_W:100=5", and says what became of it. Whatever is wrong
 * with it, nothing else happens.
 *
 * @param line a name and its arguments, separated by blanks; neither blank nor a comment
 */
Reply runCommand(const QString &line, const ControlTarget &target);

/** Whether nothing is to be done: it is blank, or a comment that begins with "#". */
bool isRemark(const QString &line);

/** All commands with their forms and meanings, a line each. */
QStringList commandHelp();

} // namespace plc
