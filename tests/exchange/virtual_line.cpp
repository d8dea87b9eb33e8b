#include "exchange/virtual_line.h"

#include <algorithm>

namespace exchange {

VirtualLine::VirtualLine()
    : m_line(m_bus)
{}

void VirtualLine::wait(int ms)
{
    m_nowMs += std::max(ms, 0);
}

void VirtualLine::send(const QByteArray &request)
{
    ++m_requests;
    qint64 dueMs = m_arrivals.empty() ? m_nowMs : std::max(m_nowMs, m_arrivals.back().dueMs);
    for (const plc::Chunk &chunk : m_line.receive(request, m_nowMs)) {
        dueMs += chunk.delayMs;
        m_arrivals.push_back({dueMs, chunk.bytes, m_requests});
    }
}

std::optional<QByteArray> VirtualLine::receive(qint64 deadlineMs)
{
    if (m_arrivals.empty() || m_arrivals.front().dueMs > deadlineMs) {
        m_nowMs = std::max(m_nowMs, deadlineMs);
        return std::nullopt;
    }
    const Arrival arrival = m_arrivals.front();
    m_arrivals.pop_front();
    m_nowMs = std::max(m_nowMs, arrival.dueMs);
    m_receivedFor = arrival.request;
    return arrival.bytes;
}

void VirtualLine::empty(int quietMs)
{
    while (receive(m_nowMs + quietMs)) {
    }
}

} // namespace exchange
