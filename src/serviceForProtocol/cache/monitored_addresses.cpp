#include "ls_master_k_cnet/ls_master_k_cnet.h"

#include "serviceForProtocol/address/address_merge.h"
#include "serviceForProtocol/cache/expected_blocks.h"
#include "serviceForProtocol/cache/monitor_flags.h"
#include "shared/protocol.h"
#include "shared/request_copy.h"

static VARIABLE cyclicRead(const MergeKey &block)
{
    VARIABLE item = VARIABLE();
    item.opKind = kJobCyclicRead;
    copyPlace(item, block);
    return item;
}

int intf_addrMerge(QList<KEY_ADDRESS> &keys)
{
    const DriverEntry inside;
    clearMonitorFlags();
    const QList<KEY_ADDRESS> &monitored = keys;
    for (const KEY_ADDRESS &key : monitored) {
        _setDataAreaMonitorFlag(key.stationNo, key.regName, key.startAddr, key.count);
    }
    const QVector<MergeKey> blocks = mergedReads(keys);
    driver.cyclicReads.clear();
    expectBlocks(blocks);
    for (const MergeKey &block : blocks) {
        driver.cyclicReads.append(cyclicRead(block));
    }
    return static_cast<int>(driver.cyclicReads.size());
}
