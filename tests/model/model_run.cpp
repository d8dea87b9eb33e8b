/** Long runs of driver and model side by side; `model_run --help` tells how. */

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

#include "model/model_check.h"
#include "model/operation_mix.h"

namespace {

constexpr int kMostShown = 10;

/** Every other seed has a host with several threads. */
model::HostThreads threadsOf(unsigned seed)
{
    return seed % 2 == 0 ? model::HostThreads::One : model::HostThreads::Several;
}

int replay(const std::string &text, model::HostThreads threads)
{
    const auto sequence = model::sequenceOf(text);
    if (!sequence) {
        std::fputs("model_run: this is no sequence\n", stderr);
        return 2;
    }
    const std::string what = model::disagreementOf(*sequence, threads);
    std::puts(what.empty() ? "driver and model agree" : what.c_str());
    return what.empty() ? 0 : 1;
}

int runMany(unsigned sequences, unsigned seed, int steps, const std::string &only)
{
    unsigned long done = 0;
    int found = 0;
    for (unsigned i = 0; i < sequences && found < kMostShown; ++i) {
        const auto &mixes = model::Mix::all();
        const model::Mix &mix = mixes[i % mixes.size()];
        if (!only.empty() && only != mix.name) {
            continue;
        }
        const auto what = model::disagreementOf(model::randomSequence(mix, seed + i, steps),
                                                threadsOf(seed + i), &done);
        if (!what.empty()) {
            ++found;
            std::printf("%s, seed %u: %s\n", mix.name, seed + i, what.c_str());
            std::fflush(stdout);
        }
    }
    std::printf("%u sequences, %lu operations, %d disagreements\n", sequences, done, found);
    return found == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto text = [](const char *latin) { return QString::fromLatin1(latin); };
    QCommandLineParser parser;
    parser.setApplicationDescription(
        text("Runs random operations on the driver and on a model of it, and compares all that a "
             "host can see.\nExit code: 0 both agree, 1 they do not, 2 wrong options."));
    parser.addHelpOption();
    const QCommandLineOption sequences(text("sequences"), text("How many."), text("N"),
                                       text("10000"));
    const QCommandLineOption seed(text("seed"), text("The first one's seed."), text("S"),
                                  text("1"));
    const QCommandLineOption steps(text("steps"), text("Operations of one, at least."), text("N"),
                                   text("100"));
    const QCommandLineOption mix(text("mix"), text("Only this mix of operations."), text("NAME"));
    const QCommandLineOption several(text("threads"),
                                     text("--replay with several threads, as odd seeds run."));
    const QCommandLineOption again(text("replay"), text("One sequence, as it was printed."),
                                   text("TEXT"));
    parser.addOptions({sequences, seed, steps, mix, several, again});
    parser.process(application);
    if (parser.isSet(again)) {
        return replay(parser.value(again).toStdString(), parser.isSet(several)
                                                             ? model::HostThreads::Several
                                                             : model::HostThreads::One);
    }
    bool right[3] = {};
    const unsigned count = parser.value(sequences).toUInt(&right[0]);
    const unsigned first = parser.value(seed).toUInt(&right[1]);
    const int length = parser.value(steps).toInt(&right[2]);
    if (!right[0] || !right[1] || !right[2] || length < 1) {
        std::fputs("model_run: --sequences, --seed and --steps take numbers\n", stderr);
        return 2;
    }
    return runMany(count, first, length, parser.value(mix).toStdString());
}
