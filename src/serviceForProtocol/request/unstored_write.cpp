#include "serviceForProtocol/request/unstored_write.h"

#include "shared/protocol.h"

UnstoredWrite::UnstoredWrite(int stationNo, const QString &regName, int startAddr, int count)
    : m_stationNo(stationNo)
    , m_regName(regName)
    , m_startAddr(startAddr)
    , m_count(count)
    , m_next(driver.unstoredWrites)
{
    driver.unstoredWrites = this;
}

UnstoredWrite::~UnstoredWrite()
{
    UnstoredWrite **place = &driver.unstoredWrites;
    while (*place != this) {
        place = &(*place)->m_next;
    }
    *place = m_next;
}

bool UnstoredWrite::covers(const VARIABLE &item) const
{
    return static_cast<unsigned>(item.startAddr) - static_cast<unsigned>(m_startAddr) <
               static_cast<unsigned>(m_count) &&
           item.stationNo == m_stationNo && item.regName == m_regName;
}

bool isUnstored(const VARIABLE &item)
{
    for (const UnstoredWrite *write = driver.unstoredWrites; write != nullptr;
         write = write->next()) {
        if (write->covers(item)) {
            return true;
        }
    }
    return false;
}
