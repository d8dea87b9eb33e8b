#include "serviceForProtocol/cache/unit_index.h"

enum { kFreeSlot = -1, kSmallestTable = 256 };

bool isUnit(const _DATA_ &record, int stationNo, const QString &regPrefix, int unitAddr)
{
    return record.unitAddr == unitAddr && record.stationNo == stationNo &&
           record.regPrefix == regPrefix;
}

// The odd factors spread adjacent addresses, of which an area mostly consists.
static unsigned hashOf(int stationNo, const QString &regPrefix, int unitAddr)
{
    const unsigned letter = regPrefix.isEmpty() ? 0U : regPrefix.at(0).unicode();
    const unsigned mixed = static_cast<unsigned>(unitAddr) * 2654435761U +
                           static_cast<unsigned>(stationNo) * 2246822519U + letter * 3266489917U;
    return mixed ^ mixed >> 15;
}

int UnitIndex::find(const QList<_DATA_> &area, int stationNo, const QString &regPrefix,
                    int unitAddr)
{
    // A hit is compared with the record itself, so it is right even if the index is out of date.
    const int found = lookUp(area, stationNo, regPrefix, unitAddr);
    if (found >= 0) {
        return found;
    }
    catchUp(area);
    return lookUp(area, stationNo, regPrefix, unitAddr);
}

int UnitIndex::lookUp(const QList<_DATA_> &area, int stationNo, const QString &regPrefix,
                      int unitAddr) const
{
    if (m_slots.isEmpty()) {
        return -1;
    }
    const unsigned mask = static_cast<unsigned>(m_slots.size()) - 1U;
    unsigned slot = hashOf(stationNo, regPrefix, unitAddr) & mask;
    for (;; slot = (slot + 1U) & mask) { // terminates: at least a third of the slots is free
        const int position = m_slots.at(static_cast<int>(slot));
        if (position == kFreeSlot) {
            return -1;
        }
        if (position < area.size() && isUnit(area.at(position), stationNo, regPrefix, unitAddr)) {
            return position;
        }
    }
}

void UnitIndex::catchUp(const QList<_DATA_> &area)
{
    const int size = static_cast<int>(area.size());
    if (size < m_known) {
        rebuild(area);
    }
    if (m_known > 0) {
        const _DATA_ &last = area.at(m_known - 1);
        if (lookUp(area, last.stationNo, last.regPrefix, last.unitAddr) != m_known - 1) {
            rebuild(area);
        }
    }
    while (m_known < size) {
        if ((m_known + 1) * 3LL > m_slots.size() * 2LL) {
            rebuild(area);
        } else {
            insert(area, m_known++);
        }
    }
}

void UnitIndex::rebuild(const QList<_DATA_> &area)
{
    const int size = static_cast<int>(area.size());
    int slots = kSmallestTable;
    while (slots < size * 2LL) {
        slots *= 2;
    }
    m_slots = QVector<int>(size == 0 ? 0 : slots, kFreeSlot);
    for (m_known = 0; m_known < size; ++m_known) {
        insert(area, m_known);
    }
}

void UnitIndex::insert(const QList<_DATA_> &area, int position)
{
    const _DATA_ &record = area.at(position);
    const unsigned mask = static_cast<unsigned>(m_slots.size()) - 1U;
    unsigned slot = hashOf(record.stationNo, record.regPrefix, record.unitAddr) & mask;
    while (m_slots.at(static_cast<int>(slot)) != kFreeSlot) {
        slot = (slot + 1U) & mask;
    }
    m_slots[static_cast<int>(slot)] = position;
}
