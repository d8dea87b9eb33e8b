#include "view/soak/loop_meter.h"

#include <algorithm>
#include <ctime>

namespace cnet::view {

namespace {

constexpr int kMostKept = 12;

double msBetween(std::chrono::steady_clock::time_point from,
                 std::chrono::steady_clock::time_point to)
{
    return std::chrono::duration<double, std::milli>(to - from).count();
}

template <class Counts>
void count(Counts &counts, double ms)
{
    const auto &bounds = LoopMeter::kBounds;
    const auto *bound = std::lower_bound(bounds.begin(), bounds.end(), ms);
    ++counts.at(static_cast<size_t>(bound - bounds.begin()));
}

} // namespace

double threadCpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

LoopMeter::LoopMeter(QObject *parent)
    : QObject(parent)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kTickMs);
    connect(&m_timer, &QTimer::timeout, this, &LoopMeter::tick);
}

void LoopMeter::start()
{
    m_begin = std::chrono::steady_clock::now();
    m_last = m_begin;
    m_cpuBeginMs = threadCpuMs();
    m_cpuLastMs = m_cpuBeginMs;
    m_timer.start();
}

void LoopMeter::tick()
{
    const Instant now = std::chrono::steady_clock::now();
    const double cpuMs = threadCpuMs();
    Gap gap;
    gap.atS = msBetween(m_begin, now) / 1e3;
    gap.wallMs = msBetween(m_last, now);
    gap.cpuMs = cpuMs - m_cpuLastMs;
    gap.during = m_doing;
    m_last = now;
    m_cpuLastMs = cpuMs;
    ++m_ticks;
    count(m_wall, gap.wallMs);
    count(m_cpu, gap.cpuMs);
    for (Worst *worst : {&m_worst, &m_recent}) {
        worst->wallMs = std::max(worst->wallMs, gap.wallMs);
        worst->cpuMs = std::max(worst->cpuMs, gap.cpuMs);
    }
    keep(gap);
}

void LoopMeter::keep(const Gap &gap)
{
    if (m_longest.size() == kMostKept && gap.cpuMs <= m_longest.last().cpuMs) {
        return;
    }
    const auto place = std::upper_bound(
        m_longest.begin(), m_longest.end(), gap,
        [](const Gap &left, const Gap &right) { return left.cpuMs > right.cpuMs; });
    m_longest.insert(place, gap);
    if (m_longest.size() > kMostKept) {
        m_longest.removeLast();
    }
}

LoopMeter::Worst LoopMeter::takeWorst()
{
    const Worst recent = m_recent;
    m_recent = Worst();
    return recent;
}

double LoopMeter::wallS() const
{
    return msBetween(m_begin, std::chrono::steady_clock::now()) / 1e3;
}

double LoopMeter::cpuS() const
{
    return (threadCpuMs() - m_cpuBeginMs) / 1e3;
}

QString LoopMeter::histogram() const
{
    QString text;
    for (size_t i = 0; i < m_wall.size(); ++i) {
        const bool isLast = i == kBounds.size();
        text += QString::fromLatin1("  %1 %2 ms: %3 by the clock, %4 by processor time\n")
                    .arg(QLatin1String(isLast ? "over " : "up to"))
                    .arg(isLast ? kBounds.back() : kBounds.at(i), 3)
                    .arg(m_wall.at(i), 8)
                    .arg(m_cpu.at(i), 8);
    }
    return text;
}

} // namespace cnet::view
