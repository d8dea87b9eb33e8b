#pragma once

#include "exchange/soak/soak_tally.h"
#include "exchange/virtual_line.h"
#include "model/item.h"

#include <map>
#include <optional>
#include <vector>

namespace exchange::soak {

using model::Range;

/** The words or contacts in which a range lies: M words of a range of M bits. */
Range unitsOf(const Range &range);

/** Whether a range has a part of the unit in which a place lies. */
bool reaches(const Range &range, const Range &place);

/** Bits of the range that lie in its first word. */
int bitsInFirstWord(const Range &range);

/**
 * The PLCs, and beside each memory a second one that holds what it must hold: it changes by what
 * the stations themselves do and by the writes that they have carried out, and by nothing else.
 */
class Plant
{
public:
    Plant(plc::Bus &bus, Tally &tally)
        : m_bus(bus)
        , m_tally(tally)
    {}

    void add(int station, plc::Model model, quint32 seed);
    /** The station falls silent; its memory stays. */
    void goAway(int station);
    /** @param empty its memory was lost meanwhile */
    void comeBack(int station, bool empty);
    void allComeBack();
    bool isThere(int station) const { return m_bus.find(station) != nullptr; }

    void setFaults(int station, const std::vector<plc::Fault> &faults);

    /** A station changes a value by itself; nothing happens where it has none there. */
    void change(const Range &place, int value);
    /** What a station holds; nothing where it has no such place or is not there. */
    std::optional<int> held(const Range &range, int offset = 0) const;

    /** A write of words, one bit or one contact was carried out. */
    void carryOut(const Range &range, const std::vector<int> &values);
    /** A word was written that had been read before for the sake of its bits. */
    void carryOutBits(const Range &range, const std::vector<int> &values, int wordRead);

    /** Compares every value of every station. */
    void compareAll() const;

private:
    void compareValue(const plc::Memory &memory, int station, const plc::Point &point) const;

    plc::Bus &m_bus;
    Tally &m_tally;
    std::map<int, plc::Memory> m_wanted;
    std::map<int, std::map<int, plc::Unit>::node_type> m_away;
};

} // namespace exchange::soak
