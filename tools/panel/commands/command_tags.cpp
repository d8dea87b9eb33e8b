#include "host/address/item.h"
#include "panel/commands/commands.h"
#include "panel/options/link_settings.h"
#include "panel/options/output_format.h"
#include "panel/options/tag_input.h"
#include "panel/reports/tag_check_output.h"
#include "panel/reports/tag_list_output.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

const int kMostFindings = 1000000;

void addStationOption(QCommandLineParser &parser)
{
    parser.addOption({QLatin1String("station"),
                      QLatin1String("Station of tags that name none, 0-31; default 1."),
                      QLatin1String("N")});
}

void addCheckOptions(QCommandLineParser &parser)
{
    addStationOption(parser);
    addFormatOption(parser, "text (default: a line for each mistake and warning) or json.");
    parser.addOption(
        {QLatin1String("limit"),
         QLatin1String("Mistakes and warnings to list, 0-1000000; default 100. All are "
                       "counted."),
         QLatin1String("N")});
}

void addListOptions(QCommandLineParser &parser)
{
    addStationOption(parser);
    addFormatOption(parser, "text (default: a table), json, or csv, which is a tag file again.");
}

bool readStation(const Invocation &invocation, int &station, QString &error)
{
    return readNumberOption(invocation.parser, QLatin1String("station"), 0, kHighestStation,
                            station, error);
}

int refuse(const Invocation &invocation, const QString &error)
{
    invocation.messages.say(error);
    return kUsage;
}

int runCheck(const Invocation &invocation)
{
    QString error;
    int station = 1;
    int limit = kUsualFindings;
    OutputFormat format = OutputFormat::Text;
    if (invocation.arguments.size() != 1) {
        return refuse(invocation, QLatin1String("expected tags check FILE"));
    }
    if (!readStation(invocation, station, error) ||
        !readNumberOption(invocation.parser, QLatin1String("limit"), 0, kMostFindings, limit,
                          error) ||
        !readFormatOption(invocation.parser, format, error)) {
        return refuse(invocation, error);
    }
    if (format == OutputFormat::Csv) {
        return refuse(invocation, QLatin1String("--format 'csv': expected text or json"));
    }
    const QString path = invocation.arguments.first();
    const auto file = readTagFile(invocation, path, station, limit, error);
    if (!file) {
        return refuse(invocation, error);
    }
    writeToStandardOutput(format == OutputFormat::Json ? tagCheckJson(path, *file)
                                                       : tagCheckText(path, *file));
    return file->isGood() ? kFine : kUsage;
}

int runList(const Invocation &invocation)
{
    QString error;
    int station = 1;
    OutputFormat format = OutputFormat::Text;
    if (invocation.arguments.isEmpty()) {
        return refuse(invocation, QLatin1String("expected tags list FILE [NAME|GROUP|GLOB]..."));
    }
    if (!readStation(invocation, station, error) ||
        !readFormatOption(invocation.parser, format, error)) {
        return refuse(invocation, error);
    }
    const auto tags = readTagSet(invocation, invocation.arguments.first(), station, error);
    const auto chosen = tags ? tags->select(invocation.arguments.mid(1), error) : std::nullopt;
    if (!chosen) {
        return refuse(invocation, error);
    }
    QVector<Tag> listed;
    for (const int index : *chosen) {
        listed.append(tags->all().at(index));
    }
    writeToStandardOutput(tagListOutput(listed, format));
    return kFine;
}

} // namespace

const Command kTagsCheckCommand = {
    "tags check",
    "FILE",
    "Says all that is wrong with a tag file, as FILE:LINE:COLUMN: FIELD: what, why, an example, "
    "and "
    "warns of what is allowed and seldom meant. Ends with 2 "
    "when there is a mistake; warnings do not count. FILE is CSV with the columns name, register "
    "and address, and maybe station, type, count, scale, offset, unit, min, max, deadband, access, "
    "texts, description and group.",
    "tags check press.csv\n"
    "tags check press.csv --format json\n",
    addCheckOptions,
    runCheck};

const Command kTagsListCommand = {"tags list",
                                  "FILE [NAME|GROUP|GLOB]...",
                                  "Prints tags of a file: all of them, or those with a name, of a "
                                  "group, or with names that fit a "
                                  "pattern with * and ?.",
                                  "tags list press.csv 'press.*' oven/heating\n"
                                  "tags list press.csv --format csv oven > oven.csv\n",
                                  addListOptions,
                                  runList};

} // namespace cnet::panel
