#include "plc/options/option_table.h"

#include "host/capture/capture_command_line.h"
#include "plc/control/commands.h"
#include "plc/scenario/scenarios.h"
#include "plc/setup/fault_text.h"

namespace plc {

namespace {

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
    "Commands on standard input and at --control, one a line:\n%2\n"
    "The addresses to connect to and the device to open are printed on standard output, one line\n"
    "each; errors and the trace go to standard error. SIGINT, SIGTERM or SIGHUP ends the\n"
    "program.\n\n"
    "Exit codes: 0 ended by a signal or by quit, 2 wrong command line or file, or standard output\n"
    "cannot be written, 3 an address, a terminal or a file cannot be opened or written,\n"
    "5 ended by a signal or by quit, but part of the capture is lost.\n";

QCommandLineOption option(const char *name, const char *help, const char *value = "")
{
    return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(help),
                              QString::fromLatin1(value));
}

/** The commands, indented. */
QString commandTable()
{
    QString table;
    const QStringList lines = commandHelp();
    for (const QString &line : lines) {
        table += QLatin1String("  ") + line + QLatin1Char('\n');
    }
    return table;
}

} // namespace

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
        option("scenario",
               "Values that hang together: press, a small press line; list prints all of them.",
               "NAME"),
        option("script",
               "Play a file of timed commands: \"at 5s set D_W:100=1\", \"after 200ms fault "
               "silence*3\", \"every 1s show D_W:100\".",
               "FILE"),
        option("memory",
               "Load the memory from FILE, if it is there, and save it at the end and on the "
               "command save.",
               "FILE"),
        option(
            "control",
            "Take commands at [HOST:]PORT or at a local socket, a path with a \"/\". Repeatable.",
            "WHERE"),
        option("control-format", "text (default) or json: how commands are answered.", "FORMAT"),
        option("control-remote", "Allow --control at addresses that other machines reach."),
        option("replay",
               "Answer as the stations of a capture did: each request with what came for it there, "
               "in its order and its time. Others are answered from the memory, which has the "
               "values of the capture.",
               "FILE"),
        option("replay-line", "Which line, where the capture has several.", "NAME"),
        option("seed",
               "Random seed of faults, walks and scenarios (default 1). The same seed and the same "
               "requests give the same faults.",
               "N"),
        option("baud",
               "Pace the bytes like a serial line of this speed: 50 to 4000000 bits per second, "
               "ten bits a byte.",
               "N"),
        option("trace", "Print each frame on standard error, with its time and its meaning."),
        {{QLatin1String("h"), QLatin1String("help")}, QLatin1String("Print this.")},
        {{QLatin1String("v"), QLatin1String("version")}, QLatin1String("Print the version.")},
    });
    cnet::addCaptureOptions(parser);
}

QString helpText()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(kDescription));
    addOptions(parser);
    return parser.helpText() + QString::fromLatin1(kRest).arg(faultHelp(), commandTable());
}

} // namespace plc
