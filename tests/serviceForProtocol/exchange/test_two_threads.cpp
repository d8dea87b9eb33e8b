#include <QtTest/QtTest>

#include "serviceForProtocol/request/unstored_write.h"
#include "support/exchange_helpers.h"
#include "support/other_thread.h"
#include "support/recipe_helpers.h"

/// The host's two threads in the driver at once, each step at its moment: while the driver has left
/// one thread to the host, the other one does something, and what comes of both is exact.

static void write(int address, int value)
{
    panelWrite("D_W", address, 1, QByteArray(1, static_cast<char>(value)) + '\0');
}

static int shown(int address)
{
    QString name = latin("D_W");
    unsigned char values[2] = {0xEE, 0xEE};
    intf_getData(1, name, address, 1, values);
    return values[0] | values[1] << 8;
}

static void monitorWords(int address, int count)
{
    QList<KEY_ADDRESS> keys;
    keys.append(makeKey(1, "D_W", address, count));
    intf_addrMerge(keys);
}

/// The job whose frame is handed out, as `jobText`, or "idle".
static QString nextJob()
{
    FRAME_PRO frame = FRAME_PRO();
    return intf_getSendFrame(frame) == 0 ? latin("idle") : jobText();
}

/// A word of the cache: "confirmed/written/pending".
static QString wordText(int address)
{
    const _DATA_ &record = unitAt(1, "D", address);
    return latin("%1/%2/%3")
        .arg(unitNumber(record.readValue, 2))
        .arg(unitNumber(record.writeValue, 2))
        .arg(record.writePending);
}

static QString writesText()
{
    QStringList texts;
    const QList<VARIABLE> &writes = driver.pendingWrites;
    for (const VARIABLE &item : writes) {
        texts.append(latin("%1=%2").arg(item.startAddr).arg(item.data[0]));
    }
    return texts.join(latin(" "));
}

/// What the other thread does during the next callback, once; the thread that called back waits.
struct Meanwhile
{
    OtherThread other;
    std::function<void()> work;
    QString seen; ///< whatever the work saw
};

static Meanwhile *meanwhile = nullptr;

static void doMeanwhile()
{
    if (meanwhile->work) {
        std::function<void()> work;
        work.swap(meanwhile->work);
        meanwhile->other.call(work);
    }
}

/// A host that has a plan for its next callback.
class Host
{
public:
    explicit Host(const char *props = "7#0#0#3#60")
        : fixture(props)
    {
        meanwhile = &plan;
        DriverFixture::hook() = &doMeanwhile;
    }

    DriverFixture fixture;
    Meanwhile plan;
};

/// Two panel threads whose writes are told to the host at once, and the exchange.
struct Tellings
{
    OtherThread secondPanel;
    OtherThread exchange;
    QSemaphore isSecondTold;
    QSemaphore isFirstStored;
    QString seen;
};

static Tellings *tellings = nullptr;

static int tellBoth(int, int, QString &, int address)
{
    Tellings &both = *tellings;
    if (address == 10) {
        both.secondPanel.begin([] { write(11, 8); });
        both.isSecondTold.acquire();
    } else {
        both.isSecondTold.release();
        both.isFirstStored.acquire();
        both.exchange.call([&both] { both.seen = takeTurns(2); });
    }
    return 0;
}

static QMutex hostLock;

/// Two threads that meet within a callback each.
static struct
{
    QSemaphore first;
    QSemaphore second;
} meeting;

static int meetTheOther(int, int, QString &, int address)
{
    const bool isFirst = address == 10;
    (isFirst ? meeting.first : meeting.second).release();
    (isFirst ? meeting.second : meeting.first).acquire();
    return 0;
}

static void restart()
{
    int status = -1;
    intf_initProperty(driver.shmBase, 0, driver.rcpBuffer, &status, "7#0#0#3#60", driver.shmMutex);
}

class TestTwoThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The write in flight stays the first, whatever the panel writes; those behind it are replaced.
    void writesBetweenAFrameAndItsAnswer()
    {
        Host host;
        write(10, 1);
        write(20, 5);
        QCOMPARE(nextJob(), latin("W D_W 10"));
        host.plan.other.call([] {
            write(10, 2);
            write(20, 6);
        });
        QCOMPARE(writesText(), latin("10=1 20=6 10=2"));
        QCOMPARE(answerWith(writeAnswer()), 1);
        QCOMPARE(writesText(), latin("20=6 10=2"));
        QCOMPARE(takeTurns(3), latin("W D_W 20, W D_W 10, idle"));
        QCOMPARE(shown(10), 2);
        QCOMPARE(shown(20), 6);
    }

    // The data area and every list grow and move; the rest of the answer goes where it belongs.
    void panelDuringAnAnswer()
    {
        Host host;
        monitorWords(100, 3);
        QCOMPARE(nextJob(), latin("R D_W 100"));
        host.plan.work = [&host] {
            host.plan.seen = latin("%1 %2").arg(shown(100)).arg(shown(101));
            for (int i = 0; i < 300; ++i) {
                write(1000 + i, 1);
            }
            write(102, 7);
            askOnce("D_W", 5);
        };
        QCOMPARE(answerWith(readAnswer("000100020003")), 1);
        QCOMPARE(host.plan.seen, latin("1 0"));
        QCOMPARE(callsText(), latin("7 1 D_W 100, 7 1 D_W 102, 7 1 D_W 101, 7 1 D_W 102"));
        QCOMPARE(shown(101), 2);
        QCOMPARE(shown(102), 7); // its write still waits
        QCOMPARE(sizeOf(driver.pendingWrites), 301);
        QCOMPARE(nextJob(), latin("W D_W 1000"));
    }

    void screenChangesDuringAnAnswer()
    {
        Host host;
        monitorWords(100, 3);
        QCOMPARE(nextJob(), latin("R D_W 100"));
        host.plan.work = [] { monitorWords(200, 2); };
        QCOMPARE(answerWith(readAnswer("000100020003")), 1);
        QCOMPARE(callsText(), latin("7 1 D_W 100")); // the others are not watched any more
        QCOMPARE(shown(102), 3);
        QCOMPARE(takeTurns(2), latin("R D_W 200, R D_W 200"));
    }

    // Were it sent and acknowledged before, the value from before would count as the PLC's: a PLC
    // that then holds this one would leave the panel's on the screen for ever.
    void aWriteIsNotSentBeforeItIsStored()
    {
        Host host;
        monitorWords(10, 1);
        takeTurn();
        host.plan.work = [&host] { host.plan.seen = takeTurns(2); };
        write(10, 9);
        QCOMPARE(host.plan.seen, latin("R D_W 10, R D_W 10"));
        QCOMPARE(shown(10), 9);
        QCOMPARE(takeTurn(), latin("W D_W 10"));
        QCOMPARE(wordText(10), latin("9/9/0"));
        QCOMPARE(takeTurn(), latin("R D_W 10")); // back to 0 in the PLC
        QCOMPARE(shown(10), 0);
    }

    void itIsKnownByItsPlace()
    {
        const VARIABLE items[] = {makeItem(1, "D_W", 9, 1),  makeItem(1, "D_W", 10, 1),
                                  makeItem(1, "D_W", 12, 1), makeItem(1, "D_W", 13, 1),
                                  makeItem(0, "D_W", 10, 1), makeItem(2, "D_W", 10, 1),
                                  makeItem(1, "M_W", 10, 1), makeItem(1, "D_bit", 10, 1)};
        Host host;
        monitorWords(10, 1);
        host.plan.work = [&] {
            for (const VARIABLE &item : items) {
                host.plan.seen += latin(isUnstored(item) ? "1" : "0");
            }
        };
        panelWrite("D_W", 10, 3, QByteArray::fromHex("010002000300"));
        QCOMPARE(host.plan.seen, latin("01100000"));
        QVERIFY(!isUnstored(items[1]));
    }

    // Pieces of a long write, and a write of another thread: none overtakes.
    void itHoldsUpWhatIsBehindIt()
    {
        Host host("7#0#0#3#2");
        monitorWords(10, 1);
        driver.cyclicReads.clear();
        host.plan.work = [&host] {
            write(20, 5);
            host.plan.seen = takeTurn();
        };
        panelWrite("D_W", 10, 3, QByteArray::fromHex("010002000300"));
        QCOMPARE(host.plan.seen, latin("idle"));
        QCOMPARE(takeTurns(4), latin("W D_W 10, W D_W 12, W D_W 20, idle"));
    }

    void anEarlierWriteIsSentMeanwhile()
    {
        Host host;
        write(20, 5);
        write(30, 6);
        QCOMPARE(nextJob(), latin("W D_W 20"));
        monitorWords(10, 1);
        driver.cyclicReads.clear();
        host.plan.work = [&host] {
            const int result = answerWith(writeAnswer());
            host.plan.seen = QString::number(result) + latin(" ") + takeTurns(2);
        };
        write(10, 9);
        QCOMPARE(host.plan.seen, latin("1 W D_W 30, idle"));
        QCOMPARE(wordText(20), latin("5/5/0"));
        QCOMPARE(wordText(30), latin("6/6/0"));
        QCOMPARE(takeTurns(2), latin("W D_W 10, idle"));
        QCOMPARE(wordText(10), latin("9/9/0"));
    }

    // The one that began first ends first: its place alone is stored then.
    void writesThatAreToldAtOnce()
    {
        Host host;
        Tellings both;
        tellings = &both;
        monitorWords(10, 2);
        driver.cyclicReads.clear();
        intf_setAddrValueChangeCallBack(&tellBoth);
        write(10, 9);
        both.isFirstStored.release();
        both.secondPanel.await();
        QCOMPARE(both.seen, latin("W D_W 10, idle"));
        QCOMPARE(takeTurns(2), latin("W D_W 11, idle"));
        QCOMPARE(wordText(10), latin("9/9/0"));
        QCOMPARE(wordText(11), latin("8/8/0"));
    }

    // What the exchange reads while a write is told is compared with what the panel showed until
    // then.
    void readingsGoOnMeanwhile()
    {
        Host host;
        monitorWords(10, 2);
        host.plan.work = [&host] {
            nextJob();
            host.plan.seen = QString::number(answerWith(readAnswer("00040005")));
        };
        write(10, 9);
        QCOMPARE(host.plan.seen, latin("1"));
        QCOMPARE(callsText(), latin("7 1 D_W 10, 7 1 D_W 10, 7 1 D_W 11"));
        QCOMPARE(wordText(10), latin("4/9/1"));
        QCOMPARE(shown(10), 9);
        QCOMPARE(shown(11), 5);
    }

    // The panel holds the host's lock and asks the driver; the exchange thread's callback wants
    // this lock. Neither waits for the other.
    void hostLocksInItsCallback()
    {
        Host host;
        monitorWords(100, 2);
        nextJob();
        QSemaphore isLocked;
        DriverFixture::hook() = [] { QMutexLocker lock(&hostLock); };
        hostLock.lock();
        int result = 0;
        host.plan.other.begin([&] {
            isLocked.release();
            result = answerWith(readAnswer("00010002"));
        });
        isLocked.acquire();
        while (shown(100) == 0) { // until the answer is at its first callback
            QThread::yieldCurrentThread();
        }
        letOthersRun();
        write(300, 1);
        hostLock.unlock();
        host.plan.other.await();
        QCOMPARE(result, 1);
        QCOMPARE(shown(101), 2);
        QCOMPARE(takeTurn(), latin("W D_W 300"));
    }

    void hostAsksUnderTheLockOfTheRequestBytes()
    {
        Host host;
        monitorWords(100, 1);
        QString job;
        host.fixture.shmLock.lock();
        host.plan.other.begin([&job] { job = nextJob(); });
        letOthersRun(); // it waits for the lock, and nobody for it
        QCOMPARE(shown(100), 0);
        write(300, 1);
        host.fixture.shmLock.unlock();
        host.plan.other.await();
        QCOMPARE(job, latin("W D_W 300"));
    }

    void twoCallbacksAtOnce()
    {
        Host host;
        monitorWords(10, 2);
        nextJob();
        intf_setAddrValueChangeCallBack(&meetTheOther);
        host.plan.other.begin([] { write(11, 8); });
        QCOMPARE(answerWith(readAnswer("00070000")), 1);
        host.plan.other.await();
        intf_setAddrValueChangeCallBack(nullptr);
        QCOMPARE(shown(10), 7);
        QCOMPARE(shown(11), 8);
    }

    // Communication starts anew at a wrong moment: nothing of before goes on, and nothing breaks.
    void restartDuringAnAnswer()
    {
        Host host;
        monitorWords(100, 3);
        write(20, 5);
        takeTurn();
        nextJob();
        DriverFixture::calls().clear();
        host.plan.work = restart;
        QCOMPARE(answerWith(readAnswer("000100020003")), 1);
        QCOMPARE(callsText(), latin("7 1 D_W 100"));
        QCOMPARE(takeTurn(), latin("idle"));
        QCOMPARE(answerWith(writeAnswer()), 0);
        monitorWords(100, 1);
        QCOMPARE(takeTurn(), latin("R D_W 100"));
    }

    void restartDuringAWrite()
    {
        Host host;
        monitorWords(10, 1);
        host.plan.work = restart;
        write(10, 9);
        QCOMPARE(takeTurn(), latin("idle")); // the write is gone
        QCOMPARE(shown(10), 9);
        write(10, 8);
        QCOMPARE(takeTurn(), latin("W D_W 10"));
    }

    void restartWhileARequestIsLookedAt()
    {
        Host host;
        setRecipeItems("1 D_W 4 2 10");
        monitorWords(100, 1);
        QString job;
        host.fixture.shmLock.lock();
        driver.shmBase[kRecipeWriteByte] = 1;
        host.plan.other.begin([&job] { job = nextJob(); });
        letOthersRun();
        intf_initProperty(nullptr, 0, nullptr, nullptr, "7#0#0#3#60", nullptr);
        host.fixture.shmLock.unlock();
        host.plan.other.await();
        QVERIFY(job == latin("w D_W 4") || job == latin("idle")); // before the start, or after it
    }
};

QTEST_APPLESS_MAIN(TestTwoThreads)
#include "test_two_threads.moc"
