#include "gateway/delivery/trouble.h"

#include <algorithm>
#include <utility>

namespace cnet::gateway {

namespace {

constexpr int kFirstPauseMs = 1000;
constexpr int kLongestPauseMs = 60000;

} // namespace

Trouble::Trouble(QString subject, Say say)
    : m_subject(std::move(subject))
    , m_say(std::move(say))
{}

int Trouble::failed(const QString &reason, const QString &more)
{
    if (reason != m_reason) {
        m_say.warn(QString::fromLatin1("%1: %2; trying again%3").arg(m_subject, reason, more));
    }
    m_reason = reason;
    m_pauseMs = m_pauseMs == 0 ? kFirstPauseMs : std::min(2 * m_pauseMs, kLongestPauseMs);
    return m_pauseMs;
}

void Trouble::fine(const QString &more)
{
    if (isThere()) {
        m_say(m_subject + QLatin1String(": works again") + more);
    }
    m_reason.clear();
    m_pauseMs = 0;
}

} // namespace cnet::gateway
