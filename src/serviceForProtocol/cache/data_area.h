#pragma once

#include <QtCore/QList>

#include "shared/bytes.h"
#include "shared/data_record.h"
#include "shared/wrap.h"

/// Look-up in the cache of PLC values. With the driver's lock held.

/// Finds the record of a unit, and appends an empty one when there is none yet.
///
/// @param regPrefix  register letter, compared exactly
/// @param unitAddr   number of the word, byte or contact
/// @param area       `driver.dataArea`
/// @return           index of the record; it stays valid until the area is cleared
int getIndexOfDataArea(int stationNo, const QString &regPrefix, int unitAddr, QList<_DATA_> &area);

/// Finds the units of one register letter of one station in turn. The units of a block mostly lie
/// in the area in the order of their addresses, so that the place of the last one tells that of the
/// next; where it does not, the unit is searched for. What it finds is what `getIndexOfDataArea`
/// finds: a key has one record at most. The area may grow between two calls.
class UnitCursor
{
public:
    /// @param letter  and `area` must outlive the cursor
    UnitCursor(int stationNo, const QString &letter, QList<_DATA_> &area)
        : m_stationNo(stationNo)
        , m_letter(letter)
        , m_area(area)
        , m_last(kNotFound)
        , m_lastAddr(0)
    {}

    /// @return  where a unit would be if the area were in the order of addresses
    int likelyIndexOf(int unitAddr) const { return wrapAdd(m_last, wrapSub(unitAddr, m_lastAddr)); }

    /// Where a unit was before.
    void startAt(int unitAddr, int index)
    {
        m_last = index;
        m_lastAddr = unitAddr;
    }

    /// @return  as `getIndexOfDataArea`
    int indexOf(int unitAddr)
    {
        const int likely = likelyIndexOf(unitAddr);
        m_last = isAt(likely, unitAddr) ? likely : search(unitAddr);
        m_lastAddr = unitAddr;
        return m_last;
    }

private:
    enum { kNotFound = -1 };

    // The letters of one register share their text, so its place tells them without a comparison of
    // characters.
    bool isAt(int position, int unitAddr) const
    {
        if (position < 0 || position >= m_area.size()) {
            return false;
        }
        const _DATA_ &record = m_area.at(position);
        return record.unitAddr == unitAddr && record.stationNo == m_stationNo &&
               record.regPrefix.constData() == m_letter.constData();
    }

    int search(int unitAddr) const;

    const int m_stationNo;
    const QString &m_letter;
    QList<_DATA_> &m_area;
    int m_last;     ///< index found last
    int m_lastAddr; ///< unit that it is of

    Q_DISABLE_COPY(UnitCursor)
};

/// How far ahead of the unit in hand the next ones of a block are fetched.
enum { kUnitsAhead = 8 };

/// Asks the processor for a record that will be looked at soon: those of a large area lie outside
/// its cache. Any index will do.
inline void fetchAhead(const QList<_DATA_> &area, int index)
{
    if (index >= 0 && index < area.size()) {
        __builtin_prefetch(&area.at(index));
    }
}

/// @return  the bytes that count now: the panel's while its write is pending, else the PLC's
const unsigned char *currentBytes(const _DATA_ &record);

/// @param bytes  1, 2 or 4, the width of a unit
/// @return       the unit's bytes as a number, low byte first; 16-bit units are 0-65535
inline int unitNumber(const unsigned char *value, int bytes)
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

/// Stores a number into a unit's bytes, low byte first.
inline void setUnitNumber(unsigned char *value, int bytes, int number)
{
    const unsigned bits = static_cast<unsigned>(number);
    for (int i = 0; i < bytes && i < 4; ++i) {
        value[i] = static_cast<unsigned char>(bits >> (8 * i));
    }
}
