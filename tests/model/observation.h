#pragma once

#include <array>
#include <string>
#include <vector>

#include "model/item.h"

namespace model {

/** What one step showed to the host. */
struct Observation
{
    std::string text; ///< result and whatever came with it
    Bytes bytes;      ///< value bytes; of the driver's, as many are compared as of the model's
    std::vector<Notice> notices; ///< in order
};

/** What a step from within the callback showed, in its place among the notices. */
Notice noticeWithin(const Observation &observation);

/** A frame as the host gets it. */
struct SentFrame
{
    std::string bytes;
    int answerSize = 0;
    int dataPlace = 0;
    int units = 0;
    int spare = 0;
    int tag = 0;
    Range range;
};

/** @param frame  null: there was none to send */
std::string textOf(const SentFrame *frame);

/** A result with a text, such as the description of a request. */
std::string textOf(int code, const std::string &text);

/** How many writes, one-off reads, cyclic reads and values there are. */
using Sizes = std::array<std::size_t, 4>;

/** "" when both show the same, else the two in two lines. */
std::string difference(const Observation &expected, const Observation &seen);

} // namespace model
