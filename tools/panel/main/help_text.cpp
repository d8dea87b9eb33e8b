#include "panel/main/help_text.h"

namespace cnet::panel {

namespace {

const int kColumns = 79;

const char kExitCodes[] = "Exit codes:\n"
                          "  0  fine\n"
                          "  1  a device refused or did not answer\n"
                          "  2  bad usage, register, address or file; nothing was sent\n"
                          "  3  the link could not be opened\n"
                          "  4  the driver could not be loaded\n"
                          "  5  it was done, but its output or its capture is lost\n";

QString examples(const Command &command)
{
    QString text = QLatin1String("Examples:\n");
    for (const QString &line :
         QString::fromLatin1(command.examples).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        text += QLatin1String("  cnet-panel ") + line + QLatin1Char('\n');
    }
    return text;
}

QString commandList(const QVector<const Command *> &commands)
{
    QString text = QLatin1String("Commands (cnet-panel COMMAND --help tells more):\n");
    for (const Command *command : commands) {
        text += wrapped(QString::fromLatin1("%1 %2").arg(QLatin1String(command->name),
                                                         QLatin1String(command->arguments)),
                        2);
        text += wrapped(QLatin1String(command->summary), 6);
    }
    return text;
}

// Without the usage line and the description, which Qt's page begins with.
QString optionList(const QCommandLineParser &parser)
{
    const QString page = parser.helpText();
    const auto at = page.indexOf(QLatin1String("Options:"));
    const auto end = page.indexOf(QLatin1String("\n\n"), at);
    return end < 0 ? page.mid(at) : page.mid(at, end - at + 1);
}

} // namespace

QString wrapped(const QString &text, int indent)
{
    const QString blanks(indent, QLatin1Char(' '));
    QString lines;
    QString line;
    for (const QString &word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > kColumns) {
            lines += blanks + line + QLatin1Char('\n');
            line.clear();
        }
        line += line.isEmpty() ? word : QLatin1Char(' ') + word;
    }
    return lines + blanks + line + QLatin1Char('\n');
}

QString helpText(const QCommandLineParser &parser, const Command *command,
                 const QVector<const Command *> &commands)
{
    const QString gap = QLatin1String("\n");
    if (command == nullptr) {
        return QLatin1String("Usage: cnet-panel COMMAND [options] [arguments]\n"
                             "Talks to MASTER-K PLCs over their Cnet computer link.\n\n") +
               optionList(parser) + gap + commandList(commands) + gap + QLatin1String(kExitCodes);
    }
    const QString usage = QString::fromLatin1("Usage: cnet-panel %1 [options] %2")
                              .arg(QLatin1String(command->name), QLatin1String(command->arguments));
    return usage.trimmed() + gap + wrapped(QLatin1String(command->summary), 0) + gap +
           optionList(parser) + gap + examples(*command) + gap + QLatin1String(kExitCodes);
}

} // namespace cnet::panel
