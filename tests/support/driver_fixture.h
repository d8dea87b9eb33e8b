#pragma once

#include <cstring>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "shared/protocol.h"
#include "support/text.h"

/// What a host shares with the driver, and a record of what the driver calls back. The driver is
/// one for the process, so a test has one fixture at a time; construction starts communication
/// anew.
class DriverFixture
{
public:
    enum { kRecipeWords = 4096 };

    /// @param props  property text: device, cache-only, spare, retries, block words
    explicit DriverFixture(const char *props = "7#0#0#3#60")
        : shm(kSharedBlockSize, '\0')
        , recipe(2 * kRecipeWords, '\0')
    {
        driver.rcpItems.clear();
        driver.rcpBlocks.clear();
        driver.rcpBlockStarts.clear();
        driver.rcpIndex = 0;
        driver.lastVar = VARIABLE();
        calls().clear();
        hook() = nullptr;
        intf_setAddrValueChangeCallBack(&DriverFixture::record);
        start(props);
    }

    ~DriverFixture()
    {
        intf_setAddrValueChangeCallBack(nullptr);
        int status = 0;
        intf_initProperty(nullptr, 0, nullptr, &status, "", nullptr);
    }

    void start(const char *props)
    {
        int status = -1;
        intf_initProperty(bytes(shm), 0, bytes(recipe), &status, props, &shmLock);
    }

    /// Each call of the driver as "device station name address", in order.
    static QStringList &calls()
    {
        static QStringList list;
        return list;
    }

    /// Runs within every callback, after it was recorded; null for none.
    static void (*&hook())()
    {
        static void (*function)() = nullptr;
        return function;
    }

    static unsigned char *bytes(QByteArray &array)
    {
        return reinterpret_cast<unsigned char *>(array.data());
    }

    QByteArray shm;
    QByteArray recipe;
    QMutex shmLock;

private:
    static int record(int deviceNo, int stationNo, QString &name, int address)
    {
        calls().append(latin("%1 %2 %3 %4")
                           .arg(QString::number(deviceNo), QString::number(stationNo), name,
                                QString::number(address)));
        name = latin("changed by the host");
        if (hook() != nullptr) {
            hook()();
        }
        return 0;
    }

    Q_DISABLE_COPY(DriverFixture)
};

/// A request item as a host or a builder makes it.
inline VARIABLE makeItem(int stationNo, const char *regName, int startAddr, int count,
                         const QByteArray &values = QByteArray())
{
    VARIABLE item = VARIABLE();
    item.stationNo = stationNo;
    item.regName = latin(regName);
    item.startAddr = startAddr;
    item.count = count;
    std::memcpy(item.data, values.constData(), static_cast<size_t>(values.size()));
    return item;
}

inline KEY_ADDRESS makeKey(int stationNo, const char *regName, int startAddr, int count,
                           int bitFlag = 0)
{
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = stationNo;
    key.regName = latin(regName);
    key.startAddr = startAddr;
    key.count = count;
    key.bitFlag = bitFlag;
    return key;
}

/// Puts a frame that no builder made behind those in flight.
inline void queueFrame(const FRAME_PRO &frame)
{
    driver.frames.append(frame.var) = frame;
}

/// "sendLen recvLen dataPos unitCount spare".
inline QString numbersText(const FRAME_PRO &frame)
{
    return latin("%1 %2 %3 %4 %5")
        .arg(frame.sendLen)
        .arg(frame.recvLen)
        .arg(frame.dataPos)
        .arg(frame.unitCount)
        .arg(frame.spare);
}

/// A frame whose numbers, in this order, are `first`, `first` + 1 ...
inline FRAME_PRO numberedFrame(int first, unsigned char sendByte, const VARIABLE &item)
{
    FRAME_PRO frame = FRAME_PRO();
    std::memset(frame.sendBuf, sendByte, sizeof frame.sendBuf);
    frame.sendLen = first;
    frame.recvLen = first + 1;
    frame.dataPos = first + 2;
    frame.unitCount = first + 3;
    frame.spare = first + 4;
    frame.var = item;
    return frame;
}

/// Whether nobody holds the lock.
inline bool isFree(QMutex &lock)
{
    const bool isTaken = lock.tryLock();
    if (isTaken) {
        lock.unlock();
    }
    return isTaken;
}

/// The bytes of a frame that go on the wire.
inline QByteArray sentBytes(const FRAME_PRO &frame)
{
    return QByteArray(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen);
}

/// Wraps the characters between the control characters of an answer: ACK, `text`, ETX and a right
/// block check.
inline QByteArray makeAnswer(const QByteArray &text)
{
    const QByteArray answer = QByteArray(1, '\x06') + text + QByteArray(1, '\x03');
    unsigned sum = 0;
    for (const char character : answer) {
        sum += static_cast<unsigned char>(character);
    }
    return answer + QByteArray::number(sum % 256 + 256, 16).toUpper().right(2);
}
