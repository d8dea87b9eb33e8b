#include "panel/commands/commands.h"
#include "panel/options/command_items.h"
#include "panel/options/link_settings.h"
#include "panel/options/output_format.h"
#include "panel/options/tag_input.h"
#include "panel/runs/monitor_run.h"
#include "panel/system/exit_code.h"

#include <cmath>

namespace cnet::panel {

namespace {

// What a timer of the event loop can hold: 24 days.
const double kLongestSeconds = 2000000;
const int kHighestRounds = 1000000000;

void addOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    addTagsOption(parser);
    addIntervalOption(parser);
    parser.addOption(
        {QLatin1String("for"), QLatin1String("Ends after this time."), QLatin1String("SECONDS")});
    parser.addOption({QLatin1String("count"),
                      QLatin1String("Ends after this many rounds. A round is over when every block "
                                    "was read or given up once."),
                      QLatin1String("N")});
    addFormatOption(parser, "text (default: a table on a terminal, otherwise a line for each "
                            "change), json or csv.");
}

bool readDuration(const QCommandLineParser &parser, qint64 &durationMs, QString &error)
{
    const QString text = parser.value(QLatin1String("for"));
    if (!parser.isSet(QLatin1String("for"))) {
        return true;
    }
    bool ok = false;
    const double seconds = text.toDouble(&ok);
    if (!ok || !(seconds > 0 && seconds <= kLongestSeconds)) {
        error = QString::fromLatin1("--for '%1': expected a number of seconds above 0, at most %2")
                    .arg(text)
                    .arg(kLongestSeconds, 0, 'f', 0);
        return false;
    }
    durationMs = std::llround(std::ceil(seconds * 1000));
    return true;
}

int run(const Invocation &invocation)
{
    QString error;
    MonitorRun monitorRun;
    ChosenTags chosen;
    TagChoice choice;
    const QCommandLineParser &parser = invocation.parser;
    const auto link = readLinkSettings(parser, LinkNeed::Optional, error);
    choice.station = link ? link->station : choice.station;
    if (!link || !readFormatOption(parser, monitorRun.format, error) ||
        !readDuration(parser, monitorRun.durationMs, error) ||
        !readNumberOption(parser, QLatin1String("count"), 1, kHighestRounds, monitorRun.rounds,
                          error) ||
        !readTags(invocation, choice, chosen, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    monitorRun.tags = chosen.tags;
    monitorRun.writable = chosen.all;
    if (!choice.path.isEmpty()) {
        monitorRun.tagFile = choice.path;
        monitorRun.chooseAgain = [&invocation, choice](QStringList &complaints) {
            return chooseAgain(invocation, choice, complaints);
        };
    }
    return runMonitor(invocation.driver, *link, monitorRun, invocation.messages);
}

} // namespace

const Command kMonitorCommand = {
    "monitor",
    "ITEM...|--tags FILE [NAME|GROUP|GLOB]...",
    "Shows values live. ITEM is [STATION/]REGISTER:ADDRESS[*COUNT][@TYPE[*SCALE][+OFFSET]]; TYPE "
    "is bool, u16, i16, u32, i32, u64, i64, f32, f64, bcd4, bcd8, bitN, stringN or enum, and COUNT "
    "counts values of it. @FILE and - stand for items on the lines of a file and of standard "
    "input. With --tags the tags of a file are shown by their names: all of them, or those with a "
    "name, of a group, or with names that fit a pattern with * and ?, one value of an array, "
    "mould.zones[2] counted from 0, and items among them. Keys on a terminal: 1 to 4 "
    "or v show values, stations, blocks or the log, / filters, m "
    "shows extremes and a curve, w writes a value, r reads the tags again, R counts anew, the "
    "arrow keys scroll.",
    "monitor D_W:100*10 2/M_bit:3.5 TX:7\n"
    "monitor 'D_W:0*4@i16*0.1' D_W:20@f32 D_W:7@u32,high-first\n"
    "monitor --link serial:/dev/ttyS0,9600,8,EVEN,1 D_W:100*10\n"
    "monitor --tags press.csv 'press.*' alarm\n"
    "monitor --link tcp:192.168.0.100:8000 --for 60 --format csv D_W:0\n",
    addOptions,
    run};

} // namespace cnet::panel
