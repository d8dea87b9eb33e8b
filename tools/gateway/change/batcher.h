#pragma once

#include "gateway/change/batch_codec.h"
#include "gateway/store/ledger.h"

#include "host/time/clock.h"

#include <functional>
#include <memory>

namespace cnet::gateway {

/** When changes are enough for a batch: with the first bound that is reached. */
struct BatchBounds
{
    int changes = 5000;     ///< 1 or more
    int bytes = 256 * 1024; ///< 1 or more
    int ageMs = 1000;       ///< of the oldest change, 0 or more: what a power cut may cost
};

/** Gathers the changes of all lines into batches, in the order in which they come. */
class Batcher
{
public:
    using Taker = std::function<void(const LedgerBatch &batch)>;

    /**
     * @param clock must outlive this object
     * @param taker is handed each batch, without a number
     */
    Batcher(Clock &clock, const BatchBounds &bounds, Taker taker);

    /** From the next change on. */
    void setBounds(const BatchBounds &bounds) { m_bounds = bounds; }

    void add(const Change &change);

    /** Hands on what there is. */
    void flush();

private:
    BatchBounds m_bounds;
    Taker m_taker;
    BatchWriter m_writer;
    std::unique_ptr<Alarm> m_due;
};

} // namespace cnet::gateway
