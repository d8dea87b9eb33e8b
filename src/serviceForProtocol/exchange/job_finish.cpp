#include "serviceForProtocol/exchange/job_finish.h"

#include "serviceForProtocol/cache/change_notify.h"
#include "serviceForProtocol/recipe/recipe_request.h"
#include "shared/protocol.h"

static void finishWrite()
{
    QMutexLocker lock(&driver.listMutex);
    if (!driver.pendingWrites.isEmpty()) {
        driver.pendingWrites.removeFirst();
    }
}

static void finishConditionRead()
{
    const bool failed = driver.lastFailed != 0;
    if (!driver.conditionReads.isEmpty() &&
        isSameRequest(driver.conditionReads.at(0), driver.lastVar)) {
        notifyHost(-1, -1, QLatin1String("-1"), failed ? -1 : 0);
    }
    // The finished read is still the first one. Reads queued by the callback come after it, and are
    // dropped with the rest if this one failed.
    if (failed) {
        driver.conditionReads.clear();
    } else if (!driver.conditionReads.isEmpty()) {
        driver.conditionReads.removeFirst();
    }
}

static void finishCyclicRead()
{
    const int reads = static_cast<int>(driver.cyclicReads.size());
    driver.nextCyclicRead = driver.nextCyclicRead + 1 < reads ? driver.nextCyclicRead + 1 : 0;
}

static void finishRecipeBlock(RecipeRequestByte request)
{
    if (driver.lastFailed == 0) {
        ++driver.rcpIndex;
        if (driver.rcpIndex < driver.rcpBlocks.size()) {
            return;
        }
    }
    driver.rcpIndex = 0;
    clearRecipeRequest(request);
}

void dealListWhenFinish()
{
    switch (driver.sendState) {
    case kJobWrite:
        finishWrite();
        break;
    case kJobConditionRead:
        finishConditionRead();
        break;
    case kJobCyclicRead:
        finishCyclicRead();
        break;
    case kJobRecipeWrite:
        finishRecipeBlock(kRecipeWriteByte);
        break;
    case kJobRecipeRead:
        finishRecipeBlock(kRecipeReadByte);
        break;
    default: // idle and handshake have no list
        break;
    }
}
