#include "serviceForProtocol/data_area.h"

#include <atomic>

#include "serviceForProtocol/unit_index.h"
#include "shared/bytes.h"

static int appendUnit(int stationNo, const QString &regPrefix, int unitAddr, QList<_DATA_> &area)
{
    _DATA_ record = _DATA_();
    record.stationNo = stationNo;
    record.regPrefix = regPrefix;
    record.unitAddr = unitAddr;
    area.append(record);
    return static_cast<int>(area.size()) - 1;
}

// The place found last or the one behind it, if the unit is there; else -1.
static int guessedIndex(int last, int stationNo, const QString &regPrefix, int unitAddr,
                        const QList<_DATA_> &area)
{
    const int size = static_cast<int>(area.size());
    for (int guess = last; guess <= last + 1 && guess < size; ++guess) {
        if (isUnit(area.at(guess), stationNo, regPrefix, unitAddr)) {
            return guess;
        }
    }
    return -1;
}

int getIndexOfDataArea(int stationNo, const QString &regPrefix, int unitAddr, QList<_DATA_> &area)
{
    static UnitIndex index;
    static std::atomic<int> lastFound(0);
    // The units of a block are asked for in turn and mostly lie in the area in that order. A key
    // has one record at most, so it does not matter where the search begins.
    const int last = lastFound.load(std::memory_order_relaxed);
    int found = guessedIndex(last, stationNo, regPrefix, unitAddr, area);
    if (found < 0) {
        found = index.find(area, stationNo, regPrefix, unitAddr);
    }
    if (found < 0) {
        found = appendUnit(stationNo, regPrefix, unitAddr, area);
        index.catchUp(area);
    }
    if (found != last) {
        lastFound.store(found, std::memory_order_relaxed);
    }
    return found;
}

const unsigned char *currentBytes(const _DATA_ &record)
{
    return record.writePending == 1 ? record.writeValue : record.readValue;
}

int unitNumber(const unsigned char *value, int bytes)
{
    switch (bytes) {
    case 1:
        return value[0];
    case 2:
        return uchar2int16(value[0], value[1]);
    default:
        return uchar2int32(value[0], value[1], value[2], value[3]);
    }
}

void setUnitNumber(unsigned char *value, int bytes, int number)
{
    const unsigned bits = static_cast<unsigned>(number);
    for (int i = 0; i < bytes && i < 4; ++i) {
        value[i] = static_cast<unsigned char>(bits >> (8 * i));
    }
}
