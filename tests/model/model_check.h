#pragma once

#include <string>

#include "model/driver_side.h"
#include "model/operation.h"

namespace model {

/**
 * Runs a sequence and, when driver and model part, shortens it.
 *
 * @param threads  from which the host calls the driver
 * @param steps    when given, grows by the number of operations that ran
 * @return         "" when both agreed; else what differs, and the shortest sequence that shows it,
 * as the text of a test row and step by step
 */
std::string disagreementOf(const Sequence &sequence, HostThreads threads,
                           unsigned long *steps = nullptr);

} // namespace model
