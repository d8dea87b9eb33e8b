#pragma once

#include "panel/commands/commands.h"

#include <QVector>

namespace cnet::panel {

/** The page of --help: of the program where `command` is nullptr, else of that command. */
QString helpText(const QCommandLineParser &parser, const Command *command,
                 const QVector<const Command *> &commands);

/** Text in lines of at most 79 characters. @param indent blanks before each line */
QString wrapped(const QString &text, int indent);

} // namespace cnet::panel
