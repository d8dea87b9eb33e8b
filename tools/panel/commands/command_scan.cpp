#include "host/address/item.h"
#include "host/address/value_text.h"
#include "host/scan/likely_settings.h"
#include "panel/commands/commands.h"
#include "panel/options/link_settings.h"
#include "panel/options/output_format.h"
#include "panel/runs/scan_run.h"
#include "panel/system/exit_code.h"

namespace cnet::panel {

namespace {

void addOptions(QCommandLineParser &parser)
{
    addLineOptions(parser);
    addFormatOption(parser, "text (default: a line for each register) or json.");
    parser.addOption({QLatin1String("serial"),
                      QLatin1String("Serial device of which the settings are searched for, too."),
                      QLatin1String("DEVICE")});
    parser.addOption({QLatin1String("stations"),
                      QLatin1String("Stations to ask, as 1,3,8-15 (default 0-31)."),
                      QLatin1String("LIST")});
    parser.addOption(QCommandLineOption(QLatin1String("no-registers"),
                                        QLatin1String("Leaves out which registers there are.")));
}

// "8" or "8-15"
bool readStationRange(const QString &text, QVector<int> &stations)
{
    const QStringList ends = text.split(QLatin1Char('-'));
    bool firstOk = false;
    bool lastOk = false;
    const int first = ends.first().toInt(&firstOk);
    const int last = ends.last().toInt(&lastOk);
    if (ends.size() > 2 || !firstOk || !lastOk || first < 0 || last < first ||
        last > kHighestStation) {
        return false;
    }
    for (int station = first; station <= last; ++station) {
        if (!stations.contains(station)) {
            stations.append(station);
        }
    }
    return true;
}

bool readStations(const QCommandLineParser &parser, QVector<int> &stations, QString &error)
{
    const QString name = QLatin1String("stations");
    const QString list = parser.isSet(name) ? parser.value(name) : QLatin1String("0-31");
    for (const QString &range : list.split(QLatin1Char(','))) {
        if (!readStationRange(range, stations)) {
            error = QString::fromLatin1("--stations '%1': expected stations from 0 to 31, for "
                                        "example 1,3,8-15")
                        .arg(quotable(list));
            return false;
        }
    }
    return true;
}

// What is named on the command line comes first.
QVector<LineSettings> settingsFrom(const LineSettings &named)
{
    QVector<LineSettings> all{named};
    for (const LineSettings &line : likelySettings()) {
        if (line.text() != named.text()) {
            all.append(line);
        }
    }
    return all;
}

std::optional<LinkSettings> readLink(const QCommandLineParser &parser, ScanOptions &options,
                                     QString &error)
{
    const QString serial = parser.value(QLatin1String("serial"));
    const bool searches = parser.isSet(QLatin1String("serial"));
    if (searches == parser.isSet(QLatin1String("link"))) {
        error =
            QLatin1String("expected --link LINK, or --serial DEVICE to search for its settings");
        return std::nullopt;
    }
    auto settings = readLinkSettings(parser, LinkNeed::Optional, error);
    if (settings && searches) {
        settings->link = parseLinkAddress(QLatin1String("serial:") + serial, error);
        if (!settings->link) {
            return std::nullopt;
        }
    }
    if (settings) {
        options.timeoutMs = settings->session.timeoutMs;
        options.settings = searches ? settingsFrom(settings->link->line)
                                    : QVector<LineSettings>{settings->session.line};
    }
    return settings;
}

// Bits are read as words, and a contact is there where its timer or counter is.
QVector<RegisterInfo> wordRegisters(const RegisterCatalog &registers)
{
    QVector<RegisterInfo> words;
    for (const RegisterInfo &reg : registers.all()) {
        if (reg.width == RegisterWidth::Word && reg.form == AddressForm::Plain) {
            words.append(reg);
        }
    }
    return words;
}

int run(const Invocation &invocation)
{
    QString error;
    ScanOptions options;
    OutputFormat format = OutputFormat::Text;
    std::optional<LinkSettings> link;
    if (!invocation.arguments.isEmpty()) {
        error = QString::fromLatin1("'%1': scan takes no arguments")
                    .arg(quotable(invocation.arguments.first()));
    } else if (readTextOrJsonOption(invocation.parser, format, error) &&
               readStations(invocation.parser, options.stations, error)) {
        link = readLink(invocation.parser, options, error);
    }
    if (!link) {
        invocation.messages.say(error);
        return kUsage;
    }
    if (!invocation.parser.isSet(QLatin1String("no-registers"))) {
        options.registers = wordRegisters(invocation.driver.registers());
    }
    return runScan(*link, options, format, invocation.messages);
}

} // namespace

const Command kScanCommand = {
    "scan",
    "",
    "Finds out which stations answer on a line, how fast, and which registers they have; with "
    "--serial also with which baud rate, parity and stop bits. It only reads.",
    "scan --link tcp:192.168.0.100:8000\n"
    "scan --serial /dev/ttyUSB0 --stations 1-4 --no-registers\n",
    addOptions,
    run};

} // namespace cnet::panel
