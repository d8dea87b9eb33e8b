#pragma once

#include <QtCore/QList>
#include <QtCore/QVector>

#include "shared/data_record.h"

/// A hash index that finds a unit in a data area, so an answer costs the same however much a panel
/// monitors. Every hit is compared with the record. The area is expected to grow at its end and to
/// be emptied; if the last known record has changed or is gone, the index is rebuilt. It takes 6 to
/// 16 bytes per unit. Hold the driver's lock; finding a known unit changes nothing.
class UnitIndex
{
public:
    /// @return  index of the record with that key, -1 if there is none
    int find(const QList<_DATA_> &area, int stationNo, const QString &regPrefix, int unitAddr);

    /// Adds the records that were appended to the area since the last call.
    void catchUp(const QList<_DATA_> &area);

private:
    int lookUp(const QList<_DATA_> &area, int stationNo, const QString &regPrefix,
               int unitAddr) const;
    void rebuild(const QList<_DATA_> &area);
    void insert(const QList<_DATA_> &area, int position);

    QVector<int> m_slots; ///< positions in the area, -1: free; the size is a power of two or 0
    int m_known = 0;      ///< records of the area that are in the index
};

/// @return  true if the record is the unit with that key
bool isUnit(const _DATA_ &record, int stationNo, const QString &regPrefix, int unitAddr);
