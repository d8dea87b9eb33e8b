// Millions of exchanges with faults, each checked against the rules. See --help.

#include "exchange/soak/soak_heap.h"
#include "exchange/soak/soak_phase.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <limits>

using namespace exchange::soak;

namespace {

constexpr int kUsage = 2;
constexpr int kUsualExchanges = 4000; // of a phase, apart from those in which it comes to rest
constexpr qint64 kMsPerMinute = 60000;

struct Settings
{
    quint64 seed = 1;
    long long exchanges = 100000;
    qint64 ms = 0;  ///< 0: by exchanges
    int phase = -1; ///< this one alone
    int phaseExchanges = kUsualExchanges;
};

void say(const QString &text)
{
    QTextStream(stdout) << text << '\n';
}

void complain(const QString &text)
{
    QTextStream(stderr) << text << '\n';
}

/** A whole number of the command line, or nothing and a complaint. */
bool takeNumber(const QCommandLineParser &parser, const QString &name, long long lowest,
                long long &number)
{
    if (!parser.isSet(name)) {
        return true;
    }
    bool isNumber = false;
    number = parser.value(name).toLongLong(&isNumber);
    if (isNumber && number >= lowest) {
        return true;
    }
    complain(QString::fromLatin1("soak: --%1 \"%2\": expected a whole number from %3 on")
                 .arg(name, parser.value(name), QString::number(lowest)));
    return false;
}

std::optional<Settings> readSettings(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QLatin1String("Runs the driver against simulated PLCs with faults, on a clock of its own, "
                      "and checks every exchange."));
    const auto add = [&parser](const char *name, const char *meaning, const char *value) {
        parser.addOption({QLatin1String(name), QLatin1String(meaning), QLatin1String(value)});
    };
    parser.addHelpOption();
    add("seed", "what chooses everything; 1 if not told", "S");
    add("exchanges", "go on until that many; 100000 if not told", "N");
    add("minutes", "go on for so long instead", "M");
    add("phase", "run this phase alone, and tell its last steps if it fails", "P");
    add("phase-exchanges", "exchanges of a phase, apart from its end; 4000 if not told", "N");
    parser.process(application);

    long long seed = 1;
    long long exchanges = 100000;
    long long minutes = 0;
    long long phase = -1;
    long long phaseExchanges = kUsualExchanges;
    if (!takeNumber(parser, QLatin1String("seed"), 0, seed) ||
        !takeNumber(parser, QLatin1String("exchanges"), 1, exchanges) ||
        !takeNumber(parser, QLatin1String("minutes"), 1, minutes) ||
        !takeNumber(parser, QLatin1String("phase"), 0, phase) ||
        !takeNumber(parser, QLatin1String("phase-exchanges"), 1, phaseExchanges)) {
        return std::nullopt;
    }
    constexpr long long kMost = std::numeric_limits<int>::max();
    return Settings{static_cast<quint64>(seed), exchanges, std::min(minutes, kMost) * kMsPerMinute,
                    static_cast<int>(std::min(phase, kMost)),
                    static_cast<int>(std::min(phaseExchanges, kMost))};
}

/** @return false where the phase failed, after saying how. */
bool runOne(const Settings &settings, int phase, Tally &tally)
{
    const Plan plan = choosePlan(settings.seed, phase, settings.phaseExchanges);
    const auto failure = runPhase(plan, tally, settings.phase >= 0);
    if (!failure) {
        return true;
    }
    complain(QString::fromStdString(failure->steps + "soak: " + failure->what));
    complain(QString::fromLatin1("soak: %1\nsoak: exchange %2; again with: soak --seed %3 --phase "
                                 "%4 --phase-exchanges %5")
                 .arg(QString::fromStdString(plan.text()), QString::number(failure->exchange),
                      QString::number(settings.seed), QString::number(phase),
                      QString::number(settings.phaseExchanges)));
    return false;
}

bool runAll(const Settings &settings, Tally &tally, int &phases)
{
    constexpr int kBetweenHeapChecks = 64;
    HeapWatch heap(settings.seed);
    QElapsedTimer clock;
    clock.start();
    const auto goesOn = [&] {
        return settings.ms > 0 ? clock.elapsed() < settings.ms
                               : tally.frames() < settings.exchanges;
    };
    for (; goesOn(); ++phases) {
        if (!runOne(settings, phases, tally)) {
            return false;
        }
        if (phases % kBetweenHeapChecks == kBetweenHeapChecks - 1 && !heap.isFlat(complain)) {
            return false;
        }
    }
    const bool isFlat = heap.isFlat(complain);
    say(heap.report());
    return isFlat;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QLatin1String("soak"));
    const auto settings = readSettings(application);
    if (!settings) {
        return kUsage;
    }
    Tally tally;
    QElapsedTimer clock;
    clock.start();
    int phases = 0;
    const bool isGood = settings->phase >= 0 ? runOne(*settings, settings->phase, tally)
                                             : runAll(*settings, tally, phases);
    const double seconds = static_cast<double>(std::max<qint64>(clock.elapsed(), 1)) / 1000;
    say(QString::fromLatin1("seed %1: %2 exchanges in %3 phases, %4 s, %5 a second")
            .arg(QString::number(settings->seed), QString::number(tally.frames()),
                 QString::number(phases), QString::number(seconds, 'f', 1),
                 QString::number(static_cast<double>(tally.frames()) / seconds, 'f', 0)));
    say(QString::fromStdString(tally.report()));
    return isGood ? 0 : 1;
}
