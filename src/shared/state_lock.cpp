#include "shared/state_lock.h"

#include <QtCore/QThread>

/// `unlock` checks for waiting threads without ordering that check after its store, since the
/// ordering would cost as much as a second exchange. So it may miss a thread that has just started
/// to wait; that thread checks again after this many milliseconds.
enum { kNapMilliseconds = 1 };

/// A host's callback often takes less time than falling asleep and waking up.
enum { kLooksBeforeSleep = 100 };

void StateLock::waitAndTake()
{
    m_waiting.fetch_add(1, std::memory_order_seq_cst);
    QThread::yieldCurrentThread(); // threads that already wait go first
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
