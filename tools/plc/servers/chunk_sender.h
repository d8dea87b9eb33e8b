#pragma once

#include "plc/faults/faults.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <vector>

namespace plc {

/**
 * Sends chunks in order, each when it is due, on the thread of its event loop.
 *
 * The queue is bounded: a master that sends requests faster than the answers are due is
 * disconnected, so it cannot fill the memory.
 */
class ChunkSender : public QObject
{
    Q_OBJECT

public:
    /** Bytes that may wait: the answers to a few packets full of requests. */
    static constexpr int kMostPending = 65536;
    /** Chunks that may wait. Even a chunk of one byte takes much more memory than that. */
    static constexpr int kMostChunks = 16384;

    /** @param send is called with the bytes that are due. */
    ChunkSender(std::function<void(const QByteArray &)> send, QObject *parent);

    /**
     * Adds chunks to the end of the queue. The delay of the first one starts now, or when the last
     * one in the queue is due.
     * @return false if the queue becomes too long. It is emptied then.
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
