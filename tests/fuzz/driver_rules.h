#pragma once

#include "fuzz/input.h"
#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "ls_master_k_cnet/protocol_tables.h"
#include "shared/protocol.h"
#include "support/block_check.h"

#include <QMutex>

#include <memory>
#include <new>

namespace fuzz {

constexpr int kRecipeWords = 2048;
constexpr int kMostWaiting = 513; ///< writes, and condition reads, that may wait

constexpr char kEtx = 0x03;
constexpr char kEot = 0x04;
constexpr char kEnq = 0x05;
constexpr char kAck = 0x06;
constexpr char kNak = 0x15;

/** What a host shares with the driver. Allocated to the byte, so that a step beyond shows. */
struct HostMemory
{
    std::unique_ptr<unsigned char[]> shm{new unsigned char[kSharedBlockSize]()};
    std::unique_ptr<unsigned char[]> recipe{new unsigned char[2 * kRecipeWords]()};
    QMutex lock;
};

inline HostMemory &hostMemory()
{
    static HostMemory memory;
    return memory;
}

inline void setRecipeRequest(int byte, bool on)
{
    hostMemory().shm[static_cast<size_t>(byte)] = on ? 1 : 0;
}

inline void startCommunication(const char *properties)
{
    HostMemory &memory = hostMemory();
    int status = -1;
    require(intf_initProperty(memory.shm.get(), 0, memory.recipe.get(), &status, properties,
                              &memory.lock) == 1,
            "a start gives 1");
    require(status == 0, "a start reports status 0");
}

/** The driver as it is after loading, whatever the input before has left. */
inline void renewDriver()
{
    driver.~Protocol();
    new (&driver) Protocol();
    setRecipeRequest(kRecipeWriteByte, false);
    setRecipeRequest(kRecipeReadByte, false);
    std::fill_n(hostMemory().recipe.get(), 2 * kRecipeWords, static_cast<unsigned char>(0x5A));
}

/** A callback that does nothing. */
inline int ignoreChange(int /*deviceNo*/, int /*stationNo*/, QString &name, int /*address*/)
{
    require(!name.isEmpty(), "a change has a name");
    return 0;
}

inline void requireBoundedLists()
{
    require(driver.pendingWrites.size() <= kMostWaiting, "at most 513 writes wait");
    require(driver.conditionReads.size() <= kMostWaiting, "at most 513 condition reads wait");
    require(driver.frames.size() <= 2, "a job has two frames at most");
    require(driver.rcpBlocks.size() == driver.rcpBlockStarts.size(), "each block has a start");
    require(driver.rcpIndex >= 0, "a recipe block is counted from 0");
}

inline QByteArray requestOf(const FRAME_PRO &frame)
{
    return QByteArray(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen);
}

/**
 * A request is whole and in ASCII. A frame that would not fit into the buffer is cut and has no
 * end.
 *
 * @param patched the frame's data come from an answer that need not have been hexadecimal
 */
inline void requireRequest(const FRAME_PRO &frame, bool patched)
{
    require(frame.sendLen >= 0 && frame.sendLen <= kSendBufSize, "a frame fits into its buffer");
    require(frame.spare == 0, "the spare field is 0");
    if (frame.sendLen == 0) {
        require(frame.recvLen == 0 && frame.unitCount == 0, "the handshake expects nothing");
        return;
    }
    const QByteArray request = requestOf(frame);
    const QByteArray command = request.mid(3, 3);
    require(request.at(0) == kEnq, "a request begins with ENQ");
    require(command == "rSS" || command == "rSB" || command == "wSS" || command == "wSB",
            "a request has one of four commands");
    if (frame.sendLen == kSendBufSize) {
        return;
    }
    const int tail = frame.sendLen - 3;
    require(tail >= 6 && request.at(tail) == kEot, "a request ends with EOT and a block check");
    require(request.mid(tail + 1) == blockCheckOf(request.left(tail + 1)),
            "the block check is right");
    const int firstData = 18; // of a block write
    for (int i = 1; i < (patched ? std::min(tail, firstData) : tail); ++i) {
        require(request.at(i) >= ' ' && request.at(i) <= '~', "a request is printable");
    }
}

/** ACK, the station and command of the request, `text`, ETX and a right block check. */
inline QByteArray acknowledged(const FRAME_PRO &frame, const QByteArray &text)
{
    const QByteArray answer = kAck + requestOf(frame).mid(1, 5) + text + kEtx;
    return answer + blockCheckOf(answer);
}

/** Whether the frame's answer is good, judged from the bytes alone. */
inline bool isGoodAnswer(const FRAME_PRO &frame, const QByteArray &answer)
{
    const int tail = static_cast<int>(answer.size()) - 3;
    return answer.size() == frame.recvLen && tail >= 0 && answer.at(0) == kAck &&
           answer.at(tail) == kEtx && answer.mid(tail + 1) == blockCheckOf(answer.left(tail + 1));
}

} // namespace fuzz
