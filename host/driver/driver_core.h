#pragma once

#include "host/address/item.h"
#include "host/driver/change_slot.h"
#include "host/driver/driver_library.h"

#include <QByteArray>
#include <QMutex>
#include <QVector>

#include <cstdlib>
#include <memory>

namespace cnet {

/** What the host sets with the property text. */
struct DriverProperties
{
    int attempts = 3;    ///< bad answers after which the driver gives a frame up, 1 or more
    int blockWords = 60; ///< words of a block read, 1 or more

    /** Of the device, as the driver knows the panel's. */
    static constexpr int kDeviceNumber = 0;

    /** "DEVICE#CACHEONLY#SPARE#RETRIES#BLOCKWORDS". */
    QByteArray text() const;
};

/**
 * Tags of what the host itself asks for (`VARIABLE::opKind`): the driver carries them along into
 * each frame, which is how the host tells what an exchange was for. Clear of the driver's own tags.
 */
constexpr int kOneOffRead = 100;
constexpr int kWrite = 101;

/**
 * More attempts than any setting of the driver allows for one frame: a driver that never gives up
 * must not hang the host.
 */
constexpr int kMostAttempts = 2000;

/**
 * One loaded driver and all that it is lent: the shared block, the recipe buffer, the callback.
 * Within the library only; programs have Driver.
 *
 * One thread: the exchange, the values and the callback, which comes from within those calls, all
 * run on it.
 */
class DriverCore
{
public:
    DriverCore();
    ~DriverCore();
    DriverCore(const DriverCore &) = delete;
    DriverCore &operator=(const DriverCore &) = delete;

    /** Once only, before all else. @param error receives one sentence when the result is false */
    bool load(const QString &path, QString &error);
    bool isLoaded() const { return m_loaded; }
    const DriverLibrary &library() const { return m_library; }
    const DriverFunctions &functions() const { return m_library.functions(); }

    /** Starts communication; what the driver had queued or cached is gone. */
    void start(const DriverProperties &properties);

    /**
     * Changes the most words of a block while nothing is queued or in flight. The driver starts
     * anew for it: what it had cached is gone, and its cyclic reads.
     */
    void setBlockWords(int words);
    int blockWords() const { return m_properties.blockWords; }

    /** How often the driver reported a changed value since it was loaded. */
    quint64 changes() const { return m_changes; }

    /** Sets what is read cyclically, while nothing is in flight. @return number of block reads */
    int merge(QList<KEY_ADDRESS> keys) { return functions().addrMerge(keys); }

    /** Has a row of words or one contact read or written next; see intf_addConditionRead,
     * intf_setData. */
    void queueRead(const Item &item);
    void queueWrite(const Item &item, const QVector<quint16> &values);

    /** The driver's cached values: words, or 0 and 1 for bits and contacts. 0 if never read. */
    QVector<quint16> values(const Item &item) const;

    /** The block whose last two bytes ask for a recipe; touched with its lock held only. */
    unsigned char *sharedBlock() { return m_sharedBlock.get(); }
    QMutex &sharedBlockLock() { return m_sharedBlockLock; }

    /** Recipe words, low byte first. */
    unsigned char *recipeBuffer() { return m_recipeBuffer.get(); }
    static constexpr int kRecipeWords = 65536;

private:
    struct Free
    {
        void operator()(unsigned char *area) const { std::free(area); }
    };
    using Area = std::unique_ptr<unsigned char, Free>;

    static Area zeros(size_t bytes);

    DriverLibrary m_library;
    bool m_loaded = false;
    DriverProperties m_properties;
    ChangeSlot m_changeSlot;
    quint64 m_changes = 0;
    Area m_sharedBlock;
    Area m_recipeBuffer;
    QMutex m_sharedBlockLock;
};

/** What intf_addrMerge and intf_addConditionRead take for the addresses of an item. */
KEY_ADDRESS keyOf(const Item &item);

} // namespace cnet
