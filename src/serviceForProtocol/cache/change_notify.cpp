#include "serviceForProtocol/cache/change_notify.h"

#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

/// A wider value that a unit may be part of: monitor bit `firstBit` says that the unit is its first
/// part, the next bit that it is the second, and so on.
struct WiderView
{
    ViewSuffix suffix;
    int firstBit;
    int lastBit;
};

/// The views in which a unit of one width is reported: its bits, itself, and wider values.
struct ChangeNotifier::UnitViews
{
    int bits;
    ViewSuffix unit;
    int widerCount;
    WiderView wider[2];
};

static const WiderView kNoView = {kPlainView, 0, 0};

static const ChangeNotifier::UnitViews kByteViews = {
    8,
    kByteView,
    2,
    {{kWordView, kWatchPairLow, kWatchPairHigh}, {kDoubleView, kWatchQuadFirst, kWatchQuadLast}}};
static const ChangeNotifier::UnitViews kWordViews = {
    16, kWordView, 1, {{kDoubleView, kWatchPairLow, kWatchPairHigh}, kNoView}};
static const ChangeNotifier::UnitViews kDoubleWordViews = {32, kPlainView, 0, {kNoView, kNoView}};
static const ChangeNotifier::UnitViews kContactViews = {0, kPlainView, 0, {kNoView, kNoView}};

// The bits to report: those that differ, or all if there is nothing to compare.
template <class Value>
static int changedBits(const Value *oldValue, const Value *newValue, int skipBits)
{
    if (skipBits != 0) {
        return 0;
    }
    return oldValue != nullptr && newValue != nullptr ? *oldValue ^ *newValue : ~0;
}

ChangeNotifier::ChangeNotifier()
    : m_names(nullptr)
{}

void ChangeNotifier::findNamesOf(const QString &letter)
{
    m_names = knownViewNames(letter);
    if (m_names == nullptr) {
        m_ownNames = makeViewNames(letter);
        m_names = &m_ownNames;
    }
}

void ChangeNotifier::reportAt(int index, const UnitViews &views, int changed)
{
    if (index >= 0 && index < driver.dataArea.size()) {
        report(driver.dataArea.at(index), views, changed);
    }
}

void ChangeNotifier::report(const _DATA_ &record, const UnitViews &views, int changed)
{
    // Copy what the calls need: they may change the data area.
    const Unit unit = {driver.deviceNo, record.stationNo, record.unitAddr, record.monitorFlags};
    const unsigned watchedBits = static_cast<unsigned>(record.bitMonitorFlags & changed);
    if ((unit.monitorFlags == 0 && watchedBits == 0) ||
        driver.valueChangeCallback.load(std::memory_order_relaxed) == nullptr) {
        return;
    }
    if (m_names == nullptr || m_names->letter.constData() != record.regPrefix.constData()) {
        findNamesOf(record.regPrefix);
    }
    const DriverExit outside;
    if (watchedBits != 0) {
        callBits(unit, views.bits, watchedBits);
    }
    if (bitOf(unit.monitorFlags, kWatchUnit) != 0) {
        call(unit, views.unit, unit.unitAddr);
    }
    if (unit.monitorFlags > 1 << kWatchUnit) {
        for (int i = 0; i < views.widerCount; ++i) {
            callWider(unit, views.wider[i]);
        }
    }
}

void ChangeNotifier::callBits(const Unit &unit, int bitsPerUnit, unsigned watchedBits)
{
    const int firstBit = wrapMul(unit.unitAddr, bitsPerUnit);
    unsigned watched = watchedBits;
    for (int i = 0; watched != 0 && i < bitsPerUnit; ++i, watched >>= 1) {
        if ((watched & 1U) != 0) {
            call(unit, kBitView, wrapAdd(firstBit, i));
        }
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

void ChangeNotifier::call(const Unit &unit, ViewSuffix suffix, int address)
{
    const ValueChangeCallback callback = driver.valueChangeCallback.load(std::memory_order_relaxed);
    if (callback == nullptr) {
        return; // removed during the previous call
    }
    const QString &name = m_names->names[suffix];
    if (m_hostsName.constData() != name.constData() || m_hostsName.size() != name.size()) {
        m_hostsName = name;
    }
    callback(unit.deviceNo, unit.stationNo, m_hostsName, address);
}

void ChangeNotifier::word(const int *oldValue, const int *newValue, int index, int skipBits)
{
    reportAt(index, kWordViews, changedBits(oldValue, newValue, skipBits));
}

void ChangeNotifier::byte(const unsigned char *oldValue, const unsigned char *newValue, int index,
                          int skipBits)
{
    reportAt(index, kByteViews, changedBits(oldValue, newValue, skipBits));
}

void ChangeNotifier::doubleWord(const int *oldValue, const int *newValue, int index, int skipBits)
{
    reportAt(index, kDoubleWordViews, changedBits(oldValue, newValue, skipBits));
}

void ChangeNotifier::bit(int index)
{
    reportAt(index, kContactViews, 0);
}

void ChangeNotifier::unitChanged(const _DATA_ &record, int bytes, int changed)
{
    if (bytes == 1) {
        report(record, kByteViews, changed);
    } else if (bytes == 2) {
        report(record, kWordViews, changed);
    } else {
        report(record, kDoubleWordViews, changed);
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
    if (index >= 0 && index < driver.dataArea.size()) {
        ChangeNotifier().unitChanged(driver.dataArea.at(index), bytes, oldNumber ^ newNumber);
    }
}

void notifyHost(int deviceNo, int stationNo, const QString &name, int address)
{
    const ValueChangeCallback callback = driver.valueChangeCallback.load(std::memory_order_relaxed);
    if (callback != nullptr) {
        QString hostsName = name;
        const DriverExit outside;
        callback(deviceNo, stationNo, hostsName, address);
    }
}
