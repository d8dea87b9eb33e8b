#include "panel/commands/commands.h"
#include "panel/options/command_items.h"
#include "panel/options/link_settings.h"
#include "panel/options/output_format.h"
#include "panel/options/tag_input.h"
#include "panel/reports/identify_output.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

// The longest types take four words; more words are more values of each.
const int kMostWords = 60;

void addOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    addTagsOption(parser);
    addFormatOption(parser, "text (default: a line for each reading), json or csv.");
    parser.addOption({QLatin1String("all"), QLatin1String("Shows also what the words can hardly "
                                                          "mean, and why not.")});
}

// A bit is a bit. And what has a type already needs no guess, unless it is a name: the type that
// the file gives it may be the very thing that is in doubt.
bool isUnknown(const Tag &tag)
{
    return !tag.item.reg.isBit() && tag.item.count <= kMostWords &&
           (!tag.name.isEmpty() || tag.type.kind == ValueKind::Raw);
}

bool readItem(const Invocation &invocation, int station, Item &item, QString &error)
{
    TagChoice choice;
    choice.station = station;
    ChosenTags chosen;
    const bool byName = invocation.parser.isSet(QLatin1String("tags"));
    // A file without any word stands for all its tags elsewhere.
    if (!(byName && invocation.arguments.isEmpty()) &&
        !readTags(invocation, choice, chosen, error)) {
        return false;
    }
    if (chosen.tags.size() != 1 || !isUnknown(chosen.tags.first())) {
        error = QString::fromLatin1(byName ? "expected one tag of 1 to %1 words, or an item "
                                             "without a type, for example D_W:100*4"
                                           : "expected one item of 1 to %1 words without a type, "
                                             "for example D_W:100*4")
                    .arg(kMostWords);
        return false;
    }
    item = chosen.tags.first().item;
    return true;
}

int readAndPrint(const Invocation &invocation, const LinkSettings &link, const Item &item,
                 OutputFormat format)
{
    CommandSession command(invocation.driver, link, {item.station}, invocation.messages);
    ReadJob *const job = command.session().read({item});
    QObject::connect(&command, &CommandSession::stopRequested, job, [&] {
        invocation.messages.say(QLatin1String("reading was given up: interrupted"));
        job->cancel();
    });
    const int exitCode = command.run(*job);
    const ReadResult &result = job->results().first();
    if (exitCode == kFine) {
        const bool all = invocation.parser.isSet(QLatin1String("all"));
        writeToStandardOutput(
            identifyOutput(result, format, all ? Readings::All : Readings::Plausible));
    } else if (exitCode != kNoLink) {
        invocation.messages.say(
            QString::fromLatin1("%1: %2").arg(item.text(), result.failure.text()));
    }
    return exitCode;
}

int run(const Invocation &invocation)
{
    QString error;
    Item item;
    OutputFormat format = OutputFormat::Text;
    const auto link = readLinkSettings(invocation.parser, LinkNeed::Optional, error);
    if (!link || !readFormatOption(invocation.parser, format, error) ||
        !readItem(invocation, link->station, item, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    return readAndPrint(invocation, *link, item, format);
}

} // namespace

const Command kIdentifyCommand = {
    "identify",
    "ITEM|--tags FILE NAME",
    "Reads words once and shows all that they may mean: whole numbers, floats and BCD in either "
    "word order, text, bits; each with the item to give to the other commands. With --tags the "
    "words of a tag, whatever its type.",
    "identify --link tcp:192.168.0.100:8000 'D_W:100*4'\n"
    "identify --link tcp:192.168.0.100:8000 --tags press.csv press.speed\n",
    addOptions,
    run};

} // namespace cnet::panel
