#include "panel/commands/commands.h"
#include "panel/system/exit_code.h"
#include "panel/system/input_file.h"
#include "host/driver/item_check.h"
#include "panel/system/output_file.h"
#include "panel/runs/recipe_run.h"
#include "panel/commands/link_settings.h"
#include "panel/system/standard_output.h"
#include "host/address/value_text.h"

namespace cnet::panel {

namespace {

// Far more than all words of all stations take.
const int kLongestFile = 8 * 1024 * 1024;

void addOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    parser.addOption({QLatin1String("output"),
                      QLatin1String("recipe read: the file to write instead of standard output. It "
                                    "may be FILE itself."),
                      QLatin1String("PATH")});
}

std::optional<RecipeFile> readFile(const Invocation &invocation, const QString &path, RecipeUse use,
                                   int station, QString &error)
{
    const auto content = readInputFile(path, kLongestFile, error);
    if (!content) {
        return std::nullopt;
    }
    const Access access = use == RecipeUse::Write ? Access::Write : Access::Read;
    QString what;
    auto file = RecipeFile::parse(
        *content, use, station, invocation.registers,
        [&](const Item &item, QString &why) {
            return checkItem(invocation.driver, item, access, why);
        },
        what);
    if (!file) {
        error = path + QLatin1Char(':') + what;
        return std::nullopt;
    }
    return file;
}

int writeRecipe(const Invocation &invocation, const LinkSettings &link, const QString &path,
                QString &error)
{
    const auto file = readFile(invocation, path, RecipeUse::Write, link.station, error);
    if (!file) {
        return kUsage;
    }
    QVector<QVector<quint16>> values;
    return runRecipe(invocation.driver, link, invocation.registers, file->items(),
                     RecipeDirection::Write, invocation.messages, values);
}

int readRecipe(const Invocation &invocation, const LinkSettings &link, const QString &path,
               QString &error)
{
    const auto file = readFile(invocation, path, RecipeUse::Read, link.station, error);
    if (!file) {
        return kUsage;
    }
    const QString option = QLatin1String("output");
    const bool toFile = invocation.parser.isSet(option);
    const auto output = toFile ? openOutputFile(invocation.parser.value(option), error) : nullptr;
    if (toFile && !output) {
        return kUsage;
    }
    QVector<QVector<quint16>> values;
    const int exitCode = runRecipe(invocation.driver, link, invocation.registers, file->items(),
                                   RecipeDirection::Read, invocation.messages, values);
    if (exitCode != kFine) {
        return exitCode;
    }
    const QByteArray content = file->filled(values);
    if (!output) {
        writeToStandardOutput(content);
    } else if (output->write(content) != content.size() || !output->commit()) {
        error = QString::fromLatin1("cannot write %1: %2")
                    .arg(output->fileName(), output->errorString());
        return kUsage;
    }
    return kFine;
}

int run(const Invocation &invocation)
{
    const QString action = invocation.arguments.value(0);
    const bool writes = action == QLatin1String("write");
    QString error;
    int exitCode = kUsage;
    const auto link = readLinkSettings(invocation.parser, error);
    if (invocation.arguments.size() != 2 || (!writes && action != QLatin1String("read"))) {
        error = QLatin1String("expected recipe write FILE or recipe read FILE");
    } else if (writes && invocation.parser.isSet(QLatin1String("output"))) {
        error = QLatin1String("--output is for recipe read");
    } else if (link) {
        const QString path = invocation.arguments.at(1);
        exitCode = writes ? writeRecipe(invocation, *link, path, error)
                          : readRecipe(invocation, *link, path, error);
    }
    if (!error.isEmpty()) {
        invocation.messages.say(error);
    }
    return exitCode;
}

} // namespace

const Command kRecipeCommand = {
    "recipe", "write|read FILE",
    "Transfers a row of values as a whole. FILE is CSV with the columns register, address, count "
    "and value, one field for each value, and maybe station. write sends the values; read prints "
    "the file with the values that the PLC has.",
    addOptions, run};

} // namespace cnet::panel
