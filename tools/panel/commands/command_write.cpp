#include "panel/commands/commands.h"
#include "panel/options/item_list.h"
#include "panel/options/link_settings.h"
#include "panel/options/planned_write.h"
#include "panel/options/tag_input.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

void addOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    addTagsOption(parser);
}

// All of it before anything is queued: what the driver refuses never reaches the line, and
// neither does what stands before it on the command line.
bool readWrites(const Invocation &invocation, const LinkSettings &link,
                QVector<PlannedWrite> &writes, QString &error)
{
    QVector<ListedItem> items;
    if (!readLists(invocation.arguments, items, error)) {
        return false;
    }
    WriteReading reading{invocation.driver, link.station, link.session.blockWords, {}};
    if (invocation.parser.isSet(QLatin1String("tags"))) {
        const auto tags = readTagSet(invocation, invocation.parser.value(QLatin1String("tags")),
                                     link.station, error);
        if (!tags) {
            return false;
        }
        reading.tags = *tags;
    }
    for (const ListedItem &given : items) {
        const auto planned = planWrite(given.text, reading, error);
        if (!planned) {
            error = given.place + error;
            return false;
        }
        writes += *planned;
    }
    if (writes.isEmpty()) {
        error = QLatin1String("expected at least one ITEM=VALUE, for example D_W:100=1,2,3");
    }
    return !writes.isEmpty();
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
                  const QVector<PlannedWrite> &writes)
{
    const QVector<Assignment> assignments = assignmentsOf(writes);
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
    for (int i = 0; exitCode != kNoLink && i < writes.size(); ++i) {
        const WriteResult &result = job->results().at(i);
        const QString text = writes.at(i).resultText(result) + hint(result);
        writeToStandardOutput(text.toLocal8Bit() + '\n');
    }
    return exitCode;
}

int run(const Invocation &invocation)
{
    QString error;
    QVector<PlannedWrite> writes;
    const auto link = readLinkSettings(invocation.parser, LinkNeed::Required, error);
    if (!link || !readWrites(invocation, *link, writes, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    return writeAndPrint(invocation, *link, writes);
}

} // namespace

const Command kWriteCommand = {
    "write",
    "ITEM|NAME=VALUE[,VALUE...]...",
    "Writes values and says for each item whether the PLC took it. Values are 0 or 1 for bits and "
    "contacts, decimal (-32768 to 65535) or 0x0 to 0xFFFF for words; behind an item with a type "
    "what the type takes. Nothing is sent where one of them is wrong. ITEM as for monitor; with "
    "--tags the name of a tag, whose value is in its unit and within its bounds, or of one value "
    "of an array, zones[2], counted from 0.",
    "write --link tcp:192.168.0.100:8000 D_W:100=1,2,0xFF M_bit:3.5=1\n"
    "write --link serial:/dev/ttyUSB0 M_W:9*70=0\n"
    "write --link tcp:192.168.0.100:8000 D_W:110@f32=12.5 D_W:5@bit3=1\n"
    "write --link tcp:192.168.0.100:8000 --tags press.csv speed=12.5\n",
    addOptions,
    run};

} // namespace cnet::panel
