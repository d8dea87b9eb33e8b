#include "serviceForProtocol/answer_decode.h"

#include <algorithm>

#include "serviceForProtocol/bit_patch.h"
#include "serviceForProtocol/change_notify.h"
#include "serviceForProtocol/data_area.h"
#include "serviceForProtocol/recipe_deliver.h"
#include "shared/bytes.h"
#include "shared/limits.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

// A word comes high byte first; a byte stands alone; a 32-bit unit comes low byte first.
static int numberAt(const QByteArray &answer, int pos, int bytes)
{
    switch (bytes) {
    case 1:
        return asc2hex(answer, pos);
    case 2:
        return asc2hex(answer, pos) << 8 | asc2hex(answer, pos + 2);
    default:
        return uchar2int32(static_cast<unsigned char>(asc2hex(answer, pos)),
                           static_cast<unsigned char>(asc2hex(answer, pos + 2)),
                           static_cast<unsigned char>(asc2hex(answer, pos + 4)),
                           static_cast<unsigned char>(asc2hex(answer, pos + 6)));
    }
}

// A value that comes in ends the wait for a write only when no write is queued any more.
static void storeUnit(int index, int bytes, int number)
{
    _DATA_ &record = driver.dataArea[index];
    const int before = unitNumber(record.readValue, bytes);
    if (before == number) {
        return;
    }
    setUnitNumber(record.readValue, bytes, number);
    if (record.writePending != 1 || driver.pendingWrites.isEmpty()) {
        record.writePending = 0;
    }
    notifyUnitChange(bytes, before, number, index);
}

static void storeContact(int index, int on)
{
    _DATA_ &record = driver.dataArea[index];
    if (record.readValue[0] == on) {
        return;
    }
    record.readValue[0] = static_cast<unsigned char>(on);
    record.writePending = 0;
    _bitDataChange(index);
}

void decodeToDataArea(const RegisterWidths &widths, const QByteArray &answer, int unitCount,
                      int dataPos, const VARIABLE &var)
{
    const int bytes = widths.wordBits / 8;
    if (widths.wordBits != 1 && bytes != 1 && bytes != 2 && bytes != 4) {
        return;
    }
    const QString letter = registerLetter(var.regName);
    const int units = std::min<int>(unitCount, kMaxUnits);
    for (int i = 0; i < units; ++i) {
        const int index =
            getIndexOfDataArea(var.stationNo, letter, wrapAdd(var.startAddr, i), driver.dataArea);
        if (widths.wordBits == 1) {
            storeContact(index, bitOf(asc2hex(answer, dataPos + i / 8 * 2), i % 8));
        } else {
            storeUnit(index, bytes, numberAt(answer, dataPos + 2 * bytes * i, bytes));
        }
    }
}

void analyzeFrameOfVal(const QByteArray &answer, int unitCount, int dataPos, const VARIABLE &var)
{
    const RegisterWidths widths = registerWidths(var.regName);
    if (driver.sendState == kJobWrite && widths.bitName) {
        patchBitsIntoWrite(widths, answer, unitCount, dataPos, var);
    } else if (driver.sendState == kJobRecipeRead) {
        deliverRecipeBlock(widths, answer, dataPos);
    } else {
        decodeToDataArea(widths, answer, unitCount, dataPos, var);
    }
}
