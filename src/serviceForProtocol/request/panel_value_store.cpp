#include "serviceForProtocol/request/panel_value_store.h"

#include "serviceForProtocol/cache/change_notify.h"
#include "serviceForProtocol/cache/data_area.h"
#include "serviceForProtocol/cache/unit_layout.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

namespace {

/// The range of one panel write, as the panel named it.
struct PanelWrite
{
    RegisterWidths widths;
    int stationNo;
    QString regName;
    QString letter;
    int startAddr;
    int count;
};

} // namespace

static int indexOf(const PanelWrite &write, int unitAddr)
{
    return getIndexOfDataArea(write.stationNo, write.letter, unitAddr, driver.dataArea);
}

static int currentNumber(const PanelWrite &write, int unitAddr, int bytes)
{
    return unitNumber(currentBytes(driver.dataArea.at(indexOf(write, unitAddr))), bytes);
}

// Units smaller than a word, such as contacts, are reported with the width of their word.
static void notifyChange(const PanelWrite &write, const UnitLayout &layout, int unitAddr,
                         int before, int after)
{
    const int index = indexOf(write, unitAddr);
    const bool isSingle = write.widths.unitBits < 16 && !layout.isBitView();
    if (isSingle && write.widths.wordBits == 1) {
        _bitDataChange(index);
    } else {
        notifyUnitChange(isSingle ? write.widths.wordBits / 8 : layout.bytesPerUnit, before, after,
                         index);
    }
}

// Looks up the record again: the host may have been called, and the area may have grown.
static void storeNumber(const PanelWrite &write, int unitAddr, int bytes, int number)
{
    _DATA_ &record = driver.dataArea[indexOf(write, unitAddr)];
    setUnitNumber(record.writeValue, bytes, number);
    record.writePending = 1;
}

// Stores the value that was reported to the host, even if the host wrote to the unit meanwhile.
static void storeUnit(const PanelWrite &write, const UnitLayout &layout, int unitAddr, int before,
                      int after)
{
    if (before != after) {
        notifyChange(write, layout, unitAddr, before, after);
    }
    storeNumber(write, unitAddr, layout.bytesPerUnit, after);
}

// Of a pair of words, the high one is stored first; bytes are stored in ascending order.
static void storeUnits(const PanelWrite &write, const UnitLayout &layout, const unsigned char *data)
{
    const int bytes = layout.bytesPerUnit;
    const int perValue = layout.unitsPerValue;
    const bool highFirst = perValue == 2 && bytes == 2;
    const int units = layout.values(write.count) * perValue;
    for (int i = 0; i < units; ++i) {
        const int unit = highFirst ? i ^ 1 : i;
        const int unitAddr = wrapAdd(write.startAddr, unit);
        storeUnit(write, layout, unitAddr, currentNumber(write, unitAddr, bytes),
                  unitNumber(data + unit * bytes, bytes));
    }
}

static int countQueued(const PanelWrite &write)
{
    QMutexLocker lock(&driver.listMutex);
    const QList<VARIABLE> &writes = driver.pendingWrites;
    int queued = 0;
    for (const VARIABLE &item : writes) {
        if (isRequestFor(item, write.stationNo, write.regName, write.startAddr, write.count)) {
            ++queued;
        }
    }
    return queued;
}

// Marks the bit as queued for writing, and separately if this is the second write of its range:
// then the first answer settles the first write and the bit stays pending.
static void markBitPending(const PanelWrite &write, int unitAddr, int bit)
{
    const bool alreadyPending =
        bitOf(driver.dataArea.at(indexOf(write, unitAddr)).pendingBits, 2 * bit) != 0;
    const bool isSecond = alreadyPending && countQueued(write) == 2;
    if (!alreadyPending || isSecond) {
        _DATA_ &record = driver.dataArea[indexOf(write, unitAddr)];
        record.pendingBits = _setBitValue(record.pendingBits, 2 * bit + (isSecond ? 1 : 0), 1);
    }
}

static void storeBit(const PanelWrite &write, const UnitLayout &layout, int unitAddr, int bit,
                     int on)
{
    const int before = currentNumber(write, unitAddr, layout.bytesPerUnit);
    storeUnit(write, layout, unitAddr, before, _setBitValue(before, bit, on));
}

static void storeBits(const PanelWrite &write, const UnitLayout &layout, const unsigned char *data)
{
    const int bits = layout.values(write.count);
    for (int i = 0; i < bits; ++i) {
        const int address = wrapAdd(write.startAddr, i);
        const int unitAddr = address / layout.bitsPerUnit;
        const int bit = address % layout.bitsPerUnit;
        storeBit(write, layout, unitAddr, bit, data[i] == 1 ? 1 : 0);
        markBitPending(write, unitAddr, bit);
    }
}

void storePanelValues(const RegisterWidths &widths, int stationNo, const QString &regName,
                      int startAddr, int count, const unsigned char *data)
{
    const PanelWrite write = {widths,    stationNo, regName, registerLetter(regName),
                              startAddr, count};
    const UnitLayout layout = unitLayout(widths);
    if (layout.isBitView()) {
        storeBits(write, layout, data);
    } else {
        storeUnits(write, layout, data);
    }
}

void write_saveDataToArea(int stationNo, const QString &regName, int startAddr, int count,
                          const unsigned char *data)
{
    storePanelValues(registerWidths(regName), stationNo, regName, startAddr, count, data);
}
