#include "gateway/change/batcher.h"

namespace cnet::gateway {

Batcher::Batcher(Clock &clock, const BatchBounds &bounds, Taker taker)
    : m_bounds(bounds)
    , m_taker(std::move(taker))
    , m_due(clock.makeAlarm())
{
    QObject::connect(m_due.get(), &Alarm::fired, m_due.get(), [this] { flush(); });
}

void Batcher::add(const Change &change)
{
    if (m_writer.count() == 0) {
        m_due->set(m_bounds.ageMs);
    }
    m_writer.add(change);
    if (m_writer.count() >= m_bounds.changes || m_writer.bytes() >= m_bounds.bytes) {
        flush();
    }
}

void Batcher::flush()
{
    m_due->cancel();
    if (m_writer.count() == 0) {
        return;
    }
    LedgerBatch batch;
    batch.values = m_writer.count();
    batch.body = m_writer.finish();
    m_taker(batch);
}

} // namespace cnet::gateway
