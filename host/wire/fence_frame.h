#pragma once

#include <QByteArray>

namespace cnet {

/** A request that the host builds itself, and the length of a positive answer to it. */
struct FenceFrame
{
    QByteArray request;
    int answerLength = 0;
};

/** How many fences there are whose answers differ from one another. */
constexpr int kFenceForms = 76;

/**
 * A read of data register 0, which every CPU has. It changes nothing and tells nothing of use; what
 * counts is that its answer cannot be mistaken: the forms differ in command or length.
 *
 * @param station 0 to 31
 * @param form 0 to kFenceForms - 1, the cheaper ones first
 */
FenceFrame fenceFrame(int station, int form);

} // namespace cnet
