#pragma once

#include "host/address/register_info.h"
#include "host/link/link_address.h"

#include <QVector>

namespace cnet {

/** How far a register of a station reaches. */
struct RegisterReach
{
    enum class State {
        Unknown, ///< answers were missing or contradict one another, or the frames were used up
        Absent,  ///< the station refuses it from its lowest address on
        Present,
    };

    RegisterInfo reg;
    State state = State::Unknown;
    int highest = 0;      ///< of Present: the highest address that can be read
    bool toLimit = false; ///< that is the highest that was asked for; there may be more
};

/** A station that answers. */
struct FoundStation
{
    int station = 0;
    LineSettings line;                ///< with which it answers
    int answers = 0;                  ///< that came, refusals included
    double meanMs = 0;                ///< of them
    double worstMs = 0;               ///< of the slowest one
    QVector<RegisterReach> registers; ///< in the order of the options; empty until it was surveyed

    /** @param tookMs 0 or more */
    void noteAnswer(double tookMs);
};

} // namespace cnet
