#pragma once

#include "exchange/soak/soak_exchange.h"

#include <string>
#include <vector>

namespace exchange::soak {

/** The end of a phase: faults are over, every station is back, nobody writes any more. */
class Rest
{
public:
    Rest(Bench &bench, Exchanger &exchanger)
        : m_bench(bench)
        , m_exchanger(exchanger)
    {}

    /** Lets everything come to rest and checks what panel and PLCs then hold. */
    void run();

private:
    bool isOver();
    void drain();
    void readTwice();
    void checkBlock(const Ended &ended) const;
    void checkPlace(const Range &place);
    std::string excuseFor(const Range &place) const;

    Bench &m_bench;
    Exchanger &m_exchanger;
    std::vector<Ended> m_blocks; ///< how each block of the last round ended
};

} // namespace exchange::soak
