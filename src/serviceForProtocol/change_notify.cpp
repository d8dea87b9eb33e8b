#include "serviceForProtocol/change_notify.h"

#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

/// What the host must hear of one record. It is a copy: a callback may change the data area.
struct ChangeNotifier::Unit
{
    int stationNo;
    int unitAddr;
    int monitorFlags;
    int bitMonitorFlags;
    const ViewNames *names;
};

/// A wider value that a unit may be a part of: the unit is its first part when monitor bit
/// `firstBit` is set, its second when the next one is, and so on.
struct ChangeNotifier::WiderView
{
    ViewSuffix suffix;
    int firstBit;
    int lastBit;
};

static bool isInArea(int index)
{
    return index >= 0 && index < driver.dataArea.size();
}

// Which bits to report: those that differ, or all when there is nothing to compare.
template <class Value>
static int changedBits(const Value *oldValue, const Value *newValue)
{
    return oldValue != nullptr && newValue != nullptr ? *oldValue ^ *newValue : ~0;
}

ChangeNotifier::ChangeNotifier()
    : m_names(nullptr)
{}

ChangeNotifier::Unit ChangeNotifier::unitAt(int index)
{
    const _DATA_ &record = driver.dataArea.at(index);
    if (m_names == nullptr || m_names->letter.constData() != record.regPrefix.constData()) {
        m_names = knownViewNames(record.regPrefix);
        if (m_names == nullptr) {
            m_ownNames = makeViewNames(record.regPrefix);
            m_names = &m_ownNames;
        }
    }
    const Unit unit = {record.stationNo, record.unitAddr, record.monitorFlags,
                       record.bitMonitorFlags, m_names};
    return unit;
}

void ChangeNotifier::call(const Unit &unit, ViewSuffix suffix, int address)
{
    const ValueChangeCallback callback = driver.valueChangeCallback;
    if (callback == nullptr) {
        return;
    }
    const int deviceNo = driver.deviceNo;
    const QString &name = unit.names->names[suffix];
    if (m_hostsName.constData() != name.constData() || m_hostsName.size() != name.size()) {
        m_hostsName = name;
    }
    const DriverExit outside;
    callback(deviceNo, unit.stationNo, m_hostsName, address);
}

void ChangeNotifier::callBits(const Unit &unit, int changed, int bitsPerUnit)
{
    const int firstBit = wrapMul(unit.unitAddr, bitsPerUnit);
    unsigned watched = static_cast<unsigned>(unit.bitMonitorFlags & changed);
    for (int i = 0; watched != 0 && i < bitsPerUnit; ++i, watched >>= 1) {
        if ((watched & 1U) != 0) {
            call(unit, kBitView, wrapAdd(firstBit, i));
        }
    }
}

void ChangeNotifier::callUnit(const Unit &unit, ViewSuffix suffix)
{
    if (bitOf(unit.monitorFlags, kWatchUnit) != 0) {
        call(unit, suffix, unit.unitAddr);
    }
}

void ChangeNotifier::callWider(const Unit &unit, const WiderView &view)
{
    int address = unit.unitAddr;
    for (int bit = view.firstBit; bit <= view.lastBit && address >= 0; ++bit, --address) {
        if (bitOf(unit.monitorFlags, bit) != 0) {
            call(unit, view.suffix, address);
        }
    }
}

void ChangeNotifier::word(const int *oldValue, const int *newValue, int index, int skipBits)
{
    static const WiderView kDoubleWord = {kDoubleView, kWatchPairLow, kWatchPairHigh};
    if (!isInArea(index)) {
        return;
    }
    const Unit unit = unitAt(index);
    if (skipBits == 0) {
        callBits(unit, changedBits(oldValue, newValue), 16);
    }
    callUnit(unit, kWordView);
    callWider(unit, kDoubleWord);
}

void ChangeNotifier::byte(const unsigned char *oldValue, const unsigned char *newValue, int index,
                          int skipBits)
{
    static const WiderView kWord = {kWordView, kWatchPairLow, kWatchPairHigh};
    static const WiderView kDoubleWord = {kDoubleView, kWatchQuadFirst, kWatchQuadLast};
    if (!isInArea(index)) {
        return;
    }
    const Unit unit = unitAt(index);
    if (skipBits == 0) {
        callBits(unit, changedBits(oldValue, newValue), 8);
    }
    callUnit(unit, kByteView);
    callWider(unit, kWord);
    callWider(unit, kDoubleWord);
}

void ChangeNotifier::doubleWord(const int *oldValue, const int *newValue, int index, int skipBits)
{
    if (!isInArea(index)) {
        return;
    }
    const Unit unit = unitAt(index);
    if (skipBits == 0) {
        callBits(unit, changedBits(oldValue, newValue), 32);
    }
    callUnit(unit, kPlainView);
}

void ChangeNotifier::bit(int index)
{
    if (isInArea(index)) {
        callUnit(unitAt(index), kPlainView);
    }
}

void ChangeNotifier::unitChanged(int bytes, int oldNumber, int newNumber, int index)
{
    if (bytes == 1) {
        const unsigned char oldByte = static_cast<unsigned char>(oldNumber);
        const unsigned char newByte = static_cast<unsigned char>(newNumber);
        byte(&oldByte, &newByte, index, 0);
    } else if (bytes == 2) {
        word(&oldNumber, &newNumber, index, 0);
    } else {
        doubleWord(&oldNumber, &newNumber, index, 0);
    }
}

void _wordDataChange(const int *oldValue, const int *newValue, int index, int skipBits)
{
    ChangeNotifier().word(oldValue, newValue, index, skipBits);
}

void _byteDataChange(const unsigned char *oldValue, const unsigned char *newValue, int index,
                     int skipBits)
{
    ChangeNotifier().byte(oldValue, newValue, index, skipBits);
}

void _dwordDataChange(const int *oldValue, const int *newValue, int index, int skipBits)
{
    ChangeNotifier().doubleWord(oldValue, newValue, index, skipBits);
}

void _bitDataChange(int index)
{
    ChangeNotifier().bit(index);
}

void notifyUnitChange(int bytes, int oldNumber, int newNumber, int index)
{
    ChangeNotifier().unitChanged(bytes, oldNumber, newNumber, index);
}

void notifyHost(int deviceNo, int stationNo, const QString &name, int address)
{
    const ValueChangeCallback callback = driver.valueChangeCallback;
    if (callback != nullptr) {
        QString hostsName = name;
        const DriverExit outside;
        callback(deviceNo, stationNo, hostsName, address);
    }
}
