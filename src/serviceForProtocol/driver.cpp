#include "shared/protocol.h"

#include "ls_master_k_cnet/protocol_tables.h"

Protocol::Protocol() noexcept
    : valueChangeCallback(nullptr)
    , deviceNo(0)
    , cacheOnlyWrites(0)
    , property3(0)
    , maxRetries(0)
    , maxBlockWords(0)
    , shmBase(nullptr)
    , hostArg2(0)
    , rcpBuffer(nullptr)
    , shmMutex(nullptr)
    , lastVar(VARIABLE())
    , curVar(VARIABLE())
    , sendState(kJobIdle)
    , tryCount(0)
    , needHandshake(0)
    , failCount(0)
    , maxBlockBits(0)
    , maxBlockWordsCopy(0)
    , lastFailed(0)
    , curFrameIndex(0)
    , initDone(0)
    , rcpIndex(0)
    , readItemCount(0)
    , nextCyclicRead(0)
    , blockInFlight(-1)
    , valuesStamp(0)
    , answerSerial(0)
    , unstoredWrites(nullptr)
{
    curVar.regName = QLatin1String("");
    for (const QString &name : REG_LIST) {
        regNames.append(name);
    }
}

Protocol driver;
