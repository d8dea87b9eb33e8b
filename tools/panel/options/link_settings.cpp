#include "panel/options/link_settings.h"

#include "host/address/item.h"
#include "host/capture/capture_command_line.h"
#include "host/decode/frame_comments.h"
#include "panel/system/output_file.h"

namespace cnet::panel {

namespace {

// The request has two hexadecimal characters for the number of words.
const int kHighestBlockWords = 255;
const int kHighestAttempts = 1000;
const int kHighestTimeMs = 600000;

QCommandLineOption option(const char *name, const char *description, const char *valueName)
{
    return {QLatin1String(name), QLatin1String(description), QLatin1String(valueName)};
}

bool readLine(const QCommandLineParser &parser, LinkSettings &settings, QString &error)
{
    const bool isSerial = settings.link && settings.link->kind == LinkAddress::Kind::Serial;
    settings.session.lineSpeed = settings.link && !isSerial ? LineSpeed::Assumed : LineSpeed::Known;
    if (!parser.isSet(QLatin1String("line"))) {
        return true;
    }
    const QString text = parser.value(QLatin1String("line"));
    const auto line = parseLineSettings(text, error);
    if (isSerial) {
        error = QLatin1String("a serial link has its settings behind the device");
    }
    if (isSerial || !line) {
        error = QString::fromLatin1("--line '%1': %2").arg(text, error);
        return false;
    }
    settings.session.line = *line;
    settings.session.lineSpeed = LineSpeed::Known;
    return true;
}

// Whether it can be written is found out before anything is sent.
bool readStatsFile(const QCommandLineParser &parser, LinkSettings &settings, QString &error)
{
    if (!parser.optionNames().contains(QLatin1String("stats"))) {
        return true;
    }
    settings.statsFile = parser.value(QLatin1String("stats"));
    return !parser.isSet(QLatin1String("stats")) ||
           openOutputFile(settings.statsFile, error) != nullptr;
}

bool openCapture(const QCommandLineParser &parser, LinkSettings &settings, QString &error)
{
    std::optional<CaptureOptions> options;
    if (!readCaptureOptions(parser, QLatin1String("cnet-panel " CNET_PANEL_VERSION), options,
                            error)) {
        return false;
    }
    if (options) {
        settings.capture = Capture::open(*options, error);
        if (!settings.capture) {
            return false;
        }
        settings.capture->setWords(
            [comments = FrameComments()](const QByteArray &frame, CaptureDirection) mutable {
                return comments.next(frame);
            });
    }
    return true;
}

} // namespace

void addDriverOption(QCommandLineParser &parser)
{
    parser.addOption(
        option("driver", "Driver to load; without it the one that came with the program.", "PATH"));
}

void addLineOptions(QCommandLineParser &parser)
{
    parser.addOption(option("link",
                            "tcp:HOST:PORT, serial:DEVICE[,38400,8,NONE,1] or sim, a simulated "
                            "PLC inside the program (default, though writes need --link).",
                            "LINK"));
    parser.addOption(
        option("timeout",
               "Milliseconds to wait for an answer (default: from the line's speed, the answer's "
               "length and what the station was found to take).",
               "MS"));
    parser.addOption(option("line",
                            "The serial line behind a TCP port, BAUD[,8,NONE,1], for time-outs "
                            "and for the line's load in percent.",
                            "LINE"));
    parser.addOption(QCommandLineOption(
        QLatin1String("trace"), QLatin1String("Shows every frame, in hexadecimal and in words.")));
    addCaptureOptions(parser);
}

void addLinkOptions(QCommandLineParser &parser)
{
    addLineOptions(parser);
    parser.addOption(option("stats",
                            "Stores counters, response times and the line's load in this file as "
                            "JSON, at the end and on SIGUSR1.",
                            "FILE"));
    parser.addOption(option("station", "Station of items that name none, 0-31 (default 1).", "N"));
    parser.addOption(option("block-words",
                            "Words of one block read, 1-255 (default 60; a MASTER-K refuses more).",
                            "N"));
    parser.addOption(option(
        "retries", "How often a request is sent before it is given up, 1-1000 (default 3).", "N"));
}

void addIntervalOption(QCommandLineParser &parser)
{
    parser.addOption(option("interval",
                            "Milliseconds from the beginning of one round of reading to that of "
                            "the next, at least (default 100; 0: at once).",
                            "MS"));
}

// A command that does not have the option has not set it either; the parser would warn.
bool readNumberOption(const QCommandLineParser &parser, const QString &name, int low, int high,
                      int &value, QString &error)
{
    if (!parser.optionNames().contains(name)) {
        return true;
    }
    bool ok = false;
    const int number = parser.value(name).toInt(&ok);
    if (!ok || number < low || number > high) {
        error = QString::fromLatin1("--%1 '%2': expected a number from %3 to %4")
                    .arg(name, parser.value(name), QString::number(low), QString::number(high));
        return false;
    }
    value = number;
    return true;
}

std::optional<LinkSettings> readLinkSettings(const QCommandLineParser &parser, LinkNeed need,
                                             QString &error)
{
    LinkSettings settings;
    const QString link = parser.value(QLatin1String("link"));
    if (link.isEmpty() && need == LinkNeed::Required) {
        error = QLatin1String("expected --link, where to write: tcp:HOST:PORT, serial:DEVICE, or "
                              "sim for the simulated PLC");
        return std::nullopt;
    }
    if (!link.isEmpty() && link != QLatin1String("sim")) {
        settings.link = parseLinkAddress(link, error);
        if (!settings.link) {
            const bool isKindKnown =
                link.startsWith(QLatin1String("tcp:")) || link.startsWith(QLatin1String("serial:"));
            error += QLatin1String(isKindKnown ? "" : ", or sim for the simulated PLC");
            return std::nullopt;
        }
        settings.session.line = settings.link->line;
    }
    settings.trace = parser.isSet(QLatin1String("trace"));
    const auto number = [&](const char *name, int low, int high, int &value) {
        return readNumberOption(parser, QLatin1String(name), low, high, value, error);
    };
    const bool ok = readLine(parser, settings, error) && readStatsFile(parser, settings, error) &&
                    number("station", 0, kHighestStation, settings.station) &&
                    number("block-words", 1, kHighestBlockWords, settings.session.blockWords) &&
                    number("retries", 1, kHighestAttempts, settings.session.attempts) &&
                    number("timeout", 1, kHighestTimeMs, settings.session.timeoutMs) &&
                    number("interval", 0, kHighestTimeMs, settings.session.intervalMs) &&
                    openCapture(parser, settings, error);
    return ok ? std::optional<LinkSettings>(settings) : std::nullopt;
}

} // namespace cnet::panel
