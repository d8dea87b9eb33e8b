#include "serviceForProtocol/request/write_request.h"

#include <algorithm>
#include <cstring>

#include <QtCore/QVarLengthArray>

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "serviceForProtocol/address/key_split.h"
#include "serviceForProtocol/request/job_queue.h"
#include "serviceForProtocol/request/panel_value_store.h"
#include "serviceForProtocol/request/unstored_write.h"
#include "shared/protocol.h"
#include "shared/request_copy.h"
#include "shared/unit_limits.h"
#include "shared/wrap.h"

unsigned panelBytesPerUnit(const RegisterWidths &widths)
{
    return widths.unitBits == 1 ? 1U : 2U;
}

static VARIABLE writeOf(const KEY_ADDRESS &piece, int opKind)
{
    VARIABLE item = VARIABLE();
    item.opKind = opKind;
    copyPlace(item, piece);
    return item;
}

// In 16-bit words, or in bits for bit registers.
static int wireCount(const RegisterWidths &widths, int count)
{
    return widths.unitBits != 1 && widths.wordBits > 0 ? truncToInt(count * 16.0 / widths.wordBits)
                                                       : count;
}

static void queuePieces(const RegisterWidths &widths, const QList<KEY_ADDRESS> &pieces, int opKind)
{
    for (const KEY_ADDRESS &piece : pieces) {
        VARIABLE item = writeOf(piece, opKind);
        std::memcpy(item.data, piece.data,
                    static_cast<size_t>(piece.count) * panelBytesPerUnit(widths));
        item.count = wireCount(widths, piece.count);
        insertJob(driver.pendingWrites, item);
    }
}

// Each contact needs a frame of its own, whatever the block size.
static void queueContacts(const RegisterWidths &widths, const KEY_ADDRESS &key, int opKind)
{
    const int contacts = wireCount(widths, key.count);
    for (int i = 0; i < contacts && i < kValueAreaSize; ++i) {
        VARIABLE item = writeOf(key, opKind);
        item.startAddr = wrapAdd(key.startAddr, i);
        item.count = 1;
        item.data[0] = key.data[i];
        insertJob(driver.pendingWrites, item);
    }
}

void queueWrite(const RegisterWidths &widths, int stationNo, const QString &regName, int startAddr,
                int count, const unsigned char *data, int opKind)
{
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = stationNo;
    key.regName = regName;
    key.startAddr = startAddr;
    key.count = count;
    std::memcpy(key.data, data, static_cast<size_t>(count) * panelBytesPerUnit(widths));
    if (widths.wordBits == 1) {
        queueContacts(widths, key, opKind);
        return;
    }
    // The key has two bytes per unit even for a bit register, so the later pieces of a long bit
    // write take their values from twice the offset.
    const int limit = widths.unitBits == 1 ? driver.maxBlockBits : driver.maxBlockWordsCopy;
    QList<KEY_ADDRESS> pieces;
    groupingKey(key, limit, pieces, 1);
    queuePieces(widths, pieces, opKind);
}

// A write to the PLC is limited by the value area of a request.
static int maxUnitsToSend(const RegisterWidths &widths)
{
    return kValueAreaSize / static_cast<int>(panelBytesPerUnit(widths));
}

static int maxUnitsToCache(const RegisterWidths &widths)
{
    return widths.bitName ? kMaxBits : kMaxUnits;
}

int intf_setData(int stationNo, QString &regName, int startAddr, int count, unsigned char *data,
                 int opKind)
{
    const DriverEntry inside;
    const RegisterWidths widths = registerWidths(regName);
    const bool cacheOnly = driver.cacheOnlyWrites != 0;
    const int maxUnits = cacheOnly ? maxUnitsToCache(widths) : maxUnitsToSend(widths);
    if (data == nullptr || count < 0 || count > maxUnits) {
        return 1;
    }
    // A copy: the host may use its buffer from within the callback.
    const int bytes = count * static_cast<int>(panelBytesPerUnit(widths));
    QVarLengthArray<unsigned char, kValueAreaSize> values(bytes);
    std::copy(data, data + bytes, values.data());
    const UnstoredWrite unstored(stationNo, regName, startAddr, count);
    if (!cacheOnly) {
        queueWrite(widths, stationNo, regName, startAddr, count, values.data(), opKind);
    }
    write_saveDataToArea(stationNo, regName, startAddr, count, values.data());
    return 1;
}
