#include "host/address/value_text.h"
#include "host/decode/frame_decoder.h"
#include "host/decode/frame_text.h"
#include "host/exchange/raw_exchange.h"
#include "host/wire/frame_words.h"
#include "panel/commands/commands.h"
#include "panel/options/link_settings.h"
#include "panel/options/output_format.h"
#include "panel/replay/recorded_items.h"
#include "panel/replay/replay_run.h"
#include "panel/runs/monitor_run.h"
#include "panel/system/exit_code.h"
#include "panel/system/input_file.h"

#include <plc/replay/replay.h>

#include <algorithm>

namespace cnet::panel {

namespace {

const double kLowestSpeed = 0.01;
const double kHighestSpeed = 1000;

void addOptions(QCommandLineParser &parser)
{
    addLineOptions(parser);
    addFormatOption(parser, "text (default) or json.");
    const auto add = [&parser](const char *name, const char *description, const char *value = "") {
        parser.addOption({QLatin1String(name), QLatin1String(description), QLatin1String(value)});
    };
    add("offline", "Instead of --link: runs the recorded answers through the driver, as a monitor "
                   "of what was read.");
    add("replay-line", "Which line, where the capture has several.", "NAME");
    add("speed", "How much faster than it was, 0.01-1000 (default 1), or full: without pauses.",
        "N|full");
    add("yes", "Sends what writes, or what is no plain reading, too.");
    add("skip-writes", "Leaves it out.");
}

bool readSpeed(const QCommandLineParser &parser, double &speed, QString &error)
{
    const QString text = parser.value(QLatin1String("speed"));
    if (!parser.isSet(QLatin1String("speed"))) {
        return true;
    }
    bool ok = false;
    speed = text.toDouble(&ok);
    if (text == QLatin1String("full")) {
        speed = plc::kFullSpeed;
        return true;
    }
    if (!ok || !(speed >= kLowestSpeed && speed <= kHighestSpeed)) {
        error = QString::fromLatin1("--speed '%1': expected a number from 0.01 to 1000, or full")
                    .arg(quotable(text));
        return false;
    }
    return true;
}

/** The line of the capture that the command line names. @param remarks what is missing in it */
std::optional<RecordedLine> readLine(const Invocation &invocation, QStringList &remarks,
                                     QString &error)
{
    if (invocation.arguments.size() != 1) {
        error = QLatin1String("expected one capture, for example replay case.pcapng --offline");
        return std::nullopt;
    }
    const QString &path = invocation.arguments.first();
    const auto content = readInputFile(path, kMostRecordingBytes, error);
    if (!content) {
        return std::nullopt;
    }
    const Recording recording = readRecording(*content);
    const RecordedLine *const line =
        recording.error.isEmpty()
            ? findLine(recording, invocation.parser.value(QLatin1String("replay-line")), error)
            : nullptr;
    const QString before = quotable(path) + QLatin1String(": ");
    if (line == nullptr) {
        error = before + (recording.error.isEmpty() ? QLatin1String("--replay-line: ") + error
                                                    : recording.error);
        return std::nullopt;
    }
    for (const QString &remark : recording.remarks) {
        remarks << before + remark;
    }
    return *line;
}

// What may change something in a plant is sent on request only.
bool readWrites(const QCommandLineParser &parser, std::vector<RecordedExchange> &exchanges,
                QString &error)
{
    if (parser.isSet(QLatin1String("yes"))) {
        return true;
    }
    const auto reads = [](const RecordedExchange &exchange) {
        return onlyReads(exchange.request.bytes);
    };
    const auto all = exchanges.size();
    const auto first = std::find_if_not(exchanges.begin(), exchanges.end(), reads);
    if (first == exchanges.end()) {
        return true;
    }
    const auto plain = std::count_if(exchanges.begin(), exchanges.end(), reads);
    if (parser.isSet(QLatin1String("skip-writes")) && plain > 0) {
        exchanges.erase(std::stable_partition(first, exchanges.end(), reads), exchanges.end());
        return true;
    }
    error = QString::fromLatin1("%1 of %2 write, or are no plain readings: the first is packet "
                                "%3, %4; --yes sends them%5")
                .arg(QString::number(static_cast<qint64>(all) - plain),
                     counted(static_cast<qint64>(all), "request"),
                     QString::number(first->request.number),
                     quotable(frameSummary(decodeFrame(first->request.bytes))),
                     QLatin1String(plain > 0 ? ", --skip-writes leaves them out" : ""));
    return false;
}

int runOffline(const Invocation &invocation, LinkSettings &link, const RecordedLine &line,
               const ReplayOptions &options)
{
    const RecordedItems recorded = recordedItems(line, invocation.driver);
    if (recorded.items.isEmpty()) {
        invocation.messages.say(QLatin1String("nothing is read in it that the driver takes"));
        return kUsage;
    }
    if (recorded.leftOut > 0) {
        invocation.messages.say(
            QString::fromLatin1(
                "left out, since the driver does not take it, or it is too much: %1")
                .arg(counted(recorded.leftOut, "row")));
    }
    link.replay = std::make_shared<plc::Replay>(line, options.speed);
    link.replayName = QLatin1String("the capture of ") + line.name;
    link.session.blockWords = recorded.blockWords;
    link.session.intervalMs = static_cast<int>(recorded.intervalMs / options.speed);
    MonitorRun run;
    for (const Item &item : recorded.items) {
        Tag tag;
        tag.item = item;
        tag.count = item.count;
        run.tags.append(tag);
    }
    run.format = options.format;
    // What comes then is no part of the capture any more.
    run.rounds = recorded.rounds;
    run.request = recorded.mostFrequent;
    return runMonitor(invocation.driver, link, run, invocation.messages);
}

bool readPlace(const QCommandLineParser &parser, QString &error)
{
    if (parser.isSet(QLatin1String("offline")) != parser.isSet(QLatin1String("link"))) {
        return true;
    }
    error = QLatin1String("expected --link LINK, where to send the requests, or --offline");
    return false;
}

int run(const Invocation &invocation)
{
    QString error;
    QStringList remarks;
    ReplayOptions options;
    const QCommandLineParser &parser = invocation.parser;
    const bool offline = parser.isSet(QLatin1String("offline"));
    std::optional<RecordedLine> line;
    std::optional<LinkSettings> link;
    if (readPlace(parser, error) && readTextOrJsonOption(parser, options.format, error) &&
        readSpeed(parser, options.speed, error)) {
        line = readLine(invocation, remarks, error);
    }
    if (line && !offline) {
        options.exchanges = line->exchanges;
    }
    if (line && readWrites(parser, options.exchanges, error)) {
        link = readLinkSettings(parser, LinkNeed::Optional, error);
    }
    if (!link) {
        invocation.messages.say(error);
        return kUsage;
    }
    for (const QString &remark : remarks) {
        invocation.messages.say(remark);
    }
    return offline ? runOffline(invocation, *link, *line, options)
                   : runReplay(*link, options, invocation.messages);
}

} // namespace

const Command kReplayCommand = {
    "replay",
    "FILE",
    "Sends the requests of a capture again and shows where an answer is another one now; or, with "
    "--offline, feeds the driver with the recorded answers and shows what it makes of them. What "
    "writes needs --yes or --skip-writes. Ends with 1 where there is a difference.",
    "replay case.pcapng --offline\n"
    "replay case.pcapng --offline --speed full --format json\n"
    "replay case.pcapng --link tcp:192.168.0.100:8000 --skip-writes\n",
    addOptions,
    run};

} // namespace cnet::panel
