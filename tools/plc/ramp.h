#pragma once

#include "memory.h"

#include <QtGlobal>

namespace plc {

/**
 * A row of values that count up with time: from `low` to `high` in steps of 1, then from `low`
 * again, each address one step ahead of the one before it.
 */
struct Ramp
{
    Point first;         ///< where the row begins
    int count = 1;       ///< how many consecutive addresses
    int low = 0;         ///< 0-65535; bits and contacts are on at every value but 0
    int high = 9999;     ///< low-65535
    int stepMs = 1000;   ///< milliseconds a value stays, at least 1
    qint64 current = -1; ///< the step that the memory holds, negative before the first

    /**
     * Brings the memory to time nowMs (milliseconds from any zero, not negative). A value written
     * from the line stays until the next step.
     */
    void advance(Memory &memory, qint64 nowMs);
};

} // namespace plc
