#include "serviceForProtocol/data_area.h"

#include "shared/bytes.h"

static bool isUnit(const _DATA_ &record, int stationNo, const QString &regPrefix, int unitAddr)
{
    return record.unitAddr == unitAddr && record.stationNo == stationNo &&
           record.regPrefix == regPrefix;
}

static int appendUnit(int stationNo, const QString &regPrefix, int unitAddr, QList<_DATA_> &area)
{
    _DATA_ record = _DATA_();
    record.stationNo = stationNo;
    record.regPrefix = regPrefix;
    record.unitAddr = unitAddr;
    area.append(record);
    return static_cast<int>(area.size()) - 1;
}

int getIndexOfDataArea(int stationNo, const QString &regPrefix, int unitAddr, QList<_DATA_> &area)
{
    // The units of a block are asked for in turn and lie in the area in that order. A key has one
    // record at most, so it does not matter where the search begins.
    static int lastFound = 0;
    const int size = static_cast<int>(area.size());
    for (int guess = lastFound; guess <= lastFound + 1 && guess < size; ++guess) {
        if (isUnit(area.at(guess), stationNo, regPrefix, unitAddr)) {
            lastFound = guess;
            return guess;
        }
    }
    for (int i = 0; i < size; ++i) {
        if (isUnit(area.at(i), stationNo, regPrefix, unitAddr)) {
            lastFound = i;
            return i;
        }
    }
    lastFound = appendUnit(stationNo, regPrefix, unitAddr, area);
    return lastFound;
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
