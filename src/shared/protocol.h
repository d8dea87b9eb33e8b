#pragma once

#include <atomic>

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QVector>

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/value_change_callback.h"
#include "shared/block_memory.h"
#include "shared/data_record.h"
#include "shared/frame_queue.h"
#include "shared/state_lock.h"

/// What the frame in flight is for (`Protocol::sendState`).
enum JobState {
    kJobIdle = 0,          ///< nothing was sent
    kJobHandshake = 1,     ///< the empty opening frame
    kJobWrite = 2,         ///< head of `pendingWrites`
    kJobConditionRead = 3, ///< head of `conditionReads`
    kJobCyclicRead = 4,    ///< one of `cyclicReads` in turn; also the `opKind` of its entries
    kJobRecipeWrite = 5,   ///< block `rcpIndex` of `rcpBlocks`
    kJobRecipeRead = 6     ///< block `rcpIndex` of `rcpBlocks`
};

class UnstoredWrite;

/// The whole state of the driver; `driver` is its only instance in a loaded library. Every exported
/// function holds `stateLock` while it accesses the state. The lock is never held while waiting for
/// the host: it is released around each call of the host and around its `*shmMutex`.
class Protocol
{
public:
    Protocol() noexcept;

    /// The host's function; null: none. It is loaded before each call: the calls for one unit are
    /// made without `stateLock`.
    std::atomic<ValueChangeCallback> valueChangeCallback;

    // Settings from the property text.
    int deviceNo;        ///< the driver's device number
    int cacheOnlyWrites; ///< not 0: panel writes stay in the cache
    int property3;       ///< kept for the host
    int maxRetries;      ///< bad answers after which a job is given up
    int maxBlockWords;   ///< largest merged block, in words

    // Shared by the host.
    unsigned char *shmBase;   ///< block with the two recipe request bytes
    int hostArg2;             ///< kept for the host
    unsigned char *rcpBuffer; ///< recipe values, 16-bit words, low byte first
    QMutex *shmMutex;         ///< guards the two request bytes

    // Jobs and cache.
    QList<VARIABLE> cyclicReads;     ///< block reads, in the order of their addresses
    QList<VARIABLE> pendingWrites;   ///< panel writes, oldest first
    QList<VARIABLE> conditionReads;  ///< one-off reads, oldest first
    QList<_DATA_> dataArea;          ///< the cache, in order of first use; grows until a restart
    QVector<_RCP_VAR_PRO> rcpItems;  ///< recipe items of this device, sorted
    QVector<_RCP_VAR_PRO> rcpBlocks; ///< the block transfers that serve them
    QList<int> rcpBlockStarts;       ///< for each block, the index of its first item

    VARIABLE lastVar;            ///< condition read queued last: its end is reported
    QList<QString> regNames;     ///< `REG_LIST`, in order
    VARIABLE curVar;             ///< request being served
    QList<VARIABLE> curReadList; ///< request for the read-frame builder

    // The exchange.
    int sendState;         ///< a `JobState`; kept until the next job is chosen
    int tryCount;          ///< writes and condition reads since the last cyclic read
    int needHandshake;     ///< not 0: the next frame is the handshake
    int failCount;         ///< bad answers to the frame in flight
    int maxBlockBits;      ///< largest piece of a bit write, in bits: 8 * `maxBlockWords`
    int maxBlockWordsCopy; ///< largest piece of a write or condition read, in words
    int lastFailed;        ///< 1: the current job was given up
    int curFrameIndex;     ///< index in `frames` of the frame being answered: always 0
    int initDone;          ///< 1 once the host has started communication
    FrameQueue frames;     ///< built but not answered yet; the first is in flight

    QMutex listMutex;     ///< held while `pendingWrites` is shortened or counted
    int rcpIndex;         ///< next recipe block
    QString propertyPage; ///< text last set by the host
    int readItemCount;    ///< requests served by the frame in flight

    // Cyclic reads: position and memory.
    int nextCyclicRead; ///< index in `cyclicReads` of the next block
    int blockInFlight;  ///< index of the block whose read is in flight, or -1
    BlockMemories blockMemories;
    quint64 valuesStamp; ///< incremented when a confirmed value changes, except by the answer to a
                         ///< block that stands alone
    unsigned answerSerial; ///< incremented for each answer, unless it repeats the previous one, and
                           ///< for each new set of blocks

    StateLock stateLock; ///< held by the thread inside the driver

    /// Panel writes that are queued but not stored in `dataArea` yet; null: none.
    UnstoredWrite *unstoredWrites;

private:
    Q_DISABLE_COPY(Protocol)
};

extern Protocol driver;

/// Keeps the calling thread inside the driver during its lifetime: holds `stateLock`.
class DriverEntry
{
public:
    DriverEntry() { driver.stateLock.lock(); }
    ~DriverEntry() { driver.stateLock.unlock(); }

private:
    Q_DISABLE_COPY(DriverEntry)
};

/// Releases `stateLock` during its lifetime, while the calling thread waits for the host. Meanwhile
/// other threads may enter the driver and change its state, so look everything up again afterwards.
/// No effect if the lock is not held, as in tests of a single routine.
class DriverExit
{
public:
    DriverExit()
        : m_wasInside(driver.stateLock.isHeld())
    {
        if (m_wasInside) {
            driver.stateLock.unlock();
        }
    }

    ~DriverExit()
    {
        if (m_wasInside) {
            driver.stateLock.lock();
        }
    }

private:
    const bool m_wasInside;

    Q_DISABLE_COPY(DriverExit)
};

/// @return  true if `item` is for exactly this range of this register
inline bool isRequestFor(const VARIABLE &item, int stationNo, const QString &regName, int startAddr,
                         int count)
{
    return item.stationNo == stationNo && item.startAddr == startAddr && item.count == count &&
           item.regName == regName;
}

/// @return  true if both are for the same range of the same register, whatever their values
inline bool isSameRequest(const VARIABLE &a, const VARIABLE &b)
{
    return isRequestFor(a, b.stationNo, b.regName, b.startAddr, b.count);
}
