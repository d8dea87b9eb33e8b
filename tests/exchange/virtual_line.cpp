#include "exchange/virtual_line.h"

#include "exchange/answer_finder.h"

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

LineAnswer VirtualLine::answer(int expectedLength, qint64 deadlineMs)
{
    AnswerFinder finder(expectedLength);
    LineAnswer answer;
    while (!answer.isComplete) {
        const auto bytes = receive(deadlineMs);
        if (!bytes) {
            break;
        }
        const auto before = finder.answer().size();
        answer.isComplete = finder.add(*bytes);
        const bool isPart = finder.answer().size() > before;
        answer.isLate = answer.isLate || (isPart && m_receivedFor != m_requests);
    }
    answer.bytes = finder.answer();
    return answer;
}

void VirtualLine::empty(int quietMs)
{
    while (receive(m_nowMs + quietMs)) {
    }
}

} // namespace exchange
