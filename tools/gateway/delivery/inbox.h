#pragma once

#include "gateway/store/ledger.h"

#include <QMutex>
#include <QVector>

namespace cnet::gateway {

/**
 * Batches on their way from the lines to the ledger, which has a thread of its own: a disk that is
 * slow or full holds no line up. Bounded; the oldest batches make room. For several threads.
 */
class Inbox
{
public:
    /** @param bytes that all batches may have together, 1 or more */
    explicit Inbox(qint64 bytes)
        : m_mostBytes(bytes)
    {}

    void put(const LedgerBatch &batch);

    bool isEmpty() const;

    /** All that are there, oldest first. They stay until removeSeen(). */
    QVector<LedgerBatch> all();

    /** Those that all() gave last are stored: removes them. */
    void removeSeen();

    /** Of all batches that are there. */
    qint64 bytes() const;

    /** Changes that had to go, ever. */
    qint64 droppedValues() const;

private:
    const qint64 m_mostBytes;
    mutable QMutex m_mutex;
    QVector<LedgerBatch> m_batches;
    qint64 m_bytes = 0;
    qint64 m_droppedValues = 0;
    int m_seen = 0;           ///< of the first ones: all() gave them
    qint64 m_droppedSeen = 0; ///< changes of those that had to go since: they may be stored yet
};

} // namespace cnet::gateway
