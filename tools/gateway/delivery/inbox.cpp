#include "gateway/delivery/inbox.h"

#include <QMutexLocker>

namespace cnet::gateway {

void Inbox::put(const LedgerBatch &batch)
{
    const QMutexLocker locker(&m_mutex);
    m_batches.append(batch);
    m_bytes += batch.body.size();
    while (m_bytes > m_mostBytes && m_batches.size() > 1) {
        const LedgerBatch oldest = m_batches.takeFirst();
        m_bytes -= oldest.body.size();
        if (m_seen > 0) {
            --m_seen;
            m_droppedSeen += oldest.values;
        } else {
            m_droppedValues += oldest.values;
        }
    }
}

bool Inbox::isEmpty() const
{
    const QMutexLocker locker(&m_mutex);
    return m_batches.isEmpty();
}

QVector<LedgerBatch> Inbox::all()
{
    const QMutexLocker locker(&m_mutex);
    m_seen = static_cast<int>(m_batches.size());
    m_droppedValues += m_droppedSeen; // as they are asked for again, they were not stored
    m_droppedSeen = 0;
    return m_batches;
}

void Inbox::removeSeen()
{
    const QMutexLocker locker(&m_mutex);
    for (int seen = 0; seen < m_seen; ++seen) {
        m_bytes -= m_batches.at(seen).body.size();
    }
    m_batches.remove(0, m_seen);
    m_seen = 0;
    m_droppedSeen = 0;
}

qint64 Inbox::bytes() const
{
    const QMutexLocker locker(&m_mutex);
    return m_bytes;
}

qint64 Inbox::droppedValues() const
{
    const QMutexLocker locker(&m_mutex);
    return m_droppedValues;
}

} // namespace cnet::gateway
