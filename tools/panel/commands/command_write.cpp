#include "host/address/assignment.h"
#include "panel/commands/commands.h"
#include "panel/system/exit_code.h"
#include "host/driver/item_check.h"
#include "panel/runs/one_off.h"
#include "panel/commands/link_settings.h"
#include "panel/system/standard_output.h"
#include "panel/runs/write_run.h"

#include <algorithm>

namespace cnet::panel {

namespace {

// All addresses before anything is queued: what the driver refuses never reaches the line, and
// neither does what stands before it on the command line.
bool readAssignments(const Invocation &invocation, int station, QVector<Assignment> &assignments,
                     QString &error)
{
    for (const QString &text : invocation.arguments) {
        const auto assignment = parseAssignment(text, station, invocation.registers, error);
        if (!assignment || !checkItem(invocation.driver, assignment->item, Access::Write, error)) {
            return false;
        }
        assignments.append(*assignment);
    }
    if (assignments.isEmpty()) {
        error = QLatin1String("expected at least one ITEM=VALUE, for example D_W:100=1,2,3");
    }
    return !assignments.isEmpty();
}

int run(const Invocation &invocation)
{
    QString error;
    QVector<Assignment> assignments;
    const auto link = readLinkSettings(invocation.parser, error);
    if (!link || !readAssignments(invocation, link->station, assignments, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    QVector<WriteResult> results;
    const int exitCode =
        runWrites(invocation.driver, *link, assignments, invocation.messages, results);
    if (exitCode != kNoLink) {
        for (const WriteResult &result : results) {
            writeToStandardOutput(result.text().toLocal8Bit() + '\n');
        }
    }
    return exitCode;
}

} // namespace

const Command kWriteCommand = {
    "write", "ITEM=VALUE[,VALUE...]...",
    "Writes values and says for each item whether the PLC took it. Values are 0 or 1 for bits and "
    "contacts, decimal (-32768 to 65535) or 0x0 to 0xFFFF for words; ITEM as for monitor.",
    addLinkOptions, run};

} // namespace cnet::panel
