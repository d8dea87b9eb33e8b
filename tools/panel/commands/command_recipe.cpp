#include "host/text/whole_file.h"
#include "panel/commands/commands.h"
#include "panel/options/link_settings.h"
#include "panel/runs/recipe_run.h"
#include "panel/system/exit_code.h"
#include "panel/system/input_file.h"
#include "panel/system/output_file.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

// Far more than all words of all stations take.
const int kLongestFile = 8 * 1024 * 1024;

void addWriteOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    parser.addOption({QLatin1String("no-verify"),
                      QLatin1String("Does not read back and compare what was written.")});
}

void addReadOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    parser.addOption({QLatin1String("output"),
                      QLatin1String("The file to write instead of standard output. It may be FILE "
                                    "itself."),
                      QLatin1String("PATH")});
}

std::optional<RecipeFile> readFile(const Invocation &invocation, RecipeUse use, int station,
                                   QString &error)
{
    if (invocation.arguments.size() != 1) {
        error = QLatin1String(use == RecipeUse::Write ? "expected recipe write FILE"
                                                      : "expected recipe read FILE");
        return std::nullopt;
    }
    const QString path = invocation.arguments.first();
    const auto content = readInputFile(path, kLongestFile, error);
    if (!content) {
        return std::nullopt;
    }
    const Access access = use == RecipeUse::Write ? Access::Write : Access::Read;
    QString what;
    auto file = RecipeFile::parse(
        *content, use, station, invocation.driver.registers(),
        [&](const Item &item, QString &why) { return invocation.driver.check(item, access, why); },
        what);
    if (!file) {
        error = path + QLatin1Char(':') + what;
    }
    return file;
}

int refuse(const Invocation &invocation, const QString &error)
{
    invocation.messages.say(error);
    return kUsage;
}

int runWrite(const Invocation &invocation)
{
    QString error;
    const auto link = readLinkSettings(invocation.parser, LinkNeed::Required, error);
    const auto file = link ? readFile(invocation, RecipeUse::Write, link->station, error)
                           : std::optional<RecipeFile>();
    if (!file) {
        return refuse(invocation, error);
    }
    RecipeRun run;
    run.items = file->items();
    run.direction = RecipeDirection::Write;
    run.verify = invocation.parser.isSet(QLatin1String("no-verify")) ? Verify::No : Verify::Yes;
    QVector<QVector<quint16>> values;
    return runRecipe(invocation.driver, *link, run, invocation.messages, values);
}

int runRead(const Invocation &invocation)
{
    QString error;
    const auto link = readLinkSettings(invocation.parser, LinkNeed::Optional, error);
    const auto file = link ? readFile(invocation, RecipeUse::Read, link->station, error)
                           : std::optional<RecipeFile>();
    const QString option = QLatin1String("output");
    const bool toFile = invocation.parser.isSet(option);
    const auto output =
        file && toFile ? openOutputFile(invocation.parser.value(option), error) : nullptr;
    if (!file || (toFile && !output)) {
        return refuse(invocation, error);
    }
    RecipeRun run;
    run.items = file->items();
    run.direction = RecipeDirection::Read;
    QVector<QVector<quint16>> values;
    const int exitCode = runRecipe(invocation.driver, *link, run, invocation.messages, values);
    if (exitCode != kFine) {
        return exitCode;
    }
    const QByteArray content = file->filled(values);
    if (!output) {
        writeToStandardOutput(content);
    } else if (!replaceFile(*output, content)) {
        invocation.messages.say(QString::fromLatin1("cannot write %1: %2")
                                    .arg(output->fileName(), output->errorString()));
        return kOutputLost;
    }
    return kFine;
}

} // namespace

const Command kRecipeWriteCommand = {
    "recipe write",
    "FILE",
    "Transfers a row of values to the PLC as a whole, and reads back whether it has them. FILE is "
    "CSV with the columns register, address, count and value, one field for each value, and maybe "
    "station.",
    "recipe write --link tcp:192.168.0.100:8000 press.csv\n",
    addWriteOptions,
    runWrite};

const Command kRecipeReadCommand = {
    "recipe read",
    "FILE",
    "Reads the addresses of FILE and prints the file with the values that the PLC has.",
    "recipe read --link serial:/dev/ttyUSB0 press.csv --output now.csv\n",
    addReadOptions,
    runRead};

} // namespace cnet::panel
