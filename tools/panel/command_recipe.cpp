#include "panel/commands.h"
#include "panel/exit_code.h"
#include "panel/item_check.h"
#include "panel/recipe_run.h"
#include "panel/settings.h"
#include "panel/standard_output.h"
#include "panel/value_text.h"

#include <QFile>
#include <QSaveFile>

#include <memory>
#include <numeric>

namespace panel {

namespace {

// Far more than all words of all stations take.
const qint64 kLongestFile = 8 * 1024 * 1024;

void addOptions(QCommandLineParser &parser)
{
    addLinkOptions(parser);
    parser.addOption({QLatin1String("output"),
                      QLatin1String("recipe read: the file to write instead of standard output. It "
                                    "may be FILE itself."),
                      QLatin1String("PATH")});
}

bool readContent(const QString &path, QByteArray &content, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QString::fromLatin1("cannot read %1: %2").arg(path, file.errorString());
        return false;
    }
    content = file.read(kLongestFile + 1);
    if (file.error() != QFileDevice::NoError) {
        error = QString::fromLatin1("cannot read %1: %2").arg(path, file.errorString());
        return false;
    }
    if (content.size() > kLongestFile) {
        error = QString::fromLatin1("%1 is no recipe: it is longer than %2 bytes")
                    .arg(path)
                    .arg(kLongestFile);
        return false;
    }
    return true;
}

std::optional<RecipeFile> readFile(const Invocation &invocation, const QString &path, RecipeUse use,
                                   int station, QString &error)
{
    QByteArray content;
    if (!readContent(path, content, error)) {
        return std::nullopt;
    }
    const Access access = use == RecipeUse::Write ? Access::Write : Access::Read;
    QString what;
    auto file = RecipeFile::parse(
        content, use, station, invocation.registers,
        [&](const Item &item, QString &why) {
            return checkItem(invocation.driver, item, access, why);
        },
        what);
    if (!file) {
        error = path + QLatin1Char(':') + what;
        return std::nullopt;
    }
    const qint64 words =
        std::accumulate(file->items().cbegin(), file->items().cend(), qint64(0),
                        [](qint64 sum, const RecipeItem &item) { return sum + item.item.count; });
    if (words > DriverSession::kRecipeWords) {
        error = QString::fromLatin1("%1 has %2 words; a recipe may have %3")
                    .arg(path)
                    .arg(words)
                    .arg(DriverSession::kRecipeWords);
        return std::nullopt;
    }
    return file;
}

// Opened before the PLC is asked: a file that cannot be written is said at once. What stood in it
// stays until the new content is complete.
bool openOutput(const QCommandLineParser &parser, std::unique_ptr<QSaveFile> &output,
                QString &error)
{
    const QString option = QLatin1String("output");
    if (!parser.isSet(option)) {
        return true;
    }
    output = std::make_unique<QSaveFile>(parser.value(option));
    if (!output->open(QIODevice::WriteOnly)) {
        error = QString::fromLatin1("cannot write %1: %2")
                    .arg(parser.value(option), output->errorString());
        return false;
    }
    return true;
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
    std::unique_ptr<QSaveFile> output;
    if (!file || !openOutput(invocation.parser, output, error)) {
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

} // namespace panel
