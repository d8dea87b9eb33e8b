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
            bench.view().compareAll();
            bench.host().forget();
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
        bench.setReaction({});
        Rest(bench, exchanger).run();
    } catch (const Violation &violation) {
        return PhaseFailure{tally.frames() - before, QString::fromUtf8(violation.what()),
                            bench.traceText()};
    }
    return std::nullopt;
}

} // namespace exchange::soak
