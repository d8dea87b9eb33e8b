#include "serviceForProtocol/change_notify.h"

#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

namespace {

/// A wider value that a unit may be a part of: the unit is its first part when monitor bit
/// `firstBit` is set, its second when the next one is, and so on.
struct WiderView
{
    const char *suffix;
    int firstBit;
    int lastBit;
};

/// What the host must hear of one record. It is a copy: a callback may change the data area.
class Notifier
{
public:
    explicit Notifier(int index)
        : m_record(driver.dataArea.at(index))
    {}

    void bits(bool compare, int difference, int bitsPerUnit) const
    {
        const int watched = m_record.bitMonitorFlags & (compare ? difference : ~0);
        for (int i = 0; watched != 0 && i < bitsPerUnit; ++i) {
            if (bitOf(watched, i) != 0) {
                call("_bit", wrapAdd(wrapMul(m_record.unitAddr, bitsPerUnit), i));
            }
        }
    }

    void unit(const char *suffix) const
    {
        if (bitOf(m_record.monitorFlags, kWatchUnit) != 0) {
            call(suffix, m_record.unitAddr);
        }
    }

    void wider(const WiderView &view) const
    {
        int address = m_record.unitAddr;
        for (int bit = view.firstBit; bit <= view.lastBit && address >= 0; ++bit, --address) {
            if (bitOf(m_record.monitorFlags, bit) != 0) {
                call(view.suffix, address);
            }
        }
    }

private:
    void call(const char *suffix, int address) const
    {
        if (driver.valueChangeCallback != nullptr) {
            notifyHost(driver.deviceNo, m_record.stationNo,
                       m_record.regPrefix + QLatin1String(suffix), address);
        }
    }

    const _DATA_ m_record;
};

} // namespace

static const WiderView kDoubleWordOfWords = {"_D", kWatchPairLow, kWatchPairHigh};
static const WiderView kWordOfBytes = {"_W", kWatchPairLow, kWatchPairHigh};
static const WiderView kDoubleWordOfBytes = {"_D", kWatchQuadFirst, kWatchQuadLast};

static bool isInArea(int index)
{
    return index >= 0 && index < driver.dataArea.size();
}

static int differenceOf(const int *oldValue, const int *newValue)
{
    return oldValue != nullptr && newValue != nullptr ? *oldValue ^ *newValue : 0;
}

void notifyHost(int deviceNo, int stationNo, const QString &name, int address)
{
    if (driver.valueChangeCallback != nullptr) {
        QString hostsName = name;
        driver.valueChangeCallback(deviceNo, stationNo, hostsName, address);
    }
}

void _wordDataChange(const int *oldValue, const int *newValue, int index, int skipBits)
{
    if (!isInArea(index)) {
        return;
    }
    const Notifier notifier(index);
    if (skipBits == 0) {
        notifier.bits(oldValue != nullptr && newValue != nullptr, differenceOf(oldValue, newValue),
                      16);
    }
    notifier.unit("_W");
    notifier.wider(kDoubleWordOfWords);
}

void _byteDataChange(const unsigned char *oldValue, const unsigned char *newValue, int index,
                     int skipBits)
{
    if (!isInArea(index)) {
        return;
    }
    const Notifier notifier(index);
    if (skipBits == 0) {
        const bool compare = oldValue != nullptr && newValue != nullptr;
        notifier.bits(compare, compare ? *oldValue ^ *newValue : 0, 8);
    }
    notifier.unit("_B");
    notifier.wider(kWordOfBytes);
    notifier.wider(kDoubleWordOfBytes);
}

void _dwordDataChange(const int *oldValue, const int *newValue, int index, int skipBits)
{
    if (!isInArea(index)) {
        return;
    }
    const Notifier notifier(index);
    if (skipBits == 0) {
        notifier.bits(oldValue != nullptr && newValue != nullptr, differenceOf(oldValue, newValue),
                      32);
    }
    notifier.unit("");
}

void _bitDataChange(int index)
{
    if (isInArea(index)) {
        Notifier(index).unit("");
    }
}

void notifyUnitChange(int bytes, int oldNumber, int newNumber, int index)
{
    if (bytes == 1) {
        const unsigned char oldByte = static_cast<unsigned char>(oldNumber);
        const unsigned char newByte = static_cast<unsigned char>(newNumber);
        _byteDataChange(&oldByte, &newByte, index, 0);
    } else if (bytes == 2) {
        _wordDataChange(&oldNumber, &newNumber, index, 0);
    } else {
        _dwordDataChange(&oldNumber, &newNumber, index, 0);
    }
}
