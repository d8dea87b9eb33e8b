#pragma once

#include <atomic>

#include <QtCore/QMutex>
#include <QtCore/QWaitCondition>

/// The lock of the driver's state: one thread at a time is inside the driver. An answer may give it
/// back and take it again for each of its values, so what matters is the price of a lock that
/// nobody else wants: one atomic exchange, where a mutex takes two and two calls. Who finds it held
/// sleeps a moment; who comes while others wait lets them go first.
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

    /// By the thread that holds it.
    void unlock()
    {
        m_held.store(0, std::memory_order_release);
        if (m_waiting.load(std::memory_order_relaxed) != 0) {
            wakeOne();
        }
    }

    /// @return  true when some thread holds it; within the driver that is the calling one
    bool isHeld() const { return m_held.load(std::memory_order_relaxed) != 0; }

    /// @return  how many threads wait for it
    int waiting() const { return m_waiting.load(std::memory_order_relaxed); }

private:
    bool take() { return m_held.exchange(1, std::memory_order_acquire) == 0; }

    void waitAndTake();
    void wakeOne();

    std::atomic<int> m_held;    ///< 1 while a thread is inside
    std::atomic<int> m_waiting; ///< threads that wait for it
    QMutex m_sleepMutex;        ///< of `m_free` alone
    QWaitCondition m_free;      ///< signalled when the lock was given back and somebody waits

    Q_DISABLE_COPY(StateLock)
};
