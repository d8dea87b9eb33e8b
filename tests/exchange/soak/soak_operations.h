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
    /** What the panel does within the driver's next calls, if anything. */
    std::vector<Operation> reaction();

private:
    void run(Event event);
    void write(Event event);
    void writeRange(const Range &range);
    Range severalBits();
    Range acrossWords();
    void writeAny();
    void readOnce();
    void request(const char *direction);
    void changeRecipeValues();
    void changePlc();
    void moveStation(bool back);
    void newFaults(int station);

    Bench &m_bench;
    Exchanger &m_exchanger;
    Random &m_random;
    const Plan &m_plan;
    std::deque<Range> m_lately; ///< written
};

} // namespace exchange::soak
