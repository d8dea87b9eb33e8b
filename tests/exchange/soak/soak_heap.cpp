#include "exchange/soak/soak_heap.h"

#include "exchange/soak/soak_phase.h"

#include <malloc.h>

namespace exchange::soak {

namespace {

constexpr int kPhase = 0;
constexpr int kExchanges = 500;
constexpr int kRepeats = 4;
constexpr int kMostRuns = 60;
/**
 * What the C library keeps at hand of freed blocks, and the driver of its largest look-up table;
 * with Qt 6 its emptied lists keep their room as well, that of 513 requests each.
 */
constexpr long long kAllowed = 4 * 1024 * 1024LL;
/** From one run of the phase to the next, where nothing else comes between. */
constexpr long long kAllowedAtOnce = 2048;

long long inUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long long>(info.uordblks) + static_cast<long long>(info.hblkhd);
}

} // namespace

HeapWatch::HeapWatch(quint64 seed)
    : m_seed(seed)
{
    for (int i = 0; i < kRepeats; ++i) {
        m_atFirst = inUseAfterPhase();
    }
    m_last = m_atFirst;
}

long long HeapWatch::inUseAfterPhase()
{
    Tally tally;
    const Plan plan = choosePlan(m_seed, kPhase, kExchanges);
    if (const auto failure = runPhase(plan, tally, false)) {
        m_failure = QString::fromLatin1("%1\nsoak: again with: soak --seed %2 --phase %3 "
                                        "--phase-exchanges %4")
                        .arg(QString::fromStdString(failure->what), QString::number(m_seed),
                             QString::number(kPhase), QString::number(kExchanges));
    }
    return inUse();
}

bool HeapWatch::isFlat(const std::function<void(const QString &)> &complain)
{
    long long before = m_atFirst;
    // After other phases it takes the lists of Qt 6 some runs to find their room again; a leak
    // never comes to an end.
    for (int runs = 0; runs < kMostRuns && m_failure.isEmpty(); runs += kRepeats) {
        before = m_last;
        for (int i = 0; i < kRepeats; ++i) {
            m_last = inUseAfterPhase();
        }
        if (runs > 0 && m_last <= m_atFirst + kAllowed && m_last <= before + kAllowedAtOnce) {
            break;
        }
    }
    if (!m_failure.isEmpty()) {
        complain(QLatin1String("soak: ") + m_failure);
        return false;
    }
    if (m_last <= m_atFirst + kAllowed && m_last <= before + kAllowedAtOnce) {
        return true;
    }
    complain(
        QString::fromLatin1("soak: the heap in use has grown: %1 bytes at first, %2 before the "
                            "last runs of the same phase, %3 after")
            .arg(QString::number(m_atFirst), QString::number(before), QString::number(m_last)));
    return false;
}

QString HeapWatch::report() const
{
    if (m_atFirst == 0) { // a sanitizer has taken the heap over
        return QString::fromLatin1("heap in use: not measured in this build");
    }
    return QString::fromLatin1("heap in use after the same phase: %1 bytes at first, %2 at last")
        .arg(QString::number(m_atFirst), QString::number(m_last));
}

} // namespace exchange::soak
