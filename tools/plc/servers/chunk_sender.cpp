#include "plc/servers/chunk_sender.h"

#include <algorithm>
#include <utility>

namespace plc {

ChunkSender::ChunkSender(std::function<void(const QByteArray &)> send, QObject *parent)
    : QObject(parent)
    , m_send(std::move(send))
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ChunkSender::sendDue);
}

bool ChunkSender::add(const std::vector<Chunk> &chunks)
{
    qint64 dueMs = m_clock.elapsed();
    if (!m_waiting.empty()) {
        dueMs = std::max(dueMs, m_waiting.back().dueMs);
    }
    for (const Chunk &chunk : chunks) {
        dueMs += chunk.delayMs;
        m_waiting.push_back({dueMs, chunk.bytes});
        m_pendingBytes += static_cast<int>(chunk.bytes.size());
    }
    if (m_pendingBytes > kMostPending || m_waiting.size() > kMostChunks) {
        m_waiting.clear();
        m_pendingBytes = 0;
        m_timer.stop();
        return false;
    }
    sendDue();
    return true;
}

void ChunkSender::sendDue()
{
    QByteArray due;
    const qint64 nowMs = m_clock.elapsed();
    while (!m_waiting.empty() && m_waiting.front().dueMs <= nowMs) {
        due += m_waiting.front().bytes;
        m_waiting.pop_front();
    }
    m_pendingBytes -= static_cast<int>(due.size());
    if (!m_waiting.empty()) {
        m_timer.start(static_cast<int>(m_waiting.front().dueMs - nowMs));
    }
    if (!due.isEmpty()) {
        m_send(due);
    }
}

} // namespace plc
