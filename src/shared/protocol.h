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

/// The whole state of the driver; `driver` is its only instance in a loaded library. Whoever
/// touches it holds `stateLock`, from the exported function on. Nobody waits for the host with it
/// held: it is given back around each call of the host's and around the host's `*shmMutex`.
class Protocol
{
public:
    Protocol() noexcept;

    /// The host's; null: none. It is looked up for each call, and the calls of one unit are made
    /// outside the driver.
    std::atomic<ValueChangeCallback> valueChangeCallback;

    // Settings of the property text.
    int deviceNo;        ///< the driver's device number
    int cacheOnlyWrites; ///< not 0: panel writes stay in the cache
    int property3;       ///< kept for the host
    int maxRetries;      ///< bad answers after which a job is given up
    int maxBlockWords;   ///< words of one merged block

    // What the host shares.
    unsigned char *shmBase;   ///< its block with the two recipe request bytes
    int hostArg2;             ///< kept for the host
    unsigned char *rcpBuffer; ///< its recipe values, 16-bit words, low byte first
    QMutex *shmMutex;         ///< its lock of the two request bytes

    // Jobs and cache.
    QList<VARIABLE> cyclicReads;     ///< block reads, in the order of their addresses
    QList<VARIABLE> pendingWrites;   ///< panel writes, oldest first
    QList<VARIABLE> conditionReads;  ///< one-off reads, oldest first
    QList<_DATA_> dataArea;          ///< the cache, in order of first use; only ever grows
    QVector<_RCP_VAR_PRO> rcpItems;  ///< recipe items of this device, sorted
    QVector<_RCP_VAR_PRO> rcpBlocks; ///< the block transfers that serve them
    QList<int> rcpBlockStarts;       ///< for each block the index of its first item

    VARIABLE lastVar;            ///< condition read queued last: the one the host waits for
    QList<QString> regNames;     ///< `REG_LIST`, in order
    VARIABLE curVar;             ///< request that is being served
    QList<VARIABLE> curReadList; ///< request handed to the read-frame builder

    // The exchange.
    int sendState;         ///< a `JobState`; keeps its value until the next choice
    int tryCount;          ///< writes and condition reads since the last cyclic read
    int needHandshake;     ///< not 0: the next frame is the handshake
    int failCount;         ///< bad answers to the frame in flight
    int maxBlockBits;      ///< bits of one piece of a bit write: 8 * `maxBlockWords`
    int maxBlockWordsCopy; ///< words of one piece of a write or condition read
    int lastFailed;        ///< 1: the current job was given up
    int curFrameIndex;     ///< index in `frames` of the frame being answered: always 0
    int initDone;          ///< 1 once the host has started communication
    FrameQueue frames;     ///< built and not yet answered; the first is in flight

    QMutex listMutex;     ///< held where `pendingWrites` is shortened or counted
    int rcpIndex;         ///< next recipe block
    QString propertyPage; ///< text last set by the host
    int readItemCount;    ///< requests served by the frame in flight

    // What is known of the cyclic reads beyond the text of the request.
    int nextCyclicRead; ///< index in `cyclicReads` of the block that is due
    int blockInFlight;  ///< index of the block whose read is in flight, or -1
    BlockMemories blockMemories;
    quint64 valuesStamp; ///< moves on when a confirmed value changes otherwise than by the answers
                         ///< to a block that stands alone
    unsigned answerSerial; ///< moves on with each answer that is not the last one again, and with
                           ///< each new set of blocks

    StateLock stateLock; ///< held by the thread that is inside the driver

    /// Panel writes that are queued and not yet stored in `dataArea`; null: none.
    UnstoredWrite *unstoredWrites;

private:
    Q_DISABLE_COPY(Protocol)
};

extern Protocol driver;

/// The calling thread is inside the driver for as long as this lives.
class DriverEntry
{
public:
    DriverEntry() { driver.stateLock.lock(); }
    ~DriverEntry() { driver.stateLock.unlock(); }

private:
    Q_DISABLE_COPY(DriverEntry)
};

/// The calling thread is outside the driver for as long as this lives, because it waits for the
/// host. Meanwhile another thread may do what the host may do in its callback, so whatever was
/// looked up before is to be looked up again. Without effect in a routine that is called by itself.
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

/// @return  true when `item` means exactly this range of this register
inline bool isRequestFor(const VARIABLE &item, int stationNo, const QString &regName, int startAddr,
                         int count)
{
    return item.stationNo == stationNo && item.startAddr == startAddr && item.count == count &&
           item.regName == regName;
}

/// @return  true when both mean the same range of the same register, whatever their values
inline bool isSameRequest(const VARIABLE &a, const VARIABLE &b)
{
    return isRequestFor(a, b.stationNo, b.regName, b.startAddr, b.count);
}
