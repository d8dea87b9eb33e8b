#pragma once

#include <QtCore/QList>
#include <QtCore/QVector>

#include "shared/data_record.h"

/// Finds a unit in a data area without walking it, so that an answer costs the same however much a
/// panel monitors. The area is the truth: what the index finds is compared with the record. It
/// expects an area that grows at its end and may be emptied; one whose last known record is another
/// one, or gone, is indexed anew. 6 to 16 bytes a unit. With the driver's lock held;
/// finding a unit that is known changes nothing.
class UnitIndex
{
public:
    /// @return  index of the record with that key, -1 when the area has none
    int find(const QList<_DATA_> &area, int stationNo, const QString &regPrefix, int unitAddr);

    /// Takes in what was appended to the area since the last call.
    void catchUp(const QList<_DATA_> &area);

private:
    int lookUp(const QList<_DATA_> &area, int stationNo, const QString &regPrefix,
               int unitAddr) const;
    void rebuild(const QList<_DATA_> &area);
    void insert(const QList<_DATA_> &area, int position);

    QVector<int> m_slots; ///< positions in the area, -1 free; a power of two of them, or none
    int m_known = 0;      ///< records of the area that are in the index
};

/// @return  true when the record is the unit with that key
bool isUnit(const _DATA_ &record, int stationNo, const QString &regPrefix, int unitAddr);
