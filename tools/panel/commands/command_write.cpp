#include "host/address/assignment.h"
#include "panel/commands/commands.h"
#include "panel/commands/link_settings.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

// All addresses before anything is queued: what the driver refuses never reaches the line, and
// neither does what stands before it on the command line.
bool readAssignments(const Invocation &invocation, int station, QVector<Assignment> &assignments,
                     QString &error)
{
    for (const QString &text : invocation.arguments) {
        const auto assignment =
            parseAssignment(text, station, invocation.driver.registers(), error);
        if (!assignment || !invocation.driver.check(assignment->item, Access::Write, error)) {
            return false;
        }
        assignments.append(*assignment);
    }
    if (assignments.isEmpty()) {
        error = QLatin1String("expected at least one ITEM=VALUE, for example D_W:100=1,2,3");
    }
    return !assignments.isEmpty();
}

// The driver takes every register for writable; the PLC does not.
QString hint(const WriteResult &result)
{
    const bool special = result.assignment.item.reg.letter() == QLatin1String("F");
    return special && result.outcome == WriteOutcome::Refused
               ? QLatin1String("; the special relays F can only be read")
               : QString();
}

int writeAndPrint(const Invocation &invocation, const LinkSettings &link,
                  const QVector<Assignment> &assignments)
{
    QVector<Item> items;
    for (const Assignment &assignment : assignments) {
        items.append(assignment.item);
    }
    CommandSession command(invocation.driver, link, stationsOf(items), invocation.messages);
    WriteJob *const job = command.session().write(assignments);
    QObject::connect(&command, &CommandSession::stopRequested, job, [&] {
        invocation.messages.say(QLatin1String("writing was given up: interrupted"));
        job->cancel();
    });
    const int exitCode = command.run(*job);
    for (const WriteResult &result : job->results()) {
        if (exitCode != kNoLink) {
            writeToStandardOutput((result.text() + hint(result)).toLocal8Bit() + '\n');
        }
    }
    return exitCode;
}

int run(const Invocation &invocation)
{
    QString error;
    QVector<Assignment> assignments;
    const auto link = readLinkSettings(invocation.parser, LinkNeed::Required, error);
    if (!link || !readAssignments(invocation, link->station, assignments, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    return writeAndPrint(invocation, *link, assignments);
}

} // namespace

const Command kWriteCommand = {
    "write",
    "ITEM=VALUE[,VALUE...]...",
    "Writes values and says for each item whether the PLC took it. Values are 0 or 1 for bits and "
    "contacts, decimal (-32768 to 65535) or 0x0 to 0xFFFF for words; ITEM as for monitor.",
    "write --link tcp:192.168.0.100:8000 D_W:100=1,2,0xFF M_bit:3.5=1\n"
    "write --link serial:/dev/ttyUSB0 M_W:9*70=0\n",
    addLinkOptions,
    run};

} // namespace cnet::panel
