#include "plc/main/options.h"

#include "host/capture/capture_command_line.h"
#include "plc/wire/wire.h"

#include <QCommandLineParser>

namespace plc {

namespace {

constexpr int kLowestBaud = 50;
constexpr int kHighestBaud = 4000000;

const char *const kDescription =
    "A simulated MASTER-K PLC that answers the Cnet computer link over TCP, a pseudo-terminal or "
    "both.\n\n"
    "  cnet-plc --tcp 127.0.0.1:8000 --ramp D_W:100-119\n"
    "  cnet-plc --pty /tmp/plc --station 1 --station 2 --set 2/M_W:3=0x1234 --trace\n"
    "  cnet-plc --tcp 0 --fault 1:silence*3 --fault delay=50..200@10%";

const char *const kRest =
    "\nFaults: [STATION:]KIND[=VALUE][*TIMES][@PERCENT%]. A fault fires for every request, or for\n"
    "PERCENT (0 to 100) of them at random. After TIMES (1 to 1000000000) it stops. Kinds:\n%1\n"
    "Registers: D_W C_W T_W K_W P_W F_W L_W M_W (words), P_bit K_bit M_bit L_bit F_bit D_bit\n"
    "(bits, WORD.BIT), TX CX (contacts).\n\n"
    "The addresses to connect to and the device to open are printed on standard output, one line\n"
    "each; errors and the trace go to standard error. SIGINT or SIGTERM ends the program.\n\n"
    "Exit codes: 0 ended by a signal, 2 wrong command line or standard output cannot be written,\n"
    "3 an address, a terminal or a capture cannot be opened, 5 ended by a signal, but part of the\n"
    "capture is lost.\n";

QCommandLineOption option(const char *name, const char *help, const char *value = "")
{
    return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(help),
                              QString::fromLatin1(value));
}

void addOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        option("tcp",
               "Serve TCP clients at [HOST:]PORT. HOST defaults to 127.0.0.1; port 0 picks a free "
               "port. Repeatable.",
               "[HOST:]PORT"),
        option("pty",
               "Serve at a pseudo-terminal. LINK is optional: a symbolic link to the terminal, "
               "removed when the program ends.",
               "LINK"),
        option("station", "Number of a station on the line, 0 to 31 (default 1). Repeatable.", "N"),
        option("model", "full (default: every register a panel can name) or k120s.", "MODEL"),
        option("set",
               "Initial values of consecutive addresses: "
               "[STATION/]REGISTER:ADDRESS=VALUE[,VALUE...], values like 12, -3 or 0x1234. "
               "Without STATION, in all stations. Repeatable.",
               "VALUES"),
        option("ramp",
               "Values that count up with time: [STATION/]REGISTER:FIRST[-LAST][=LOW..HIGH][@MS], "
               "from LOW to HIGH (default 0..9999, bits 0..1), one step every MS milliseconds "
               "(default 1000). Repeatable.",
               "RANGE"),
        option("sine",
               "The same to and fro, a full turn in MS milliseconds (default 60000). Repeatable.",
               "RANGE"),
        option("square", "The same, LOW and HIGH in turn. Repeatable.", "RANGE"),
        option("walk",
               "The same at random, a small step every MS milliseconds; see --seed. Repeatable.",
               "RANGE"),
        option("counter",
               "32 bits in two words, the lower half first, [+STEP] (default 1) every MS "
               "milliseconds: [STATION/]REGISTER:FIRST[-LAST][=LOW..HIGH][+STEP][@MS]. "
               "Repeatable.",
               "RANGE"),
        option("fault", "Inject a fault; see below. Repeatable.", "FAULT"),
        option("seed",
               "Random seed of faults, walks and scenarios (default 1). The same seed and the same "
               "requests give the same faults.",
               "N"),
        option("baud",
               "Pace the bytes like a serial line of this speed: 50 to 4000000 bits per second, "
               "ten bits a byte.",
               "N"),
        option("trace", "Print each frame on standard error, with its time and its meaning."),
    });
    cnet::addCaptureOptions(parser);
    parser.addOptions({
        {{QLatin1String("h"), QLatin1String("help")}, QLatin1String("Print this.")},
        {{QLatin1String("v"), QLatin1String("version")}, QLatin1String("Print the version.")},
    });
}

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

std::optional<qint64> numberIn(const QString &text, qint64 lowest, qint64 highest)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (!ok || value < lowest || value > highest) {
        return std::nullopt;
    }
    return value;
}

TextError expected(const char *option, const char *what, const QString &text)
{
    return {QString::fromLatin1("--%1: expected %2, not \"%3\"")
                .arg(QLatin1String(option), QLatin1String(what), text)};
}

/** What is wrong with the value of an option. */
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
    if (options.stations.empty()) {
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
    if (parser.isSet(QLatin1String("pty"))) {
        options.ptyLink = parser.value(QLatin1String("pty"));
    }
    options.trace = parser.isSet(QLatin1String("trace"));
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

Parsed<TcpAddress> parseTcpAddress(const QString &text)
{
    const auto colon = text.lastIndexOf(QLatin1Char(':'));
    QString host = colon < 0 ? QString() : text.left(colon);
    const auto port = numberIn(text.mid(colon + 1), 0, 0xFFFF);
    if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']'))) {
        host = host.mid(1, host.size() - 2);
    }
    TcpAddress address;
    if (host.isEmpty() || host == QLatin1String("localhost")) {
        address.host = QHostAddress(QHostAddress::LocalHost);
    } else {
        address.host = QHostAddress(host);
    }
    // Qt accepts blanks and line breaks around an address.
    if (address.host.isNull() || host.trimmed() != host || !port) {
        return TextError{QString::fromLatin1(
                             "\"%1\": expected [HOST:]PORT with an IP address or localhost and a "
                             "port from 0 to 65535, for example 127.0.0.1:8000")
                             .arg(text)};
    }
    address.port = static_cast<quint16>(*port);
    return address;
}

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
           readAll(parser, "fault", &parseFault, options.faults), readCapture(parser, options)}) {
        if (error) {
            return *error;
        }
    }
    if (options.tcp.empty() && !options.ptyLink) {
        return TextError{QLatin1String("expected --tcp [HOST:]PORT or --pty [LINK]")};
    }
    return options;
}

QString helpText()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(kDescription));
    addOptions(parser);
    return parser.helpText() + QString::fromLatin1(kRest).arg(faultHelp());
}

std::optional<TextError> fillBus(const Options &options, Bus &bus)
{
    for (const int station : options.stations) {
        bus.add(station, options.model, options.seed);
    }
    for (const Setting &setting : options.settings) {
        if (const auto error = apply(setting, bus)) {
            return ofOption("set", *error);
        }
    }
    for (const MotionSetting &setting : options.motions) {
        if (const auto error = apply(setting, bus)) {
            return ofOption(motionKindText(setting.motion.kind).name, *error);
        }
    }
    for (const FaultSetting &setting : options.faults) {
        if (const auto error = apply(setting, bus)) {
            return ofOption("fault", *error);
        }
    }
    return std::nullopt;
}

} // namespace plc
