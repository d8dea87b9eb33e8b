#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/operation.h"

namespace model {

/** Which operations come together, and how often. */
struct Mix
{
    /** Weights of the steps; an exchange is a frame and its answer. */
    struct Weights
    {
        int start = 0;
        int listen = 0;
        int monitor = 0;
        int recipe = 0;
        int ask = 0;
        int write = 0;
        int once = 0;
        int look = 0;
        int handshake = 0;
        int exchange = 0;
        int within = 0; ///< a step from within the callback
        int lone = 0;   ///< a frame without an answer, or an answer to nothing
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

    const char *name;
    Weights weights;
    unsigned registers = Words;
    int badPercent = 0;  ///< answers that are spoilt
    int addresses = 6;   ///< of how many a range starts at one: few make equal ranges
    bool narrow = false; ///< one station and one register of a kind: nearly all ranges meet
    bool varied = false; ///< retries, block size, cache-only writes and what the host shares change
    int calmPercent = 0; ///< answers that mostly repeat what was said before
};

const std::vector<Mix> &mixes();

/** The same seed gives the same steps, whatever the standard library. */
Sequence randomSequence(const Mix &mix, std::uint32_t seed, int steps);

} // namespace model
