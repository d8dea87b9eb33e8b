#include "shared/state_lock.h"

#include <QtCore/QThread>

/// Giving the lock back looks for waiting threads without ordering that look after the store, which
/// would cost as much as a second exchange. In that instant a thread that has just begun to wait
/// may be overlooked: it looks for itself after this many milliseconds.
enum { kNapMilliseconds = 1 };

/// A host's callback is often shorter than falling asleep and waking up.
enum { kLooksBeforeSleep = 100 };

void StateLock::waitAndTake()
{
    m_waiting.fetch_add(1, std::memory_order_seq_cst);
    QThread::yieldCurrentThread(); // those who wait already go first
    for (int looks = 0; !take(); ++looks) {
        if (looks < kLooksBeforeSleep) {
            continue;
        }
        QMutexLocker sleep(&m_sleepMutex);
        if (take()) {
            break;
        }
        m_free.wait(&m_sleepMutex, kNapMilliseconds);
    }
    m_waiting.fetch_sub(1, std::memory_order_relaxed);
}

void StateLock::wakeOne()
{
    QMutexLocker sleep(&m_sleepMutex);
    m_free.wakeOne();
}
