#pragma once

#include "exchange/soak/soak_bench.h"
#include "exchange/soak/soak_exchange.h"

#include <deque>

namespace exchange::soak {

/** What panel and PLCs do between two exchanges. */
class Operations
{
public:
    Operations(Bench &bench, Exchanger &exchanger, Random &random);

    /** The screen, the recipe and the faults with which a phase begins, and values in the PLCs. */
    void begin();
    /** Something, or nothing. */
    void maybe();
    /** What the panel does within a call of the driver, if anything. */
    std::optional<Job> reaction();

private:
    void run(Operation operation);
    void write(Operation operation);
    std::vector<int> valuesFor(const Range &range);
    void writeRange(const Range &range);
    Range severalBits();
    Range acrossWords();
    void flood();
    void readOnce();
    void request(Recipe direction);
    void changeRecipeValues();
    void changePlc();
    void stationAway();
    void stationBack();
    void newFaults();

    Bench &m_bench;
    Exchanger &m_exchanger;
    Random &m_random;
    const Plan &m_plan;
    std::deque<Range> m_lately; ///< written
};

} // namespace exchange::soak
