#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/operation.h"

namespace model {

/** Which operations come together, and how often. */
struct Mix
{
    enum Step {
        Start,
        Listen,
        Monitor,
        Recipe,
        Ask,
        Write,
        Once,
        Look,
        Handshake,
        Exchange, ///< a frame and its answer
        Within,   ///< a step from within the callback
        Lone,     ///< a frame without an answer, or an answer to nothing
        kSteps
    };
    enum Registers : unsigned {
        Words = 1,
        Bits = 2,
        ManyBits = 4,
        DataBits = 8,
        Contacts = 16,
        Unknown = 32,
        Wide = 64, ///< ranges longer than a block
        All = 127,
    };

    /**
     * @param stepWeights  as "write 3, look 1": three writes come upon each look
     * @param manner       numbers that are not as usual, as "bad 20, varied 1"
     */
    Mix(const char *mixName, const char *stepWeights, unsigned someRegisters,
        const char *manner = "");

    static const std::vector<Mix> &all();

    const char *name;
    std::array<int, kSteps> weights{}; ///< by step
    unsigned registers;
    int badPercent = 0;  ///< "bad": answers that are spoilt
    int addresses = 6;   ///< "from": of how many a range starts at one: few make equal ranges
    int isNarrow = 0;    ///< "narrow": one station and one register of a kind; most ranges meet
    int isVaried = 0;    ///< "varied": block size, retries and what the host shares change
    int calmPercent = 0; ///< "calm": answers that mostly repeat what was said before
};

/** The same seed gives the same steps, whatever the standard library. */
Sequence randomSequence(const Mix &mix, std::uint32_t seed, int steps);

} // namespace model
