#include "ls_master_k_cnet/merge_rule.h"

#include "shared/protocol.h"
#include "shared/wrap.h"

int judgeAddrMerge(const MergeKey &cur, const MergeKey &next, int mode)
{
    if (cur.stationNo != next.stationNo || cur.regName != next.regName) {
        return 1;
    }
    const int gap = wrapSub(next.startAddr, wrapAdd(cur.startAddr, cur.count));
    if (gap > (mode == 0 ? 0 : driver.maxBlockWords)) {
        return 1;
    }
    // A contact read carries one contact, so two contacts never share a frame.
    if (cur.regName == QLatin1String("TX") || cur.regName == QLatin1String("CX")) {
        return cur.startAddr != next.startAddr ? 1 : 0;
    }
    return 0;
}

int judgeAddrMerge(const KEY_ADDRESS &cur, const KEY_ADDRESS &next, int mode)
{
    return judgeAddrMerge(mergeKeyOf(cur, 0), mergeKeyOf(next, 0), mode);
}
