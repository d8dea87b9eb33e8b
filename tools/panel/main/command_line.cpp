#include "panel/main/command_line.h"

#include "panel/commands/commands.h"

#include "panel/main/help_text.h"
#include "panel/options/link_settings.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstring>

namespace cnet::panel {

namespace {

const QVector<const Command *> &allCommands()
{
    static const QVector<const Command *> commands = {
        &kMonitorCommand,     &kReadCommand,       &kWriteCommand,   &kIdentifyCommand,
        &kRecipeWriteCommand, &kRecipeReadCommand, &kDecodeCommand,  &kDescribeCommand,
        &kReplayCommand,      &kScanCommand,       &kSendCommand,    &kCheckCommand,
        &kSeriesCommand,      &kTagsCheckCommand,  &kTagsListCommand};
    return commands;
}

void addGeneralOptions(QCommandLineParser &parser)
{
    parser.addOption(QCommandLineOption({QLatin1String("h"), QLatin1String("help")},
                                        QLatin1String("Shows this help.")));
    parser.addOption(QCommandLineOption({QLatin1String("v"), QLatin1String("version")},
                                        QLatin1String("Shows the program's version.")));
    addDriverOption(parser);
}

void prepare(QCommandLineParser &parser, const Command &command)
{
    addGeneralOptions(parser);
    command.addOptions(parser);
}

int wordsOf(const Command &command)
{
    return static_cast<int>(
               std::count(command.name, command.name + std::strlen(command.name), ' ')) +
           1;
}

// The words of a command's name, of which some have two.
QString nameOn(const QStringList &positional, const Command &command)
{
    return positional.mid(0, wordsOf(command)).join(QLatin1Char(' '));
}

// Options may stand before the command, and which of them take a value depends on the command.
const Command *findCommand(const QStringList &arguments, QString &name)
{
    for (const Command *command : allCommands()) {
        QCommandLineParser parser;
        prepare(parser, *command);
        const bool understood = parser.parse(arguments);
        const QStringList positional = parser.positionalArguments();
        if (nameOn(positional, *command) == QLatin1String(command->name)) {
            name = QLatin1String(command->name);
            return command;
        }
        // For the message: where options are unknown, their values look like a command.
        if (understood || name.isEmpty()) {
            name = positional.value(0);
        }
    }
    return nullptr;
}

// A negative number is not an option, wherever it stands.
QStringList numbersLast(const QStringList &arguments)
{
    static const QRegularExpression negative(QLatin1String("\\A-[0-9]"));
    QStringList ordered;
    QStringList numbers;
    for (int i = 0; i < arguments.size(); ++i) {
        const bool behindOption = i > 0 && arguments.at(i - 1).startsWith(QLatin1String("--"));
        const bool isNumber = !behindOption && negative.match(arguments.at(i)).hasMatch();
        (isNumber ? numbers : ordered).append(arguments.at(i));
    }
    if (!numbers.isEmpty() && !ordered.contains(QLatin1String("--"))) {
        ordered.append(QLatin1String("--"));
    }
    return ordered + numbers;
}

// Some commands have two words.
QString unknownCommand(const QString &name)
{
    if (name == QLatin1String("recipe")) {
        return QLatin1String("expected recipe write FILE or recipe read FILE");
    }
    if (name == QLatin1String("tags")) {
        return QLatin1String("expected tags check FILE or tags list FILE [NAME|GROUP|GLOB]...");
    }
    return QString::fromLatin1("no command '%1'; --help lists them").arg(name);
}

int refuse(Messages &messages, const QString &text)
{
    messages.say(text);
    return kUsage;
}

int runCommand(const Command &command, const QCommandLineParser &parser, Messages &messages)
{
    Driver driver;
    QString error;
    if (!driver.load(parser.value(QLatin1String("driver")), error)) {
        messages.say(error);
        return kNoDriver;
    }
    return command.run(
        Invocation{parser, parser.positionalArguments().mid(wordsOf(command)), driver, messages});
}

int parseAndRun(const QStringList &given, Messages &messages)
{
    const QStringList arguments = numbersLast(given);
    QCommandLineParser parser;
    QString name;
    const Command *command = findCommand(arguments, name);
    if (command != nullptr) {
        prepare(parser, *command);
    } else {
        addGeneralOptions(parser);
    }
    const bool parsed = parser.parse(arguments);
    if (parser.isSet(QLatin1String("help"))) {
        writeToStandardOutput(helpText(parser, command, allCommands()).toLocal8Bit());
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
        return refuse(messages, unknownCommand(name));
    }
    if (!parsed) {
        return refuse(messages,
                      parser.errorText() + QString::fromLatin1(" See cnet-panel %1 --help.")
                                               .arg(QLatin1String(command->name)));
    }
    return runCommand(*command, parser, messages);
}

} // namespace

int runCommandLine(const QStringList &arguments, Messages &messages)
{
    resetStandardOutput();
    messages.forgetLost();
    const int exitCode = parseAndRun(arguments, messages);
    QString reason;
    const OutputState output = standardOutputState(reason);
    if (output == OutputState::Failed) {
        messages.say(QString::fromLatin1("cannot write to standard output: %1").arg(reason));
    }
    if (exitCode != kFine) {
        return exitCode;
    }
    if (output == OutputState::Failed || messages.isOutputLost()) {
        return kOutputLost;
    }
    return output == OutputState::Fine ? kFine : kDeviceFailed;
}

} // namespace cnet::panel
