#include "panel/commands/link_settings.h"

#include "host/address/item.h"

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

} // namespace

void addDriverOption(QCommandLineParser &parser)
{
    parser.addOption(
        option("driver", "Driver to load; without it the one that came with the program.", "PATH"));
}

void addLinkOptions(QCommandLineParser &parser)
{
    parser.addOption(option("link",
                            "sim (default: a simulated PLC inside the program), tcp:HOST:PORT or "
                            "serial:DEVICE[,38400,8,NONE,1].",
                            "LINK"));
    parser.addOption(option("station", "Station of items that name none, 0-31 (default 1).", "N"));
    parser.addOption(option("block-words",
                            "Words of one block read, 1-255 (default 60; a MASTER-K refuses more).",
                            "N"));
    parser.addOption(option(
        "retries", "How often a request is sent before it is given up, 1-1000 (default 3).", "N"));
    parser.addOption(
        option("timeout",
               "Milliseconds to wait for an answer (default: from the line's speed and "
               "the answer's length).",
               "MS"));
    parser.addOption(option(
        "interval", "Milliseconds between two rounds of reading (default 0; 20 on sim).", "MS"));
    parser.addOption(QCommandLineOption(
        QLatin1String("trace"), QLatin1String("Shows every frame, in hexadecimal and in words.")));
}

bool readNumberOption(const QCommandLineParser &parser, const QString &name, int low, int high,
                      int &value, QString &error)
{
    if (!parser.isSet(name)) {
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

std::optional<LinkSettings> readLinkSettings(const QCommandLineParser &parser, QString &error)
{
    LinkSettings settings;
    const QString link = QLatin1String("link");
    const auto address =
        parseLinkAddress(parser.isSet(link) ? parser.value(link) : QLatin1String("sim"), error);
    if (!address) {
        return std::nullopt;
    }
    settings.link = *address;
    settings.trace = parser.isSet(QLatin1String("trace"));
    const auto number = [&](const char *name, int low, int high, int &value) {
        return readNumberOption(parser, QLatin1String(name), low, high, value, error);
    };
    const bool ok = number("station", 0, kHighestStation, settings.station) &&
                    number("block-words", 1, kHighestBlockWords, settings.blockWords) &&
                    number("retries", 1, kHighestAttempts, settings.attempts) &&
                    number("timeout", 1, kHighestTimeMs, settings.timeoutMs) &&
                    number("interval", 0, kHighestTimeMs, settings.intervalMs);
    return ok ? std::optional<LinkSettings>(settings) : std::nullopt;
}

} // namespace cnet::panel
