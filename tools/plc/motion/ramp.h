#pragma once

#include "plc/memory/memory.h"

#include <QtGlobal>

namespace plc {

/**
 * Consecutive values that count up with time: from `low` to `high` in steps of 1, then from `low`
 * again. Each address is one step ahead of the previous one.
 */
struct Ramp
{
    Point first;         ///< first address
    int count = 1;       ///< number of consecutive addresses
    int low = 0;         ///< 0-65535; bits and contacts are on for every value but 0
    int high = 9999;     ///< low-65535
    int stepMs = 1000;   ///< milliseconds between two steps, at least 1
    qint64 current = -1; ///< the step now in the memory; negative before the first

    /**
     * Updates the memory for time nowMs (milliseconds from any origin, not negative). A value
     * written by a master stays until the next step.
     */
    void advance(Memory &memory, qint64 nowMs);
};

} // namespace plc
