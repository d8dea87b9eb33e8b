#pragma once

#include "exchange/soak/soak_plan.h"
#include "exchange/soak/soak_tally.h"

#include <optional>

namespace exchange::soak {

/** Where a phase broke: for a message, and to find it again. */
struct PhaseFailure
{
    long long exchange = 0; ///< of the phase, counted from 1
    std::string what;
    std::string steps; ///< what was done before, where the phase is traced
};

/**
 * Runs one phase: as many exchanges as its plan says with whatever happens between them, then
 * without faults until nothing waits and every block was read twice more, and checks what is left.
 * @return nothing where every promise was kept
 */
std::optional<PhaseFailure> runPhase(const Plan &plan, Tally &tally, bool traced);

} // namespace exchange::soak
