#include <atomic>
#include <stdexcept>

#include <QtTest/QtTest>

#include "shared/protocol.h"
#include "support/other_thread.h"

namespace {

/// What a lock guards: found broken when two threads are inside at once.
struct Guarded
{
    StateLock lock;
    int inside;
    int entries;
    int meetings;
};

} // namespace

static void enterOften(Guarded &guarded, int times)
{
    for (int i = 0; i < times; ++i) {
        guarded.lock.lock();
        ++guarded.inside;
        ++guarded.entries;
        if (i % 64 == 0) {
            QThread::yieldCurrentThread(); // inside, so that the others find it held
        }
        guarded.meetings += guarded.inside == 1 ? 0 : 1;
        --guarded.inside;
        guarded.lock.unlock();
    }
}

static void awaitWaiting(const StateLock &lock, int threads)
{
    while (lock.waiting() != threads) {
        QThread::yieldCurrentThread();
    }
}

static void takeAndGiveBack()
{
    const DriverEntry inside;
}

class TestStateLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneAtATime()
    {
        enum { kTimes = 50000, kOthers = 3 };
        Guarded guarded = {{}, 0, 0, 0};
        OtherThread others[kOthers];
        for (OtherThread &other : others) {
            other.begin([&guarded] { enterOften(guarded, kTimes); });
        }
        enterOften(guarded, kTimes);
        for (OtherThread &other : others) {
            other.await();
        }
        QCOMPARE(guarded.meetings, 0);
        QCOMPARE(guarded.entries, (kOthers + 1) * kTimes);
        QVERIFY(!guarded.lock.isHeld());
    }

    void waitsUntilItIsGivenBack()
    {
        StateLock lock;
        std::atomic<bool> isIn(false);
        lock.lock();
        QVERIFY(lock.isHeld());
        OtherThread other;
        other.begin([&] {
            lock.lock();
            isIn = true;
            lock.unlock();
        });
        awaitWaiting(lock, 1);
        QTest::qSleep(20); // many times as long as a waiter sleeps at once
        QVERIFY(!isIn);
        lock.unlock();
        other.await();
        QVERIFY(isIn);
        QVERIFY(!lock.isHeld());
        QCOMPARE(lock.waiting(), 0); // whoever comes next takes it without further ado
    }

    void everyWaiterGetsIn()
    {
        enum { kOthers = 4 };
        StateLock lock;
        std::atomic<int> entries(0);
        OtherThread others[kOthers];
        lock.lock();
        for (OtherThread &other : others) {
            other.begin([&] {
                lock.lock();
                ++entries;
                lock.unlock();
            });
        }
        awaitWaiting(lock, kOthers);
        QCOMPARE(entries.load(), 0);
        lock.unlock();
        for (OtherThread &other : others) {
            other.await();
        }
        QCOMPARE(entries.load(), static_cast<int>(kOthers));
    }

    // An exchange thread without a pause must not keep the panel out.
    void waiterGetsInBesideABusyThread()
    {
        StateLock lock;
        std::atomic<bool> isBusy(false);
        std::atomic<bool> isEnough(false);
        OtherThread busy;
        busy.begin([&] {
            while (!isEnough) {
                lock.lock();
                isBusy = true;
                lock.unlock();
            }
        });
        while (!isBusy) {
            QThread::yieldCurrentThread();
        }
        OtherThread waiter;
        std::atomic<int> entries(0);
        waiter.begin([&] {
            for (int i = 0; i < 100; ++i) {
                lock.lock();
                ++entries;
                lock.unlock();
            }
        });
        waiter.await();
        isEnough = true;
        busy.await();
        QCOMPARE(entries.load(), 100);
    }

    void givenBackDuringACall()
    {
        OtherThread other;
        {
            const DriverEntry inside;
            {
                const DriverExit outside;
                QVERIFY(!driver.stateLock.isHeld());
                other.call(takeAndGiveBack);
            }
            QVERIFY(driver.stateLock.isHeld());
        }
        QVERIFY(!driver.stateLock.isHeld());
    }

    void givenBackDuringACallThatThrows()
    {
        try {
            const DriverEntry inside;
            const DriverExit outside;
            throw std::runtime_error("the host's own");
        } catch (const std::runtime_error &) {
            QVERIFY(!driver.stateLock.isHeld());
        }
        OtherThread().call(takeAndGiveBack);
    }

    void leavingFromOutsideDoesNothing()
    {
        {
            const DriverExit outside;
            QVERIFY(!driver.stateLock.isHeld());
        }
        QVERIFY(!driver.stateLock.isHeld());
    }
};

QTEST_APPLESS_MAIN(TestStateLock)
#include "test_state_lock.moc"
