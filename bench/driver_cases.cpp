#include "cases.h"
#include "cyclic_exchange.h"
#include "merge.h"
#include "panel_write.h"
#include "recipe_transfer.h"
#include "scattered_reads.h"

#include <ctime>

namespace bench {

namespace {

// How the values change from round to round, and how they are monitored.
struct Change
{
    const char *name;
    View view;
    quint16 flip; ///< bits of every word that change
};

const Change kChanges[] = {
    {"unchanged", View::Words, 0},
    {"words", View::Words, 0xFFFF},
    {"bits", View::Bits, 0xFFFF},
    {"one-bit", View::Bits, 0x0100},
};

// About 100, 1 000, 10 000 and 100 000 units, in whole blocks for each station.
const int kUnitsOfOne[] = {120, 1020, 10020, 99960};
const int kUnitsOfEight[] = {480, 960, 10080, 99840};

// Runs the steps of a case that was prepared before.
template <typename Case>
void runSteps(benchmark::State &state, Case &prepared)
{
    const qint64 callbacks = Host::callbacks();
    while (state.KeepRunning()) {
        prepared.step();
    }
    state.counters["callbacks"] = benchmark::Counter(
        static_cast<double>(Host::callbacks() - callbacks), benchmark::Counter::kAvgIterations);
}

void addExchange(const QString &name, const Area &shape, const Change &change)
{
    Area area = shape;
    area.view = change.view;
    addCase(name, [area, change](benchmark::State &state) {
        CyclicExchange exchange(area, change.flip);
        runSteps(state, exchange);
    });
}

void addExchanges()
{
    for (const Change &change : kChanges) {
        const QString changeName = QString::fromLatin1(change.name);
        for (const int words : {1, 8, 16, 32, 60}) {
            addExchange(QStringLiteral("exchange/%1/%2").arg(words).arg(changeName),
                        {words, 1, change.view, words}, change);
        }
        for (int i = 0; i < 4; ++i) {
            addExchange(QStringLiteral("area/%1/1/%2").arg(kUnitsOfOne[i]).arg(changeName),
                        {kUnitsOfOne[i], 1}, change);
            addExchange(QStringLiteral("area/%1/8/%2").arg(kUnitsOfEight[i]).arg(changeName),
                        {kUnitsOfEight[i], 8}, change);
        }
    }
}

void addReads(int units, int stations)
{
    addCase(QStringLiteral("get-data/%1/%2").arg(units).arg(stations),
            [units, stations](benchmark::State &state) {
                ScatteredReads reads({units, stations});
                runSteps(state, reads);
            });
}

double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The very first screen, whose units are not in the data area yet. The time is measured manually,
// to exclude emptying the area again.
void runFirstMerge(benchmark::State &state, int keys)
{
    while (state.KeepRunning()) {
        Merge merge(Spread::Clustered, keys, Merge::Begin::NotMerged);
        const double before = threadSeconds();
        merge.step();
        state.SetIterationTime(threadSeconds() - before);
    }
}

void addMerges()
{
    const struct
    {
        const char *name;
        Spread spread;
    } spreads[] = {
        {"clustered", Spread::Clustered}, {"scattered", Spread::Scattered}, {"bits", Spread::Bits}};
    for (const int keys : {100, 1000, 10000}) {
        for (const auto &each : spreads) {
            const Spread spread = each.spread;
            addCase(QStringLiteral("merge/%1/%2").arg(keys).arg(QLatin1String(each.name)),
                    [spread, keys](benchmark::State &state) {
                        Merge merge(spread, keys);
                        runSteps(state, merge);
                    });
        }
        addCase(QStringLiteral("merge/%1/first").arg(keys), [keys](benchmark::State &state) {
            runFirstMerge(state, keys);
        })->UseManualTime();
    }
}

void addWrites()
{
    const struct
    {
        const char *name;
        Written written;
    } writes[] = {{"word", Written::Word},
                  {"relay-bit", Written::Relay},
                  {"data-bit", Written::DataBit},
                  {"60-words", Written::Block}};
    for (const auto &each : writes) {
        const Written written = each.written;
        addCase(QStringLiteral("set-data/%1").arg(QLatin1String(each.name)),
                [written](benchmark::State &state) {
                    PanelWrite write(written);
                    runSteps(state, write);
                });
    }
}

void addRecipes()
{
    using Direction = RecipeTransfer::Direction;
    for (const Direction direction : {Direction::ToStation, Direction::ToPanel}) {
        addCase(direction == Direction::ToStation ? QStringLiteral("recipe/to-station")
                                                  : QStringLiteral("recipe/to-panel"),
                [direction](benchmark::State &state) {
                    RecipeTransfer transfer(direction);
                    runSteps(state, transfer);
                });
    }
}

} // namespace

void addDriverCases()
{
    addExchanges();
    for (int i = 0; i < 4; ++i) {
        addReads(kUnitsOfOne[i], 1);
        addReads(kUnitsOfEight[i], 8);
    }
    addMerges();
    addWrites();
    addRecipes();
}

} // namespace bench
