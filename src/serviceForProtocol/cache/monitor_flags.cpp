#include "serviceForProtocol/cache/monitor_flags.h"

#include "serviceForProtocol/cache/data_area.h"
#include "serviceForProtocol/cache/unit_layout.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

void clearMonitorFlags()
{
    for (_DATA_ &record : driver.dataArea) {
        record.spareFlag = 0;
        record.monitorFlags = 0;
        record.bitMonitorFlags = 0;
    }
}

static _DATA_ &unitRecord(UnitCursor &cursor, int unitAddr)
{
    return driver.dataArea[cursor.indexOf(unitAddr)];
}

static int firstWatchBit(int unitsPerValue)
{
    switch (unitsPerValue) {
    case 1:
        return kWatchUnit;
    case 2:
        return kWatchPairLow;
    default:
        return kWatchQuadFirst;
    }
}

static void markUnits(const UnitLayout &layout, UnitCursor &cursor, int startAddr, int count)
{
    const int firstBit = firstWatchBit(layout.unitsPerValue);
    const int units = layout.values(count) * layout.unitsPerValue;
    for (int i = 0; i < units; ++i) {
        _DATA_ &record = unitRecord(cursor, wrapAdd(startAddr, i));
        record.monitorFlags =
            _setBitValue(record.monitorFlags, firstBit + i % layout.unitsPerValue, 1);
    }
}

static void markBits(const UnitLayout &layout, UnitCursor &cursor, int startAddr, int count)
{
    const int bits = layout.values(count);
    for (int i = 0; i < bits; ++i) {
        const int bit = wrapAdd(startAddr, i);
        _DATA_ &record = unitRecord(cursor, bit / layout.bitsPerUnit);
        record.bitMonitorFlags = _setBitValue(record.bitMonitorFlags, bit % layout.bitsPerUnit, 1);
    }
}

void markMonitored(const RegisterWidths &widths, int stationNo, const QString &letter,
                   int startAddr, int count)
{
    const UnitLayout layout = unitLayout(widths);
    UnitCursor cursor(stationNo, letter, driver.dataArea);
    if (layout.isBitView()) {
        markBits(layout, cursor, startAddr, count);
    } else if (layout.unitsPerValue > 0) {
        markUnits(layout, cursor, startAddr, count);
    }
}

int _setDataAreaMonitorFlag(int stationNo, const QString &regName, int startAddr, int count)
{
    markMonitored(registerWidths(regName), stationNo, registerLetter(regName), startAddr, count);
    return 0;
}
