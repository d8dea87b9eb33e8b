#pragma once

#include <QString>

#include <functional>

namespace exchange::soak {

/**
 * Watches that memory stays as it is: the same short phase, run again and again between the others,
 * leaves as much of the heap in use as it did the first time.
 */
class HeapWatch
{
public:
    /** Runs the phase until everything that is made once is there. */
    explicit HeapWatch(quint64 seed);

    /** Runs it again. @param complain is told why not. */
    bool isFlat(const std::function<void(const QString &)> &complain);

    QString report() const;

private:
    long long inUseAfterPhase();

    quint64 m_seed;
    long long m_atFirst = 0;
    long long m_last = 0;
    QString m_failure; ///< of the phase itself
};

} // namespace exchange::soak
