#include "serviceForProtocol/request/condition_read.h"

#include <algorithm>

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "serviceForProtocol/request/job_queue.h"
#include "shared/protocol.h"
#include "shared/unit_limits.h"
#include "shared/wrap.h"

// The number of words in the frame. It divides before multiplying, so a register of 32-bit words
// asks for none.
static int wireCount(const RegisterWidths &widths, int count)
{
    return widths.wordBits > 0 ? wrapMul(count, 16 / widths.wordBits) : count;
}

static void queuePiece(const RegisterWidths &widths, const KEY_ADDRESS &key, int startAddr,
                       int count, int opKind)
{
    VARIABLE item = VARIABLE();
    item.opKind = opKind;
    item.stationNo = key.stationNo;
    item.regName = key.regName;
    item.startAddr = startAddr;
    item.count = wireCount(widths, count);
    insertJob(driver.conditionReads, item);
    driver.lastVar = item;
}

void queueConditionRead(const RegisterWidths &widths, const KEY_ADDRESS &key, int opKind)
{
    const int limit = key.bitFlag == -1 ? driver.maxBlockBits : driver.maxBlockWordsCopy;
    // Hosts read bits cyclically; a one-off read of bits has never been sent.
    if (limit < 1 || widths.bitName) {
        return;
    }
    const int units = std::min<int>(key.count, kMaxUnits);
    if (units <= limit) {
        queuePiece(widths, key, key.startAddr, units, opKind);
        return;
    }
    for (int done = 0; done < units; done += std::min(limit, units - done)) {
        queuePiece(widths, key, wrapAdd(key.startAddr, done), std::min(limit, units - done),
                   opKind);
    }
}

int intf_addConditionRead(KEY_ADDRESS &key, int opKind)
{
    const DriverEntry inside;
    queueConditionRead(registerWidths(key.regName), key, opKind);
    return 1;
}
