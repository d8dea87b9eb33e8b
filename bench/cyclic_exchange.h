#pragma once

#include "answers.h"
#include "host.h"

namespace bench {

/** As what the panel watches its units. */
enum class View { Words, Bits };

/** What a panel monitors: data registers from 0 on, as many of each station, in whole blocks. */
struct Area
{
    int units = Host::kBlockWords;      ///< of all stations
    int stations = 1;                   ///< units / stations / blockWords leaves no rest
    View view = View::Words;            ///< Bits: all sixteen of every word
    int blockWords = Host::kBlockWords; ///< words of a block, Host::kBlockWords at most
};

/** Monitors an area and ends the program where its blocks are not the ones that were meant. */
void monitor(const Area &area);

/**
 * The exchange loop over an area: each step is one exchange, in memory, and the steps go round all
 * blocks. Every unit was read before the first step.
 */
class CyclicExchange
{
public:
    /** @param flip bits of every word that change from round to round */
    CyclicExchange(const Area &area, quint16 flip);

    void step()
    {
        m_host.ask();
        m_host.answer(m_answers.of(m_host.frame().var.stationNo, m_turn));
        if (++m_blocksOfRound == m_blocks) {
            m_blocksOfRound = 0;
            m_turn = 1 - m_turn;
        }
    }

private:
    Host m_host;
    AnswerPair m_answers;
    int m_blocks;
    int m_blocksOfRound = 0;
    int m_turn = 0;
};

} // namespace bench
