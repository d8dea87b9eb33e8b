#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

namespace cnet::gateway {

/** What the program tells its caller; documented, and must not move. */
enum ExitCode {
    kFine = 0,
    kFailed = 1, ///< what was asked for cannot be done now
    kUsage = 2,  ///< a bad command line or configuration
};

/** What a command is given. */
struct Invocation
{
    const QCommandLineParser &parser;
    QStringList arguments; ///< behind the command's name
};

// Each returns an exit code.
int runCheck(const Invocation &invocation);
int runHistory(const Invocation &invocation);
int runRun(const Invocation &invocation);
int runStatus(const Invocation &invocation);

/** Finds the command and runs it. @param arguments with the program's name */
int runCommandLine(const QStringList &arguments);

} // namespace cnet::gateway
