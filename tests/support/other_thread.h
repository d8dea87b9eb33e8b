#pragma once

#include <functional>

#include <QtCore/QSemaphore>
#include <QtCore/QThread>

/// A second thread of the host, for tests that say what it does and when. It lives as long as this
/// object. One thread at a time gives it work.
class OtherThread : public QThread
{
public:
    OtherThread() { start(); }

    ~OtherThread() override
    {
        begin(std::function<void()>());
        wait();
    }

    /// Begins the work and does not wait for its end; `await` does.
    void begin(const std::function<void()> &work)
    {
        m_work = work;
        m_begin.release();
    }

    /// Ends the program when the work does not come to its end: two threads wait for each other.
    void await()
    {
        if (!m_ended.tryAcquire(1, kLongestMs)) {
            qFatal("the other thread does not come back");
        }
    }

    /// Does the work and waits for its end.
    void call(const std::function<void()> &work)
    {
        begin(work);
        await();
    }

    bool isCalling() const { return QThread::currentThread() == this; }

protected:
    void run() override
    {
        for (m_begin.acquire(); m_work; m_begin.acquire()) {
            m_work();
            m_ended.release();
        }
    }

private:
    enum { kLongestMs = 30000 };

    std::function<void()> m_work; // empty: the thread ends
    QSemaphore m_begin;
    QSemaphore m_ended;
};

/// Gives the other threads every chance to go on; one that waits for a lock cannot.
inline void letOthersRun()
{
    for (int i = 0; i < 10000; ++i) {
        QThread::yieldCurrentThread();
    }
}
