#include "panel/commands/commands.h"
#include "panel/options/command_items.h"
#include "panel/options/link_settings.h"
#include "panel/options/output_format.h"
#include "panel/options/tag_input.h"
#include "panel/output/read_output.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

void addOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    addTagsOption(parser);
    addFormatOption(parser, "text (default: a line for each value), json or csv.");
}

int readAndPrint(const Invocation &invocation, const LinkSettings &link, const QVector<Tag> &tags,
                 OutputFormat format)
{
    const QVector<Item> items = itemsOf(tags);
    CommandSession command(invocation.driver, link, stationsOf(items), invocation.messages);
    ReadJob *const job = command.session().read(items);
    QObject::connect(&command, &CommandSession::stopRequested, job, [&] {
        invocation.messages.say(QLatin1String("reading was given up: interrupted"));
        job->cancel();
    });
    const int exitCode = command.run(*job);
    if (exitCode != kNoLink) {
        writeToStandardOutput(readOutput(job->results(), tags, format));
    }
    return exitCode == kFine && !isAllGood(job->results(), tags) ? kDeviceFailed : exitCode;
}

int run(const Invocation &invocation)
{
    QString error;
    TagChoice choice;
    ChosenTags chosen;
    OutputFormat format = OutputFormat::Text;
    const auto link = readLinkSettings(invocation.parser, LinkNeed::Optional, error);
    choice.station = link ? link->station : choice.station;
    if (!link || !readFormatOption(invocation.parser, format, error) ||
        !readTags(invocation, choice, chosen, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    return readAndPrint(invocation, *link, chosen.tags, format);
}

} // namespace

const Command kReadCommand = {"read",
                              "ITEM...|--tags FILE [NAME|GROUP|GLOB]...",
                              "Reads values once and prints them. ITEM and --tags as for "
                              "monitor.",
                              "read --link tcp:192.168.0.100:8000 1/D_W:0*60 2/TX:7\n"
                              "read --link serial:/dev/ttyUSB0 --format json M_bit:3.0*16\n"
                              "read 'D_W:0*4@i16*0.1' D_W:100@f32 @press.txt\n"
                              "read --tags press.csv 'press.*' 'mould.zones[2]' D_W:5\n",
                              addOptions,
                              run};

} // namespace cnet::panel
