#pragma once

#include <optional>
#include <string>

#include "model/driver_side.h"
#include "model/operation.h"

namespace model {

/** Where driver and model part. */
struct Disagreement
{
    std::size_t step =
        0;            ///< index in the sequence; its size: while the lists were emptied at the end
    std::string what; ///< the step, and what each of the two showed
};

/**
 * Runs a sequence on the driver and the model side by side, from a start with the usual
 * properties (7#0#0#3#60). Afterwards the cyclic
 * reads are taken away and everything that still waits is served, and the panel looks at every
 * range that occurred.
 *
 * @param threads  from which the host calls the driver
 * @param steps    when given, grows by the number of operations that ran, those of the end included
 * @return         nothing when both agreed all along
 */
std::optional<Disagreement> run(const Sequence &sequence, HostThreads threads,
                                unsigned long *steps = nullptr);

} // namespace model
