#include "panel/commands/commands.h"

#include "panel/system/exit_code.h"
#include "panel/commands/link_settings.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

const Command *const kCommands[] = {&kDescribeCommand, &kMonitorCommand, &kReadCommand,
                                    &kWriteCommand,    &kRecipeCommand,  &kCheckCommand,
                                    &kSeriesCommand};

const char kExitCodes[] = "\nExit codes:\n"
                          "  0  fine\n"
                          "  1  a device refused or did not answer\n"
                          "  2  bad usage, register, address or file\n"
                          "  3  the link could not be opened\n"
                          "  4  the driver could not be loaded\n";

void addGeneralOptions(QCommandLineParser &parser)
{
    parser.addOption(QCommandLineOption({QLatin1String("h"), QLatin1String("help")},
                                        QLatin1String("Shows this help.")));
    parser.addOption(QCommandLineOption(QLatin1String("version"),
                                        QLatin1String("Shows the program's version.")));
    addDriverOption(parser);
}

QString commandList()
{
    QString text = QLatin1String("\nCommands (cnet-panel COMMAND --help tells more):\n");
    for (const Command *command : kCommands) {
        text += QString::fromLatin1("  %1 %2\n      %3\n")
                    .arg(QLatin1String(command->name), QLatin1String(command->arguments),
                         QLatin1String(command->summary));
    }
    return text;
}

void prepare(QCommandLineParser &parser, const Command &command)
{
    addGeneralOptions(parser);
    command.addOptions(parser);
}

// Options may stand before the command, and which of them take a value depends on the command.
const Command *findCommand(const QStringList &arguments, QString &name)
{
    for (const Command *command : kCommands) {
        QCommandLineParser parser;
        prepare(parser, *command);
        const bool understood = parser.parse(arguments);
        const QString first = parser.positionalArguments().value(0);
        if (first == QLatin1String(command->name)) {
            name = first;
            return command;
        }
        // For the message: where options are unknown, their values look like a command.
        if (understood || name.isEmpty()) {
            name = first;
        }
    }
    return nullptr;
}

int refuse(Messages &messages, const QString &text)
{
    messages.say(text);
    return kUsage;
}

int runCommand(const Command &command, const QCommandLineParser &parser, Messages &messages)
{
    DriverLibrary driver;
    if (!driver.load(parser.value(QLatin1String("driver")))) {
        messages.say(driver.errorText());
        return kNoDriver;
    }
    const RegisterCatalog registers(driver.functions());
    return command.run(Invocation{parser, parser.positionalArguments().mid(1), driver.functions(),
                                  registers, messages});
}

int parseAndRun(const QStringList &arguments, Messages &messages)
{
    QCommandLineParser parser;
    QString name;
    const Command *command = findCommand(arguments, name);
    if (command != nullptr) {
        prepare(parser, *command);
        parser.addPositionalArgument(
            name, QLatin1String(command->summary),
            QString::fromLatin1("%1 %2").arg(name, QLatin1String(command->arguments)));
    } else {
        addGeneralOptions(parser);
    }
    parser.setApplicationDescription(
        QLatin1String("Reference panel for the ls_master_k_cnet driver."));
    const bool parsed = parser.parse(arguments);
    if (parser.isSet(QLatin1String("help"))) {
        const QString commands = command == nullptr ? commandList() : QString();
        writeToStandardOutput(
            (parser.helpText() + commands + QLatin1String(kExitCodes)).toLocal8Bit());
        return kFine;
    }
    if (parser.isSet(QLatin1String("version"))) {
        writeToStandardOutput("cnet-panel " CNET_PANEL_VERSION "\n");
        return kFine;
    }
    if (name.isEmpty()) {
        return refuse(messages, QLatin1String("expected a command; --help lists them"));
    }
    if (command == nullptr) {
        return refuse(messages,
                      QString::fromLatin1("no command '%1'; --help lists them").arg(name));
    }
    if (!parsed) {
        return refuse(messages, parser.errorText() + QLatin1String(" See --help."));
    }
    return runCommand(*command, parser, messages);
}

} // namespace

int runCommandLine(const QStringList &arguments, Messages &messages)
{
    resetStandardOutput();
    const int exitCode = parseAndRun(arguments, messages);
    QString reason;
    const OutputState output = standardOutputState(reason);
    if (output == OutputState::Failed) {
        messages.say(QString::fromLatin1("cannot write to standard output: %1").arg(reason));
    }
    if (exitCode != kFine || output == OutputState::Fine) {
        return exitCode;
    }
    return output == OutputState::Failed ? kUsage : kDeviceFailed;
}

} // namespace cnet::panel
