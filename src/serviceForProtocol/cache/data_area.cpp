#include "serviceForProtocol/cache/data_area.h"

#include "serviceForProtocol/cache/unit_index.h"

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
    static UnitIndex index;
    int found = index.find(area, stationNo, regPrefix, unitAddr);
    if (found < 0) {
        found = appendUnit(stationNo, regPrefix, unitAddr, area);
        index.catchUp(area);
    }
    return found;
}

int UnitCursor::search(int unitAddr) const
{
    return getIndexOfDataArea(m_stationNo, m_letter, unitAddr, m_area);
}

const unsigned char *currentBytes(const _DATA_ &record)
{
    return record.writePending == 1 ? record.writeValue : record.readValue;
}
