#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/records.h"

/// A panel write that is queued while its values are not stored yet, whatever ends it. It stands in
/// the list of all of them, which end in any order: each thread has its own. With
/// `Protocol::stateLock` held.
class UnstoredWrite
{
public:
    /// The write, as `intf_setData` has it.
    UnstoredWrite(int stationNo, const QString &regName, int startAddr, int count);
    ~UnstoredWrite();

    /// @return  true when `item` is a piece of this write, or an earlier write of the same place
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

/// @return  true while a panel write of the place of `item` is told to the host, and so not stored
bool isUnstored(const VARIABLE &item);
