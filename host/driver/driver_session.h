#pragma once

#include "host/driver/driver_library.h"

#include <QByteArray>
#include <QMutex>
#include <QVector>

#include <functional>

namespace cnet {

/** What the host sets with the property text. */
struct DriverProperties
{
    int deviceNumber = 0;
    bool cacheOnlyWrites = false;
    int attempts = 3;    ///< bad answers after which the driver gives a frame up
    int blockWords = 60; ///< words of a block read

    /** "DEVICE#CACHEONLY#SPARE#RETRIES#BLOCKWORDS". */
    QByteArray text() const;
};

/** Marks the cyclic reads among the frames that the driver hands out (`VARIABLE::opKind`). */
constexpr int kCyclicRead = 4;

/**
 * Communication with the driver from its start on: owns the objects that the driver is given and
 * receives its change callback.
 *
 * The driver locks next to nothing: calls from two threads at a time would corrupt its lists. This
 * program therefore has one thread and one event loop. The exchange, the values and the callback,
 * which comes from within those calls, all run on it, and never two of them at once.
 *
 * The driver keeps one state for the process and its callback carries no user pointer, so there is
 * one session at a time.
 */
class DriverSession
{
public:
    /** Station, register name and address of a value that changed, as the callback gives them. */
    using ChangeHandler = std::function<void(int station, const QString &name, int address)>;

    /** @param functions of the loaded driver; must outlive the session */
    explicit DriverSession(const DriverFunctions &functions);
    ~DriverSession();
    DriverSession(const DriverSession &) = delete;
    DriverSession &operator=(const DriverSession &) = delete;

    /** Starts communication; what the driver had queued or cached is gone. */
    void start(const DriverProperties &properties);

    /** Called from within the driver; it may read values but must not touch the exchange. */
    void setChangeHandler(ChangeHandler handler);

    /** @return number of block reads that serve these addresses */
    int monitor(QList<KEY_ADDRESS> keys);

    /** The driver's cached values: words, or 0 and 1 for bits and contacts. 0 if never read. */
    QVector<quint16> values(int station, const QString &registerName, int start, int count,
                            bool isBit) const;

    const DriverFunctions &functions() const { return m_functions; }

    /** The block whose last two bytes ask for a recipe; touched with its lock held only. */
    unsigned char *sharedBlock();
    QMutex &sharedBlockLock() { return m_sharedBlockLock; }

    /** Recipe words, low byte first. */
    unsigned char *recipeBuffer();
    static constexpr int kRecipeWords = 65536;

private:
    static int handleChange(int deviceNo, int stationNo, QString &name, int address);

    static DriverSession *s_current;

    const DriverFunctions &m_functions;
    QByteArray m_sharedBlock;
    QByteArray m_recipeBuffer;
    QMutex m_sharedBlockLock;
    ChangeHandler m_changeHandler;
};

} // namespace cnet
