#pragma once

#include "exchange/host_loop.h"
#include "exchange/soak/soak_register.h"
#include "exchange/soak/soak_tally.h"

#include "plc/bus.h"

#include <map>
#include <optional>
#include <vector>

namespace exchange::soak {

/**
 * The PLCs, and beside each memory a second one that holds what it must hold: it changes by what
 * the stations themselves do and by the writes that they have carried out, and by nothing else.
 */
class Plant
{
public:
    Plant(HostLoop &host, Tally &tally)
        : m_host(host)
        , m_tally(tally)
    {}

    void add(int station, plc::Model model, quint32 seed);
    /** The station falls silent; its memory stays. */
    void goAway(int station);
    /** @param empty its memory was lost meanwhile */
    void comeBack(int station, bool empty);
    void allComeBack();
    bool isThere(int station) const;
    bool isAway(int station) const { return m_away.count(station) != 0; }

    void setFaults(int station, const std::vector<plc::Fault> &faults);

    /** A station changes a value by itself; nothing happens where it has none there. */
    void change(const Range &place, int value);
    /** What a station holds; nothing where it has no such place or is not there. */
    std::optional<int> held(const Range &range, int offset = 0) const;

    /** A write of words, one bit or one contact was carried out. */
    void carryOut(const Range &range, const std::vector<int> &values);
    /** A word was written that had been read before for the sake of its bits. */
    void carryOutBits(const Range &range, const std::vector<int> &values, int wordRead);

    /** Compares the memories of a station, in the range and beside it. */
    void compare(const Range &range) const;
    /** The same for every value of every station. */
    void compareAll() const;

private:
    void compareWith(const plc::Memory &memory, int station) const;
    void compareValue(const plc::Memory &memory, int station, const plc::Point &point) const;

    HostLoop &m_host;
    Tally &m_tally;
    std::map<int, plc::Memory> m_wanted;
    std::map<int, std::map<int, plc::Unit>::node_type> m_away;
};

/** Bits that go with one reading and one writing of words; the others go by themselves. */
bool goesThroughWords(const Range &range);

/** How many words such a write reads: more than the bits lie in when they are nine to fifteen. */
int wordsRead(const Range &range);

/** Bits of the range that lie in its first word. */
int bitsInFirstWord(const Range &range);

} // namespace exchange::soak
