#include "model/model_check.h"

#include "model/operation_run.h"
#include "model/sequence_shrink.h"

namespace model {

std::string disagreementOf(const Sequence &sequence, HostThreads threads, unsigned long *steps)
{
    const auto first = run(sequence, threads, steps);
    if (!first) {
        return std::string();
    }
    const Sequence reached(
        sequence.begin(),
        sequence.begin() + static_cast<std::ptrdiff_t>(
                               first->step < sequence.size() ? first->step + 1 : sequence.size()));
    const Sequence shortest =
        shrink(reached, [=](const Sequence &other) { return run(other, threads).has_value(); });
    const auto last = run(shortest, threads);
    std::string text = "at " + (last ? last : first)->what + "\nshortest of " +
                       std::to_string(sequence.size()) + " operations, as a row:\n  \"" +
                       textOf(shortest) + "\"\nstep by step:\n";
    for (std::size_t i = 0; i < shortest.size(); ++i) {
        text += "  " + std::to_string(i + 1) + "  " + textOf(shortest[i]) + "\n";
    }
    return text;
}

} // namespace model
