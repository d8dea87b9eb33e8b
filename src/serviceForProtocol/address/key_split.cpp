#include "serviceForProtocol/address/key_split.h"

#include <algorithm>
#include <cstring>

// Copies `length` bytes from `offset` of a value area; bytes past its end become 0.
static void copyValues(unsigned char *target, const unsigned char *area, qint64 offset,
                       qint64 length)
{
    const qint64 wanted = std::min<qint64>(length, kValueAreaSize);
    const qint64 present = std::max<qint64>(0, std::min(wanted, kValueAreaSize - offset));
    if (present > 0) {
        std::memcpy(target, area + offset, static_cast<size_t>(present));
    }
    std::memset(target + present, 0, static_cast<size_t>(wanted - present));
}

void groupingKey(const KEY_ADDRESS &key, int maxLen, QList<KEY_ADDRESS> &out, int mode)
{
    if (maxLen < 1) {
        return;
    }
    if (key.count <= maxLen) {
        out.append(key);
        return;
    }
    const int bytesPerUnit = key.bitFlag == -1 ? 1 : 2;
    for (qint64 done = 0; done < key.count; done += maxLen) {
        KEY_ADDRESS piece = key;
        piece.startAddr = static_cast<int>(key.startAddr + done);
        piece.count = static_cast<int>(std::min<qint64>(maxLen, key.count - done));
        if (mode == 1) {
            copyValues(piece.data, key.data, done * bytesPerUnit,
                       static_cast<qint64>(piece.count) * bytesPerUnit);
        }
        out.append(piece);
    }
}
