#pragma once

#include <QString>

namespace cnet {

/** How far a value can be trusted. */
enum class Quality {
    NeverRead,   ///< not all of it has been read yet
    Good,        ///< as the PLC had it when it was due last
    Waiting,     ///< written here, and not confirmed by the PLC yet
    Implausible, ///< read, but the words stand for no value of its type, or one out of bounds
    Stale,       ///< not read when it was due
    Refused,     ///< the PLC refuses the address
    NoAnswer,    ///< its last reading was not answered, or not usably
    LineDown,    ///< the line is not open
};

/** "good", "no answer"...: the same words in every program. */
QString qualityText(Quality quality);

} // namespace cnet
