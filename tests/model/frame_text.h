#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/item.h"

namespace model {

/** A request on its way, and what its answer must look like. */
struct Frame
{
    std::string text; ///< the bytes on the wire
    int answerSize = 0;
    int dataPlace = 0;
    int units = 0;
    Item item;
};

enum class Verdict { Bad, Data, Acknowledged };

/** The request that reads the item; nothing for an unknown register. */
std::optional<Frame> readFrame(const Item &item);

/** The requests that write the item, one or two; none for an unknown register. */
std::vector<Frame> writeFrames(const Item &item);

/** The driver's opinion of an answer: length, ACK, ETX and block check, and nothing else. */
Verdict judge(const Frame &frame, const std::string &answer);

/**
 * Changes the bits of `answer`'s words that the bit write asks for and puts the words into the
 * write request that waits for them.
 */
void patchBits(const Frame &read, Frame &write, const std::string &answer);

/** The byte at a pair of hexadecimal characters as the driver reads it, whatever stands there. */
unsigned pairAt(const std::string &text, std::size_t place);

/** "3F" for 0x3F; digits in front are added or cut so that there are `digits` of them. */
std::string hexText(unsigned value, int digits);

/** The request or answer with its block check behind it. */
std::string withCheck(const std::string &text);

/** How the description of a request in an error text names it. */
std::string describe(const Frame &frame, std::size_t answerSize);

} // namespace model
