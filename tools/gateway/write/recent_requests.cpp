#include "gateway/write/recent_requests.h"

#include <limits>

namespace cnet::gateway {

void RecentRequests::add(const WantedWrite &wanted, const WriteAnswer &answer, qint64 nowMs)
{
    const RequestKey key = keyOf(answer.reply, answer.id);
    if (m_answered.contains(key)) {
        return; // what it was told first holds
    }
    m_answered.insert(key, {wanted, answer});
    const bool isRefused = answer.outcome == WriteAnswer::Outcome::Refused;
    (isRefused ? m_refused : m_others).push_back({nowMs + kKeptMs, key});
    forget(m_refused, nowMs, kMostRefused);
    forget(m_others, nowMs, std::numeric_limits<size_t>::max());
}

std::optional<RecentRequests::Answered> RecentRequests::find(const RequestKey &key, qint64 nowMs)
{
    forget(m_refused, nowMs, kMostRefused);
    forget(m_others, nowMs, std::numeric_limits<size_t>::max());
    const auto found = m_answered.constFind(key);
    return found == m_answered.constEnd() ? std::nullopt : std::optional<Answered>(*found);
}

void RecentRequests::forget(std::deque<Kept> &kept, qint64 nowMs, size_t most)
{
    while (!kept.empty() && (kept.front().untilMs <= nowMs || kept.size() > most)) {
        m_answered.remove(kept.front().key);
        kept.pop_front();
    }
}

} // namespace cnet::gateway
