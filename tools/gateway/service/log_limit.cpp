#include "gateway/service/log_limit.h"

#include <algorithm>
#include <utility>

namespace cnet::gateway {

LogLimit::LogLimit(Clock &clock, Say say)
    : m_clock(clock)
    , m_say(std::move(say))
{}

Say LogLimit::say()
{
    return Say([this](Weight weight, const QString &line) { take(weight, line); });
}

void LogLimit::refill(Subject &subject) const
{
    const qint64 nowMs = m_clock.nowMs();
    const qint64 more = (nowMs - subject.countedMs) / kOneEachMs;
    subject.countedMs += more * kOneEachMs;
    subject.lines = static_cast<int>(std::min<qint64>(kAtOnce, subject.lines + more));
    if (subject.lines == kAtOnce) {
        subject.countedMs = nowMs;
    }
}

void LogLimit::take(Weight weight, const QString &line)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const int colon = static_cast<int>(line.indexOf(QLatin1Char(':')));
    const QString name = colon < 0 ? QString() : line.left(colon);
    Subject &subject = m_subjects[name];
    refill(subject);
    if (subject.lines == 0) {
        ++subject.leftOut;
        return;
    }
    sayLeftOut(name, subject);
    --subject.lines;
    if (weight == Weight::Warning) {
        m_say.warn(line);
    } else {
        m_say(line);
    }
}

void LogLimit::sayLeftOut(const QString &name, Subject &subject)
{
    if (subject.leftOut > 0) {
        m_say.warn(QString::fromLatin1("%1: lines left out here, since there were too many: %2")
                       .arg(name.isEmpty() ? QLatin1String("log") : name)
                       .arg(subject.leftOut));
        subject.leftOut = 0;
    }
}

void LogLimit::sayLeftOut()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto it = m_subjects.begin(); it != m_subjects.end(); ++it) {
        refill(*it);
        if (it->lines > 0) {
            sayLeftOut(it.key(), *it);
        }
    }
}

} // namespace cnet::gateway
