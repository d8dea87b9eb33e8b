#include "serviceForProtocol/recipe/recipe.h"

#include <algorithm>
#include <cstring>

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "serviceForProtocol/address/address_merge.h"
#include "serviceForProtocol/address/address_number.h"
#include "serviceForProtocol/address/weight_order.h"
#include "shared/protocol.h"
#include "shared/request_copy.h"

int recipeBytes(const RegisterWidths &widths, int count)
{
    const qint64 bytes = static_cast<qint64>(count) * (widths.wordBits / 8);
    return static_cast<int>(std::max<qint64>(0, std::min<qint64>(bytes, kValueAreaSize)));
}

void rcpAddrToVar(const _RCP_VAR_PRO &item, VARIABLE &var, int withData)
{
    copyPlace(var, item);
    std::memset(var.data, 0, sizeof var.data);
    if (withData == 0 || driver.rcpBuffer == nullptr || item.bufOffset < 0 ||
        getIndexFromRegName(item.regName) < 0) {
        return;
    }
    const int bytes = recipeBytes(registerWidths(item.regName), item.count);
    std::memcpy(var.data, driver.rcpBuffer + 2 * static_cast<qint64>(item.bufOffset),
                static_cast<size_t>(bytes));
}

static void keepItemsOfThisDevice(const QVector<_RCP_VAR_PRO> &items)
{
    driver.rcpItems.clear();
    for (const _RCP_VAR_PRO &item : items) {
        if (item.deviceNo == driver.deviceNo) {
            driver.rcpItems.append(item);
        }
    }
}

static KEY_ADDRESS keyOf(const _RCP_VAR_PRO &item)
{
    KEY_ADDRESS key = KEY_ADDRESS();
    copyPlace(key, item);
    key.keyB = item.bufOffset;
    return key;
}

static _RCP_VAR_PRO blockOf(const KEY_ADDRESS &key)
{
    _RCP_VAR_PRO block = _RCP_VAR_PRO();
    copyPlace(block, key);
    block.bufOffset = key.keyB;
    return block;
}

int intf_setRcpAddress(QVector<_RCP_VAR_PRO> &items)
{
    const DriverEntry inside;
    keepItemsOfThisDevice(items);
    if (driver.rcpItems.isEmpty()) {
        return 0;
    }
    sortByWeight(driver.rcpItems);
    const QVector<_RCP_VAR_PRO> &kept = driver.rcpItems;
    QList<KEY_ADDRESS> keys;
    for (const _RCP_VAR_PRO &item : kept) {
        keys.append(keyOf(item));
    }
    driver.rcpBlockStarts.clear();
    driver.rcpBlocks.clear();
    addrMerge(keys, kMergeRecipe);
    for (const KEY_ADDRESS &key : keys) {
        driver.rcpBlocks.append(blockOf(key));
    }
    return static_cast<int>(kept.size());
}
