#include "panel/commands/command_items.h"
#include "panel/system/exit_code.h"
#include "panel/runs/one_off.h"
#include "panel/commands/output_format.h"
#include "panel/output/read_output.h"
#include "host/jobs/reader.h"
#include "panel/commands/link_settings.h"
#include "panel/system/standard_output.h"

#include <algorithm>

namespace cnet::panel {

namespace {

void addOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    addFormatOption(parser, "text (default: a line for each value), json or csv.");
}

int readAndPrint(const Invocation &invocation, const LinkSettings &link, const QVector<Item> &items,
                 OutputFormat format)
{
    OneOff oneOff(invocation.driver, link, stationsOf(items), invocation.messages);
    Session &session = oneOff.session();
    Reader reader(session.driver(), session.exchange(), link.blockWords);
    QObject::connect(&reader, &Reader::done, &session, [&] { session.finish(kFine); });
    oneOff.onGiveUp([&](const QString &reason) {
        invocation.messages.say(QLatin1String("reading was given up: ") + reason);
        reader.giveUp(reason);
        session.finish(kDeviceFailed);
    });
    reader.start(items);
    const int exitCode = oneOff.run();
    if (exitCode == kNoLink) {
        return kNoLink;
    }
    const QVector<ReadResult> results = reader.results();
    writeToStandardOutput(readOutput(results, format));
    const bool allGood = std::all_of(results.cbegin(), results.cend(),
                                     [](const ReadResult &result) { return result.isGood(); });
    return allGood ? kFine : kDeviceFailed;
}

int run(const Invocation &invocation)
{
    QString error;
    QVector<Item> items;
    OutputFormat format = OutputFormat::Text;
    const auto link = readLinkSettings(invocation.parser, error);
    if (!link || !readFormatOption(invocation.parser, format, error) ||
        !readItems(invocation, link->station, items, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    return readAndPrint(invocation, *link, items, format);
}

} // namespace

const Command kReadCommand = {
    "read", "ITEM...", "Reads values once and prints them. ITEM as for monitor.", addOptions, run};

} // namespace cnet::panel
