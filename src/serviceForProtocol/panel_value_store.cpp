#include "serviceForProtocol/panel_value_store.h"

#include "serviceForProtocol/change_notify.h"
#include "serviceForProtocol/data_area.h"
#include "serviceForProtocol/unit_layout.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

namespace {

/// One panel write: the range as the panel named it.
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

static void notifyChange(const PanelWrite &write, int bytes, int before, int after, int index)
{
    if (write.widths.wordBits == 1) {
        _bitDataChange(index);
    } else {
        notifyUnitChange(bytes, before, after, index);
    }
}

static void storeUnit(const PanelWrite &write, int unitAddr, int bytes, int number)
{
    const int index = indexOf(write, unitAddr);
    const int before = unitNumber(currentBytes(driver.dataArea.at(index)), bytes);
    if (before != number) {
        notifyChange(write, bytes, before, number, index);
    }
    // The host was called: the area may have grown or been emptied since.
    _DATA_ &record = driver.dataArea[indexOf(write, unitAddr)];
    setUnitNumber(record.writeValue, bytes, number);
    record.writePending = 1;
}

// The high unit of a pair of words goes first; bytes go in ascending order.
static void storeUnits(const PanelWrite &write, const UnitLayout &layout, const unsigned char *data)
{
    const int bytes = layout.bytesPerUnit;
    const int perValue = layout.unitsPerValue;
    const bool highFirst = perValue == 2 && bytes == 2;
    const int units = layout.values(write.count) * perValue;
    for (int i = 0; i < units; ++i) {
        const int unit = highFirst ? i ^ 1 : i;
        storeUnit(write, wrapAdd(write.startAddr, unit), bytes,
                  unitNumber(data + unit * bytes, bytes));
    }
}

static int countQueued(const PanelWrite &write)
{
    QMutexLocker lock(&driver.listMutex);
    int queued = 0;
    for (int i = 0; i < driver.pendingWrites.size(); ++i) {
        const VARIABLE &item = driver.pendingWrites.at(i);
        if (item.stationNo == write.stationNo && item.startAddr == write.startAddr &&
            item.count == write.count && item.regName == write.regName) {
            ++queued;
        }
    }
    return queued;
}

// Remembers that a write of this bit is queued, and when it is the second of its kind, that too:
// the first answer then settles the first write and leaves the bit pending.
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

static void storeBits(const PanelWrite &write, const UnitLayout &layout, const unsigned char *data)
{
    const int bits = layout.values(write.count);
    for (int i = 0; i < bits; ++i) {
        const int address = wrapAdd(write.startAddr, i);
        const int unitAddr = address / layout.bitsPerUnit;
        const int bit = address % layout.bitsPerUnit;
        const _DATA_ &record = driver.dataArea.at(indexOf(write, unitAddr));
        const int before = unitNumber(currentBytes(record), layout.bytesPerUnit);
        const int after = _setBitValue(before, bit, data[i] == 1 ? 1 : 0);
        storeUnit(write, unitAddr, layout.bytesPerUnit, after);
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
