#pragma once

#include <QtGlobal>

namespace plc {

constexpr int kBitsPerWord = 16;

/** Kind of one value of the memory. */
enum class PointKind {
    Word,    ///< 16-bit word: current value of a timer or counter, data register, relay word
    Bit,     ///< bit of a word
    Contact, ///< output contact of a timer or counter; not a bit of its current value
};

/** One value of a PLC's memory. */
struct Point
{
    char device = 'D';                ///< device letter: P M K L F T C D
    PointKind kind = PointKind::Word; ///< the unit of `address`
    int address = 0;                  ///< word number, contact number, or word * 16 + bit for a bit
};

} // namespace plc
