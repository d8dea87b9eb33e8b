#include "gateway/main/commands.h"

#include "gateway/main/messages.h"

#include "host/text/near_miss.h"

#include <array>

namespace cnet::gateway {

namespace {

struct Command
{
    const char *name;
    int mostArguments;
    int (*run)(const Invocation &invocation);
};

constexpr std::array<Command, 4> kCommands{{{"run", 1, runRun},
                                            {"check", 1, runCheck},
                                            {"history", 1, runHistory},
                                            {"status", 0, runStatus}}};

const char kHelp[] = R"(Usage: cnet-gateway COMMAND [OPTION]...

Brings the values of many lines of MASTER-K controllers to one place, and loses none that it has
taken.

  run [FILE]    watches the lines of a configuration until it is told to end
  run --demo    the same with a simulated press line, without any configuration
  check [FILE]  says all that is wrong with a configuration and its tag files
  history TAG   shows what became of a tag; TAG may have * and ?
  status        shows how the gateway that runs here does: lines, stations, sinks, ledger

FILE is /etc/cnet-gateway/gateway.toml where it is not given.

  --demo          a simulated press line, stored in ./history.sqlite
  --file FILE     history: the file to read (default: ./history.sqlite, or that of the service)
  --line NAME     history: of this line only
  --from TIME     history: from this time on: 2026-11-22T06:00, 2026-11-22, or 90m, 2h, 3d ago
  --to TIME       history: until before this time
  --state FOLDER  status: where that gateway stores (default: the current folder, or that of the
                  service)
  --format FORM   history: text (default), json or csv; status: text or json
  -h, --help      shows this
  -v, --version   shows the program's version

Exit codes: 0 fine, 1 it cannot be done now, 2 a mistake in the command line or configuration.

  cnet-gateway --demo
  cnet-gateway history press.temperature --from 10m --format csv
)";

void addOptions(QCommandLineParser &parser)
{
    const auto add = [&parser](const QStringList &names, const char *value) {
        QCommandLineOption option(names);
        option.setValueName(QLatin1String(value));
        parser.addOption(option);
    };
    add({QLatin1String("h"), QLatin1String("help")}, "");
    add({QLatin1String("v"), QLatin1String("version")}, "");
    add({QLatin1String("demo")}, "");
    for (const char *name : {"file", "line", "from", "to", "state", "format"}) {
        add({QLatin1String(name)}, "VALUE");
    }
}

int refuse(const QString &text)
{
    say(text + QLatin1String("; --help lists what there is"));
    return kUsage;
}

int runNamed(const QString &name, const Invocation &invocation)
{
    QStringList names;
    for (const Command &command : kCommands) {
        names.append(QLatin1String(command.name));
        if (name != QLatin1String(command.name)) {
            continue;
        }
        if (invocation.arguments.size() > command.mostArguments) {
            return refuse(
                QString::fromLatin1("%1 takes %2, and not '%3'")
                    .arg(name,
                         QLatin1String(command.mostArguments == 0 ? "no argument" : "one argument"),
                         invocation.arguments.last()));
        }
        return command.run(invocation);
    }
    return refuse(QString::fromLatin1("no command '%1'").arg(name) + nearMissHint(name, names));
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        return refuse(parser.errorText());
    }
    if (parser.isSet(QLatin1String("help"))) {
        return print(QLatin1String(kHelp)) ? kFine : kFailed;
    }
    if (parser.isSet(QLatin1String("version"))) {
        return print(QLatin1String("cnet-gateway " CNET_GATEWAY_VERSION "\n")) ? kFine : kFailed;
    }
    const QStringList words = parser.positionalArguments();
    if (words.isEmpty() && !parser.isSet(QLatin1String("demo"))) {
        return refuse(QLatin1String("expected a command"));
    }
    return runNamed(words.isEmpty() ? QLatin1String("run") : words.first(),
                    Invocation{parser, words.mid(1)});
}

} // namespace cnet::gateway
