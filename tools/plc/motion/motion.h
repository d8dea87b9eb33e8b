#pragma once

#include "plc/memory/memory.h"

#include <QtGlobal>

namespace plc {

constexpr double kTurn = 6.283185307179586; ///< in radians

/** How values change with time. */
enum class MotionKind {
    Ramp,    ///< up from low to high in steps of 1, then from low again
    Sine,    ///< to and fro between low and high, smoothly
    Square,  ///< low, then high, and so on
    Walk,    ///< at random between low and high, never far at once
    Counter, ///< up by `increment`, 32 bits in two words, the lower half first
};

/**
 * Consecutive values that change with time. Where they are depends on the time alone, however often
 * anybody looks: two runs with the same seed show the same.
 */
struct Motion
{
    Point first;    ///< first address
    int count = 1;  ///< number of consecutive addresses; of a counter: words, two each
    qint64 low = 0; ///< -32768 to 65535, a counter 0 to 4294967295; bits are on except for 0
    qint64 high = 9999;
    int stepMs = 1000; ///< milliseconds between two steps, at least 1; of a sine: one full turn
    MotionKind kind = MotionKind::Ramp;
    int increment = 1;   ///< of a counter
    quint32 seed = 1;    ///< of a walk
    qint64 startMs = 0;  ///< when it begins, on the clock of advance()
    qint64 current = -1; ///< the step now in the memory; negative before the first

    /**
     * Updates the memory for time nowMs (milliseconds from any origin). A value written by a master
     * stays until the next step. Neighbours are apart: of a ramp by a step, of a sine by their
     * share of the turn, of a square by half of it; those of a walk have nothing to do with one
     * another, and counters are all alike.
     */
    void advance(Memory &memory, qint64 nowMs);
};

/**
 * A random walk: where it is at a step.
 * @param series which walk; another one is independent
 * @return 0 to 1; from one step to the next never more than a sixteenth away
 */
double walkAt(quint64 series, qint64 step);

} // namespace plc
