#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/records.h"

/// A panel write whose values are queued but not stored in the cache yet. It links itself into the
/// list `driver.unstoredWrites` and removes itself again, in any order: each thread may have one.
/// Hold `Protocol::stateLock`.
class UnstoredWrite
{
public:
    /// @param regName  and the others: as passed to `intf_setData`
    UnstoredWrite(int stationNo, const QString &regName, int startAddr, int count);
    ~UnstoredWrite();

    /// @return  true if `item` is a piece of this write, or an earlier write of the same address
    bool covers(const VARIABLE &item) const;

    const UnstoredWrite *next() const { return m_next; }

private:
    const int m_stationNo;
    const QString m_regName;
    const int m_startAddr;
    const int m_count;
    UnstoredWrite *m_next;

    Q_DISABLE_COPY(UnstoredWrite)
};

/// @return  true while a panel write of the address of `item` is not stored yet, because the host
/// is
///          being notified
bool isUnstored(const VARIABLE &item);
