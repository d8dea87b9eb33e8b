#pragma once

#include "faults.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <vector>

namespace plc {

/**
 * Sends chunks when they are due, in order, in the thread of its event loop.
 *
 * What waits is bounded: a master that asks faster than the answers may come loses the connection
 * instead of filling the memory.
 */
class ChunkSender : public QObject
{
    Q_OBJECT

public:
    /** Bytes that may wait: as many answers as a few packets of requests ask for. */
    static constexpr int kMostPending = 65536;
    /** Chunks that may wait; each takes much more memory than its one byte, say. */
    static constexpr int kMostChunks = 16384;

    /** @param send takes the bytes of one chunk. */
    ChunkSender(std::function<void(const QByteArray &)> send, QObject *parent);

    /**
     * Adds chunks behind those that wait. The first one's delay begins now, or when the last one
     * that waits is due.
     * @return false, and forgets all that waits, where it becomes too much.
     */
    bool add(const std::vector<Chunk> &chunks);

private:
    struct Waiting
    {
        qint64 dueMs;
        QByteArray bytes;
    };

    void sendDue();

    std::function<void(const QByteArray &)> m_send;
    QElapsedTimer m_clock;
    QTimer m_timer;
    std::deque<Waiting> m_waiting;
    int m_pendingBytes = 0;
};

} // namespace plc
