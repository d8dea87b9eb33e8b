#pragma once

#include "answers.h"
#include "host.h"

namespace bench {

/** The views in which the panel monitors its units. */
enum class View { Words, Bits };

/** The monitored area: data registers from 0 on, equally many per station, in whole blocks. */
struct Area
{
    int units = Host::kBlockWords;      ///< total for all stations
    int stations = 1;                   ///< units is a multiple of stations * blockWords
    View view = View::Words;            ///< Bits: all sixteen of each word
    int blockWords = Host::kBlockWords; ///< words per block, at most Host::kBlockWords
};

/** Monitors an area, and ends the program if it does not result in the expected blocks. */
void monitor(const Area &area);

/**
 * The exchange loop for an area: each step is one exchange in memory, and the steps cycle through
 * all blocks. All units were read before the first step.
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
