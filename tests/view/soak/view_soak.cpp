// The window under load for long: its event loop must go on and its memory stay as it is.
#include "view/soak/memory_meter.h"
#include "view/soak/soak_singles.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using namespace cnet::view;

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kMostWarmS = 180;
constexpr int kSampleS = 10;
constexpr double kMostGapMs = 50;
constexpr double kMostGrowthMb = 16; ///< of the highest over the beginning
constexpr double kMostRiseMb = 8;    ///< of the straight line, over the time measured

enum class Bounds { Count, Ignored };

struct Options
{
    int seconds = 3600;
    int samples = TraceSet::kMostSamples;
    Bounds bounds = Bounds::Count;
    bool hasSingles = false;
};

Options readOptions(const QApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QLatin1String("Puts a window under load and measures its event loop and its memory."));
    parser.addHelpOption();
    const QCommandLineOption seconds(QLatin1String("seconds"), QLatin1String("How long."),
                                     QLatin1String("N"), QLatin1String("3600"));
    const QCommandLineOption samples(
        QLatin1String("samples"),
        QLatin1String("What each trace has from the start; usually as many as it can have."),
        QLatin1String("N"), QString::number(TraceSet::kMostSamples));
    const QCommandLineOption noBounds(
        QLatin1String("no-bounds"), QLatin1String("Only the load must arrive; for busy machines."));
    const QCommandLineOption singles(QLatin1String("singles"),
                                     QLatin1String("Then measures what people do now and then."));
    parser.addOptions({seconds, samples, noBounds, singles});
    parser.process(application);
    Options options;
    options.seconds = std::max(1, parser.value(seconds).toInt());
    options.samples = std::clamp(parser.value(samples).toInt(), 0, TraceSet::kMostSamples);
    options.bounds = parser.isSet(noBounds) ? Bounds::Ignored : Bounds::Count;
    options.hasSingles = parser.isSet(singles);
    return options;
}

void printCounts(const LoadCounts &counts, double seconds)
{
    const double ms = seconds * 1e3;
    std::printf("fed into %d traces, a ms: %.2f from the simulated line, %.2f read beside it, "
                "%.2f missed in stalls\n",
                SoakLoad::kTraces, static_cast<double>(counts.fromLine) / ms,
                static_cast<double>(counts.besideLine) / ms,
                static_cast<double>(counts.missed) / ms);
    std::printf("exchanges %lld (%.0f a second), pages shown %d, faults changed %d, filters %d, "
                "line reopened %d times\n",
                counts.exchanges, static_cast<double>(counts.exchanges) / seconds,
                counts.pagesShown, counts.faultChanges, counts.filters, counts.reopened);
}

void printGaps(const LoopMeter &meter)
{
    std::printf("event loop: %lld ticks; the thread had %.0f s of processor in %.0f s\n",
                meter.ticks(), meter.cpuS(), meter.wallS());
    std::printf("longest gap: %.1f ms of processor time, %.1f ms by the clock\n",
                meter.worst().cpuMs, meter.worst().wallMs);
    std::printf("from tick to tick:\n%s", qPrintable(meter.histogram()));
    std::printf("the longest by processor time:\n");
    for (const LoopMeter::Gap &gap : meter.longest()) {
        std::printf("  %6.1f ms (%6.1f by the clock) after %7.1f s: %s\n", gap.cpuMs, gap.wallMs,
                    gap.atS, qPrintable(gap.during));
    }
}

void printMemory(const MemoryMeter &memory)
{
    std::printf("memory once warm: %d times, begins at %.1f MB, at most %.1f MB, ends at %.1f MB, "
                "slope %+.2f MB/h\n",
                memory.count(), memory.beginMb(), memory.mostMb(), memory.lastMb(),
                memory.slopeMbPerHour());
}

/** @return what is wrong; empty: nothing */
QStringList findings(const Options &options, const LoopMeter &meter, const MemoryMeter &memory,
                     const LoadCounts &counts)
{
    QStringList wrong;
    const auto must = [&wrong](bool isFine, const char *text) {
        if (!isFine) {
            wrong.append(QLatin1String(text));
        }
    };
    must(counts.fromLine > 0 && counts.besideLine > 0, "no samples came");
    must(counts.exchanges > 0, "no frames came");
    must(counts.pagesShown > 0, "no page was shown");
    if (options.bounds == Bounds::Count) {
        must(meter.worst().cpuMs <= kMostGapMs, "a gap of over 50 ms");
        must(memory.mostMb() - memory.beginMb() <= kMostGrowthMb, "memory grew by over 16 MB");
        must(memory.riseMb() <= kMostRiseMb, "memory rises, by over 8 MB in the time measured");
    }
    return wrong;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(QLatin1String("view_soak"));
    QApplication application(argc, argv);
    const Options options = readOptions(application);
    const QTemporaryDir folder;
    const RecentFiles recent(folder.filePath(QLatin1String("recent.json")));
    MainWindow window(recent);
    window.resize(kWidth, kHeight);
    window.show();
    LoopMeter meter;
    SoakLoad load(window, meter);
    const QString error = load.prepare(folder.path(), options.samples);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "view_soak: %s\n", qPrintable(error));
        return 2;
    }
    std::printf("view_soak: %d s; %d traces with %d samples each from the start; a simulated line "
                "as fast as it goes, whose words change each ms, and beside it as "
                "many more readings as are missing to %d changes a ms\n",
                options.seconds, SoakLoad::kTraces, options.samples, SoakLoad::kChangesPerMs);

    MemoryMeter memory;
    const int warmS = std::min(kMostWarmS, options.seconds / 4);
    QTimer sampling;
    QObject::connect(&sampling, &QTimer::timeout, &sampling, [&] {
        const double mb = residentMb();
        const double atS = meter.wallS();
        if (atS >= warmS) {
            memory.add(atS, mb);
        }
        const LoopMeter::Worst worst = meter.takeWorst();
        std::printf("%6.0f s: %7.1f MB, longest gap %6.1f ms of processor time, %7.1f by the "
                    "clock; %lld samples\n",
                    atS, mb, worst.cpuMs, worst.wallMs,
                    load.counts().fromLine + load.counts().besideLine);
        std::fflush(stdout);
    });
    sampling.start(std::min(kSampleS, std::max(1, options.seconds / 5)) * 1000);
    QTimer::singleShot(options.seconds * 1000, &application, &QCoreApplication::quit);
    meter.start();
    load.start();
    QApplication::exec();
    sampling.stop();

    printCounts(load.counts(), meter.wallS());
    printGaps(meter);
    printMemory(memory);
    const QStringList wrong = findings(options, meter, memory, load.counts());
    if (options.hasSingles) {
        runSingles(window, load, meter, folder.path());
    }
    window.document().abandon();
    for (const QString &one : wrong) {
        std::fprintf(stderr, "view_soak: %s\n", qPrintable(one));
    }
    std::printf("%s\n", wrong.isEmpty() ? "view_soak: fine" : "view_soak: failed");
    return wrong.isEmpty() ? 0 : 1;
}
