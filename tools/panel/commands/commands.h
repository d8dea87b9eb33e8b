#pragma once

#include "host/driver/driver.h"
#include "panel/system/messages.h"

#include <QCommandLineParser>
#include <QString>
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

/** One command of the program. */
struct Command
{
    const char *name;      ///< one word or two
    const char *arguments; ///< for the usage line
    const char *summary;   ///< what it does, in a sentence or two
    const char *examples;  ///< a command line each, with a line feed behind it
    void (*addOptions)(QCommandLineParser &parser);
    int (*run)(const Invocation &invocation); ///< @return exit code
};

extern const Command kDecodeCommand;
extern const Command kDescribeCommand;
extern const Command kIdentifyCommand;
extern const Command kMonitorCommand;
extern const Command kReadCommand;
extern const Command kWriteCommand;
extern const Command kRecipeWriteCommand;
extern const Command kRecipeReadCommand;
extern const Command kScanCommand;
extern const Command kSendCommand;
extern const Command kCheckCommand;
extern const Command kSeriesCommand;
extern const Command kTagsCheckCommand;
extern const Command kTagsListCommand;

/**
 * Finds the command on the command line and runs it.
 *
 * @param arguments with the program's name
 * @return exit code
 */
int runCommandLine(const QStringList &arguments, Messages &messages);

} // namespace cnet::panel
