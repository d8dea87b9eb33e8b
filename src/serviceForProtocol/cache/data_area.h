#pragma once

#include <QtCore/QList>

#include "shared/bytes.h"
#include "shared/data_record.h"
#include "shared/wrap.h"

/// Look-up in the cache of PLC values. Hold the driver's lock.

/// Finds the record of a unit, and appends an empty one if there is none yet.
///
/// @param regPrefix  register letter, compared exactly
/// @param unitAddr   number of the word, byte or contact
/// @param area       `driver.dataArea`
/// @return           index of the record; it stays valid until the area is cleared
int getIndexOfDataArea(int stationNo, const QString &regPrefix, int unitAddr, QList<_DATA_> &area);

/// Finds consecutive units of one register letter of one station quickly. The units of a block are
/// usually in the order of their addresses, so the index of the last one predicts the next. If the
/// prediction fails, the unit is searched. The results are those of `getIndexOfDataArea`. The area
/// may grow between two calls.
class UnitCursor
{
public:
    /// @param letter  must outlive the cursor, like `area`
    UnitCursor(int stationNo, const QString &letter, QList<_DATA_> &area)
        : m_stationNo(stationNo)
        , m_letter(letter)
        , m_area(area)
        , m_last(kNotFound)
        , m_lastAddr(0)
    {}

    /// @return  the predicted index of a unit; it may be invalid
    int likelyIndexOf(int unitAddr) const { return wrapAdd(m_last, wrapSub(unitAddr, m_lastAddr)); }

    /// Sets the index at which a unit was found before.
    void startAt(int unitAddr, int index)
    {
        m_last = index;
        m_lastAddr = unitAddr;
    }

    /// @return  the same as `getIndexOfDataArea`
    int indexOf(int unitAddr)
    {
        const int likely = likelyIndexOf(unitAddr);
        m_last = isAt(likely, unitAddr) ? likely : search(unitAddr);
        m_lastAddr = unitAddr;
        return m_last;
    }

private:
    enum { kNotFound = -1 };

    // The letters of one register share their text, so comparing its address is enough.
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
    int m_last;     ///< last index found
    int m_lastAddr; ///< address of its unit

    Q_DISABLE_COPY(UnitCursor)
};

/// How many units ahead the records of a block are prefetched.
enum { kUnitsAhead = 8 };

/// Prefetches a record that is needed soon: the records of a large area do not fit the processor's
/// cache. Any index is allowed.
inline void fetchAhead(const QList<_DATA_> &area, int index)
{
    if (index >= 0 && index < area.size()) {
        __builtin_prefetch(&area.at(index));
    }
}

/// @return  the current bytes: the panel's while its write is pending, else the PLC's
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
