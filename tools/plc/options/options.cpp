#include "plc/options/options.h"

#include "host/capture/capture_command_line.h"
#include "plc/options/option_table.h"
#include "plc/scenario/scenarios.h"
#include "plc/wire/wire.h"

#include <QCommandLineParser>

namespace plc {

namespace {

constexpr int kLowestBaud = 50;
constexpr int kHighestBaud = 4000000;

/** QCommandLineParser has no optional values: turns a bare --pty into "--pty=". */
QStringList withPtyValue(const QStringList &arguments)
{
    QStringList result;
    for (auto it = arguments.begin(); it != arguments.end(); ++it) {
        const auto next = it + 1;
        const bool value = next != arguments.end() && !next->startsWith(QLatin1Char('-'));
        const bool bare = *it == QLatin1String("--pty") && !value;
        result << (bare ? QLatin1String("--pty=") : *it);
    }
    return result;
}

TextError expected(const char *option, const char *what, const QString &text)
{
    return {QString::fromLatin1("--%1: expected %2, not \"%3\"")
                .arg(QLatin1String(option), QLatin1String(what), text)};
}

TextError ofOption(const char *option, const TextError &error)
{
    return {QString::fromLatin1("--%1: %2").arg(QLatin1String(option), error.message)};
}

/** Reads every value of a repeatable option. */
template <typename T>
std::optional<TextError> readAll(const QCommandLineParser &parser, const char *option,
                                 Parsed<T> (*parse)(const QString &), std::vector<T> &values)
{
    const QStringList texts = parser.values(QLatin1String(option));
    for (const QString &text : texts) {
        const Parsed<T> value = parse(text);
        if (const TextError *error = std::get_if<TextError>(&value)) {
            return ofOption(option, *error);
        }
        values.push_back(std::get<T>(value));
    }
    return std::nullopt;
}

std::optional<TextError> readMotions(const QCommandLineParser &parser, Options &options)
{
    for (const MotionKindText &kind : motionKindTexts()) {
        const QStringList texts = parser.values(QLatin1String(kind.name));
        for (const QString &text : texts) {
            const Parsed<MotionSetting> motion = parseMotion(kind.kind, text);
            if (const TextError *error = std::get_if<TextError>(&motion)) {
                return ofOption(kind.name, *error);
            }
            options.motions.push_back(std::get<MotionSetting>(motion));
        }
    }
    return std::nullopt;
}

std::optional<TextError> readStations(const QCommandLineParser &parser, Options &options)
{
    const QStringList texts = parser.values(QLatin1String("station"));
    for (const QString &text : texts) {
        const auto number = numberIn(text, 0, kMaxStation);
        if (!number) {
            return expected("station", "a number from 0 to 31", text);
        }
        options.stations.push_back(static_cast<int>(*number));
    }
    if (options.stations.empty() && !parser.isSet(QLatin1String("replay"))) {
        options.stations.push_back(1);
    }
    return std::nullopt;
}

std::optional<TextError> readSingles(const QCommandLineParser &parser, Options &options)
{
    const QString model = parser.value(QLatin1String("model"));
    if (model == QLatin1String("k120s")) {
        options.model = Model::K120s;
    } else if (parser.isSet(QLatin1String("model")) && model != QLatin1String("full")) {
        return expected("model", "full or k120s", model);
    }
    if (parser.isSet(QLatin1String("baud"))) {
        const QString text = parser.value(QLatin1String("baud"));
        const auto baud = numberIn(text, kLowestBaud, kHighestBaud);
        if (!baud) {
            return expected("baud", "a number from 50 to 4000000", text);
        }
        options.baud = static_cast<int>(*baud);
    }
    if (parser.isSet(QLatin1String("seed"))) {
        const QString text = parser.value(QLatin1String("seed"));
        const auto seed = numberIn(text, 0, 0xFFFFFFFFLL);
        if (!seed) {
            return expected("seed", "a number from 0 to 4294967295", text);
        }
        options.seed = static_cast<quint32>(*seed);
    }
    for (const auto &[name, path] :
         {std::pair("memory", &options.memoryPath), std::pair("script", &options.scriptPath)}) {
        *path = parser.value(QLatin1String(name));
        if (parser.isSet(QLatin1String(name)) && path->isEmpty()) {
            return expected(name, "the name of a file", *path);
        }
    }
    if (parser.isSet(QLatin1String("pty"))) {
        options.ptyLink = parser.value(QLatin1String("pty"));
    }
    options.trace = parser.isSet(QLatin1String("trace"));
    return std::nullopt;
}

/** Commands change everything, so they come from this machine only, unless it is said twice. */
std::optional<TextError> readControl(const QCommandLineParser &parser, Options &options)
{
    if (auto error = readAll(parser, "control", &parseControlAddress, options.control)) {
        return error;
    }
    const bool remote = parser.isSet(QLatin1String("control-remote"));
    for (std::size_t i = 0; i < options.control.size(); ++i) {
        if (!remote && !options.control[i].isLocal()) {
            return TextError{
                QString::fromLatin1("--control: other machines reach \"%1\", and everybody there "
                                    "could change the PLC: expected an address like 127.0.0.1, or "
                                    "--control-remote as well")
                    .arg(parser.values(QLatin1String("control")).at(static_cast<int>(i)))};
        }
    }
    const QString format = parser.value(QLatin1String("control-format"));
    if (format == QLatin1String("json")) {
        options.controlFormat = ReplyFormat::Json;
    } else if (parser.isSet(QLatin1String("control-format")) && format != QLatin1String("text")) {
        return expected("control-format", "text or json", format);
    }
    return std::nullopt;
}

std::optional<TextError> readScenario(const QCommandLineParser &parser, Options &options)
{
    options.scenario = parser.value(QLatin1String("scenario"));
    options.scenarioList = options.scenario == QLatin1String("list");
    const bool known = options.scenarioList || makeScenario(options.scenario, 1);
    if (parser.isSet(QLatin1String("scenario")) && !known) {
        return expected("scenario", "press, or list for all of them", options.scenario);
    }
    return std::nullopt;
}

std::optional<TextError> readReplay(const QCommandLineParser &parser, Options &options)
{
    options.replayPath = parser.value(QLatin1String("replay"));
    options.replayLine = parser.value(QLatin1String("replay-line"));
    if (parser.isSet(QLatin1String("replay")) && options.replayPath.isEmpty()) {
        return TextError{QLatin1String("--replay: expected the name of a capture")};
    }
    if (parser.isSet(QLatin1String("replay-line")) && options.replayPath.isEmpty()) {
        return TextError{QLatin1String("--replay-line: expected --replay FILE with it")};
    }
    return std::nullopt;
}

std::optional<TextError> readCapture(const QCommandLineParser &parser, Options &options)
{
    TextError error;
    const bool ok = cnet::readCaptureOptions(parser, QLatin1String("cnet-plc " CNET_PLC_VERSION),
                                             options.capture, error.message);
    return ok ? std::nullopt : std::optional<TextError>(error);
}

} // namespace

Parsed<Options> readOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(withPtyValue(arguments))) {
        return TextError{parser.errorText()};
    }
    Options options;
    options.help = parser.isSet(QLatin1String("help"));
    options.version = parser.isSet(QLatin1String("version"));
    if (options.help || options.version) {
        return options;
    }
    if (!parser.positionalArguments().isEmpty()) {
        return TextError{QString::fromLatin1("\"%1\": expected options only")
                             .arg(parser.positionalArguments().at(0))};
    }
    for (const auto &error :
         {readStations(parser, options), readSingles(parser, options),
          readAll(parser, "tcp", &parseTcpAddress, options.tcp),
          readAll(parser, "set", &parseSetting, options.settings), readMotions(parser, options),
          readAll(parser, "fault", &parseFault, options.faults), readControl(parser, options),
          readScenario(parser, options), readReplay(parser, options),
          readCapture(parser, options)}) {
        if (error) {
            return *error;
        }
    }
    if (options.tcp.empty() && !options.ptyLink && !options.scenarioList) {
        return TextError{QLatin1String("expected --tcp [HOST:]PORT or --pty [LINK]")};
    }
    return options;
}

} // namespace plc
