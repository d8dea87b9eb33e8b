#pragma once

#include "exchange/host_loop.h"
#include "exchange/soak/soak_calls.h"
#include "exchange/soak/soak_jobs.h"
#include "exchange/soak/soak_register.h"
#include "exchange/soak/soak_tally.h"

#include <unordered_map>
#include <vector>

namespace exchange::soak {

/**
 * What the panel must see: for each unit (a word or a contact) the value that was read or confirmed
 * last, and above it the panel's own value while a write of it waits.
 *
 * Three rules make it more than that. The end of a word's write confirms the value written last,
 * be it this write's or not. A word stays pending while one of its bits has a mark; a bit has two,
 * and the second is set while exactly two writes of the same bits wait. A reading ends a word's
 * wait when its value is new and no write waits anywhere, a contact's whenever it is new.
 */
class PanelView
{
public:
    /** @param jobs whose writes wait */
    PanelView(int device, const Jobs &jobs, Tally &tally)
        : m_device(device)
        , m_jobs(jobs)
        , m_tally(tally)
    {}

    /** Communication starts anew. */
    void clear() { m_units.clear(); }
    /** The screen shows these, and nothing else. */
    void watch(const Keys &keys);

    /**
     * The panel writes; the write waits already.
     * @param calls takes what the host must hear, here and below; the host may write meanwhile
     */
    void store(const Range &range, const std::vector<int> &values, Calls &calls);
    /** A write of these values has ended. */
    void settle(const Range &range, const std::vector<int> &values, bool acknowledged,
                Calls &calls);
    /** Words or one contact have come in. */
    void receive(const Range &range, const std::vector<int> &values, Calls &calls);

    /** What the panel shows of one address; 0 of a unit that was never used. */
    int shown(const Range &range, int offset = 0) const;
    bool isPending(const Range &range, int offset = 0) const;
    /** Bits of the unit have marks. */
    bool isMarked(const Range &range, int offset = 0) const;
    /** Units that were used so far. */
    int size() const { return static_cast<int>(m_units.size()); }

    /** Compares the driver's values of a range with these. Asking alone makes a unit known. */
    void compare(const Range &range);
    /** The same for every unit that was used. */
    void compareAll();

private:
    struct Unit
    {
        int confirmed = 0;
        int written = 0;
        bool pending = false;
        quint32 marks = 0;
        bool watched = false;
        int watchedBits = 0;
        int current() const { return pending ? written : confirmed; }
    };

    Unit &unitOf(const Range &range, int offset);
    const Unit *find(const Range &range, int offset) const;
    void storeBit(const Range &range, int offset, bool on, Calls &calls);
    void settleBit(const Range &range, int offset, bool acknowledged, Calls &calls);
    void settleUnit(const Range &range, int offset, bool acknowledged, Calls &calls);
    void report(const Range &range, int offset, const Unit &unit, int bits, Calls &calls) const;

    int m_device;
    const Jobs &m_jobs;
    Tally &m_tally;
    std::unordered_map<quint32, Unit> m_units;
};

/** The driver's values of a range. */
std::vector<int> valuesOnPanel(const Range &range);

} // namespace exchange::soak
