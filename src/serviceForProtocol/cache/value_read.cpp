#include "serviceForProtocol/cache/value_read.h"

#include <algorithm>
#include <cstring>

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "serviceForProtocol/cache/data_area.h"
#include "serviceForProtocol/cache/unit_layout.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

static const unsigned char *valueOf(UnitCursor &cursor, int unitAddr)
{
    return currentBytes(driver.dataArea.at(cursor.indexOf(unitAddr)));
}

static void readUnits(const UnitLayout &layout, UnitCursor &cursor, int startAddr, int units,
                      unsigned char *buffer)
{
    const int bytes = layout.bytesPerUnit;
    for (int i = 0; i < units; ++i) {
        const unsigned char *const value = valueOf(cursor, wrapAdd(startAddr, i));
        std::memcpy(buffer + i * bytes, value, static_cast<size_t>(bytes));
    }
}

static void readBits(const UnitLayout &layout, UnitCursor &cursor, int startAddr, int bits,
                     unsigned char *buffer)
{
    for (int i = 0; i < bits; ++i) {
        const int bit = wrapAdd(startAddr, i);
        const unsigned char *const value = valueOf(cursor, bit / layout.bitsPerUnit);
        const int number = unitNumber(value, layout.bytesPerUnit);
        buffer[i] = static_cast<unsigned char>(bitOf(number, bit % layout.bitsPerUnit));
    }
}

void readValues(const RegisterWidths &widths, int stationNo, const QString &letter, int startAddr,
                int count, unsigned char *buffer)
{
    const UnitLayout layout = unitLayout(widths);
    UnitCursor cursor(stationNo, letter, driver.dataArea);
    if (layout.isBitView()) {
        const int bits = std::min<int>(layout.values(count), kValueAreaSize);
        readBits(layout, cursor, startAddr, bits, buffer);
        return;
    }
    const int units = layout.values(count) * layout.unitsPerValue;
    readUnits(layout, cursor, startAddr, std::min(units, kValueAreaSize / layout.bytesPerUnit),
              buffer);
}

int intf_getData(int stationNo, QString &regName, int startAddr, int count, unsigned char *buffer)
{
    if (buffer != nullptr) {
        const DriverEntry inside;
        readValues(registerWidths(regName), stationNo, registerLetter(regName), startAddr, count,
                   buffer);
    }
    return 1;
}
