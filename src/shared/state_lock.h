#pragma once

#include <atomic>

#include <QtCore/QMutex>
#include <QtCore/QWaitCondition>

/// The lock that admits one thread at a time to the driver. One answer may release and take it
/// again for each of its values, so the uncontended case must be cheap: one atomic exchange, where
/// a mutex needs two and two calls. A thread that finds it held sleeps for a moment; one that
/// arrives while others wait lets them go first.
///
/// Not recursive. Any thread.
class StateLock
{
public:
    StateLock() noexcept
        : m_held(0)
        , m_waiting(0)
    {}

    void lock()
    {
        if (m_waiting.load(std::memory_order_relaxed) != 0 || !take()) {
            waitAndTake();
        }
    }

    /// To be called by the thread that holds it.
    void unlock()
    {
        m_held.store(0, std::memory_order_release);
        if (m_waiting.load(std::memory_order_relaxed) != 0) {
            wakeOne();
        }
    }

    /// @return  true if a thread holds it; inside the driver that is the calling one
    bool isHeld() const { return m_held.load(std::memory_order_relaxed) != 0; }

    /// @return  number of threads that wait for it
    int waiting() const { return m_waiting.load(std::memory_order_relaxed); }

private:
    bool take() { return m_held.exchange(1, std::memory_order_acquire) == 0; }

    void waitAndTake();
    void wakeOne();

    std::atomic<int> m_held;    ///< 1 while a thread is inside
    std::atomic<int> m_waiting; ///< threads that wait for it
    QMutex m_sleepMutex;        ///< for `m_free` only
    QWaitCondition m_free;      ///< signalled when the lock is released and a thread waits

    Q_DISABLE_COPY(StateLock)
};
