#include "panel/runs/recipe_run.h"

#include "host/address/value_text.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"
#include "panel/terminal/bar_and_messages.h"

#include <QElapsedTimer>

namespace cnet::panel {

namespace {

QVector<int> stationsOfRecipe(const QVector<RecipeItem> &items)
{
    QVector<Item> all;
    for (const RecipeItem &item : items) {
        all.append(item.item);
    }
    return stationsOf(all);
}

QString endText(const RecipeJob &job, const RecipeRun &run, qint64 elapsedMs)
{
    const QString verb =
        run.direction == RecipeDirection::Write ? QLatin1String("write") : QLatin1String("read");
    const RecipeProgress &progress = job.progress();
    if (job.state() != Job::State::Done) {
        return QString::fromLatin1("recipe %1 failed at %2; %3 of %4 words had been transferred")
            .arg(verb, job.failure())
            .arg(progress.words)
            .arg(progress.total);
    }
    const bool verified = run.direction == RecipeDirection::Write && run.verify == Verify::Yes;
    return QString::fromLatin1("recipe %1: %2, %3%4, %5 s")
        .arg(verb, counted(progress.blocks, "block"), counted(progress.words, "word"),
             QLatin1String(verified ? ", verified" : ""))
        .arg(static_cast<double>(elapsedMs) / 1000, 0, 'f', 2);
}

} // namespace

// Half a recipe is worse than none, so the first signal waits for the end of the transfer.
int runRecipe(Driver &driver, const LinkSettings &link, const RecipeRun &run, Messages &messages,
              QVector<QVector<quint16>> &values)
{
    CommandSession command(driver, link, stationsOfRecipe(run.items), messages);
    BarAndMessages shown(messages, "words");
    QElapsedTimer clock;
    clock.start();
    RecipeJob *const job = command.session().transfer(run.items, run.direction, run.verify);
    QObject::connect(job, &Job::progressed, job,
                     [&](int done, int total) { shown.bar().show(done, total); });
    bool asked = false;
    QObject::connect(&command, &CommandSession::stopRequested, job, [&] {
        if (asked) {
            job->cancel();
            return;
        }
        asked = true;
        messages.say(QLatin1String("the transfer is finished first; interrupt again to cut it "
                                   "off in the middle"));
    });
    shown.bar().show(0, job->progress().total);
    const int exitCode = command.run(*job);
    shown.bar().clear();
    if (exitCode == kFine || exitCode == kDeviceFailed) {
        messages.say(endText(*job, run, clock.elapsed()));
    }
    values = job->values();
    return exitCode;
}

} // namespace cnet::panel
