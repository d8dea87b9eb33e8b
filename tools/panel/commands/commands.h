#pragma once

#include "panel/options/invocation.h"

namespace cnet::panel {

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
extern const Command kReplayCommand;
extern const Command kScanCommand;
extern const Command kSendCommand;
extern const Command kCheckCommand;
extern const Command kSeriesCommand;
extern const Command kTagsCheckCommand;
extern const Command kTagsListCommand;

} // namespace cnet::panel
