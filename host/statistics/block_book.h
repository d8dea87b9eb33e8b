#pragma once

#include "host/address/address_range.h"
#include "host/statistics/exchange_counters.h"

#include <QHash>
#include <QVector>

namespace cnet {

/**
 * Counts what became of the requests for each block. Who asked does not matter, so a block that
 * leaves a monitor and comes back is counted on.
 *
 * Its memory is bounded: kMostBlocks are told apart. A further one takes the place of blocks that
 * were not asked for in the last ten minutes; where there are none, it is counted among the others.
 * The others also keep what was counted for blocks that had to go.
 */
class BlockBook
{
public:
    static constexpr int kMostBlocks = 1000;
    static constexpr qint64 kIdleMs = 600000;

    /** Counts a request that ended; fences are nobody's block. */
    void note(const ExchangeReport &report);

    /** Counts from 0 again; no block is known any more. */
    void clear();

    /** One block by its range, in the units of the block. */
    const QHash<AddressRange, ExchangeCounters> &all() const { return m_blocks; }

    /** The blocks by station, register and address. */
    QVector<AddressRange> sorted() const;

    /** Blocks for which there was no room, all together. */
    const ExchangeCounters &others() const { return m_others; }

private:
    bool makeRoom(qint64 nowMs);

    QHash<AddressRange, ExchangeCounters> m_blocks;
    QHash<AddressRange, qint64> m_askedMs; ///< when each of these was asked for last
    ExchangeCounters m_others;
    qint64 m_fullUntilMs = -1; ///< before that no block is idle
};

} // namespace cnet
