#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace model {

using Bytes = std::vector<std::uint8_t>;

/** A range of one register at one station. */
struct Range
{
    int station = 0;
    std::string name;
    int start = 0; ///< word or contact; word * 16 + bit for a "_bit" name
    int count = 0;

    bool operator==(const Range &other) const
    {
        return std::tie(station, name, start, count) ==
               std::tie(other.station, other.name, other.start, other.count);
    }
};

/** A range that waits in a list, with whatever is to be written there. */
struct Item
{
    Range range;
    int tag = 0;  ///< `VARIABLE::opKind`
    Bytes values; ///< what the request must carry; any value byte beyond counts as 0

    [[nodiscard]] unsigned byteAt(std::size_t place) const
    {
        return place < values.size() ? values[place] : 0U;
    }
};

/** What the host hears about a change. */
struct Notice
{
    int device = 0;
    int station = 0;
    std::string name;
    int address = 0;
    Bytes seen; ///< what the panel shows of the place by then, where the host looks
};

} // namespace model
