#include "serviceForProtocol/recipe/recipe_deliver.h"

#include <algorithm>
#include <climits>

#include "serviceForProtocol/cache/change_notify.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/unit_limits.h"

// The items of the block: from its first one up to the first one of the next block.
static QVector<_RCP_VAR_PRO> itemsOfBlock(int block)
{
    const int blocks = static_cast<int>(driver.rcpBlockStarts.size());
    if (block < 0 || block >= blocks) {
        return QVector<_RCP_VAR_PRO>();
    }
    const int first = driver.rcpBlockStarts.at(block);
    const int all = static_cast<int>(driver.rcpItems.size());
    const int next = block + 1 < blocks ? driver.rcpBlockStarts.at(block + 1) : all;
    // A recipe without items of this device clears the items but keeps the blocks.
    const int end = std::min(next, all);
    return first < end ? driver.rcpItems.mid(first, end - first) : QVector<_RCP_VAR_PRO>();
}

static void storeByte(qint64 pos, int value)
{
    if (driver.rcpBuffer != nullptr) {
        driver.rcpBuffer[pos] = static_cast<unsigned char>(value);
    }
}

static void storeUnit(const QByteArray &answer, int pos, qint64 target, int bytes)
{
    if (bytes == 2) { // a word comes high byte first
        storeByte(target, asc2hex(answer, pos + 2));
        storeByte(target + 1, asc2hex(answer, pos));
        return;
    }
    for (int i = 0; i < bytes; ++i) {
        storeByte(target + i, asc2hex(answer, pos + 2 * i));
    }
}

static void reportWord(qint64 word)
{
    notifyHost(0, -1, QLatin1String("RWI"), static_cast<int>(word));
}

// @param pos    index in the answer of the item's first character
// @param bytes  bytes of a unit
static void deliverItem(const QByteArray &answer, const _RCP_VAR_PRO &item, int pos, int bytes)
{
    const int units = std::min<int>(item.count, kMaxUnits);
    for (int i = 0; i < units; ++i) {
        const qint64 target =
            2 * static_cast<qint64>(item.bufOffset) + static_cast<qint64>(bytes) * i;
        storeUnit(answer, pos + 2 * bytes * i, target, bytes);
        for (qint64 word = (target + 1) / 2; 2 * word < target + bytes; ++word) {
            reportWord(word);
        }
    }
}

void deliverRecipeBlock(const RegisterWidths &widths, const QByteArray &answer, int dataPos)
{
    const int bytes = widths.wordBits / 8;
    const QVector<_RCP_VAR_PRO> items = itemsOfBlock(driver.rcpIndex);
    for (int i = 0; bytes > 0 && i < items.size(); ++i) {
        const _RCP_VAR_PRO &item = items.at(i);
        const qint64 unitsBefore = static_cast<qint64>(item.startAddr) - items.at(0).startAddr;
        // Characters beyond either end of the answer count as 0.
        const qint64 pos = std::max<qint64>(dataPos + unitsBefore * 2 * bytes, INT_MIN / 2);
        if (item.bufOffset >= 0) {
            deliverItem(answer, item, static_cast<int>(std::min<qint64>(pos, answer.size())),
                        bytes);
        }
    }
}
