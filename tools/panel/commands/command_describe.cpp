#include "panel/commands/commands.h"
#include "panel/reports/describe_text.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

void addOptions(QCommandLineParser & /*parser*/) {}

int run(const Invocation &invocation)
{
    if (!invocation.arguments.isEmpty()) {
        invocation.messages.say(QString::fromLatin1("'%1': describe takes no arguments")
                                    .arg(invocation.arguments.first()));
        return kUsage;
    }
    writeToStandardOutput(describeText(invocation.driver).toLocal8Bit());
    return kFine;
}

} // namespace

const Command kDescribeCommand = {
    "describe",   "",         "What the driver says of itself and its registers.",
    "describe\n", addOptions, run};

} // namespace cnet::panel
