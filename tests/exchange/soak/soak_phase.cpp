#include "exchange/soak/soak_phase.h"

#include "exchange/soak/soak_operations.h"
#include "exchange/soak/soak_rest.h"

namespace exchange::soak {

namespace {

constexpr int kBetweenFullChecks = 500;

void runWithFaults(Bench &bench, Exchanger &exchanger, Operations &operations)
{
    for (int i = 1; i <= bench.plan().exchanges; ++i) {
        operations.maybe();
        exchanger.run();
        if (i % kBetweenFullChecks == 0) {
            bench.lookAtAll();
        }
    }
}

} // namespace

std::optional<PhaseFailure> runPhase(const Plan &plan, Tally &tally, bool traced)
{
    const long long before = tally.frames();
    Random random = phaseRandom(plan.seed, -1 - plan.phase);
    Bench bench(plan, tally);
    bench.setTraced(traced);
    try {
        Exchanger exchanger(bench);
        Operations operations(bench, exchanger, random);
        operations.begin();
        bench.setReaction([&operations] { return operations.reaction(); });
        runWithFaults(bench, exchanger, operations);
        Rest(bench, exchanger).run();
    } catch (const std::runtime_error &broken) {
        return PhaseFailure{tally.frames() - before, broken.what(), bench.traceText()};
    }
    const model::JobList &writes = bench.model().writes();
    const model::JobList &reads = bench.model().onceReads();
    tally.excuse("write replaced by a newer one of its place", writes.folded());
    tally.excuse("write replaced: 513 waited", static_cast<long long>(writes.displaced().size()));
    tally.excuse("condition read folded into one that waited", reads.folded());
    tally.excuse("condition read replaced: 513 waited",
                 static_cast<long long>(reads.displaced().size()));
    return std::nullopt;
}

} // namespace exchange::soak
