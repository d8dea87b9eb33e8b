#include "ls_master_k_cnet/ls_master_k_cnet.h"

#include <cstring>

#include "ls_master_k_cnet/cnet_frame.h"
#include "ls_master_k_cnet/read_frame.h"
#include "ls_master_k_cnet/write_frame.h"
#include "serviceForProtocol/exchange/known_block.h"
#include "serviceForProtocol/recipe/recipe.h"
#include "serviceForProtocol/recipe/recipe_request.h"
#include "serviceForProtocol/request/unstored_write.h"
#include "shared/protocol.h"
#include "shared/request_copy.h"

// Writes and condition reads share one counter, reset by each cyclic read, so that neither starves
// the screen: at most ten writes in a row, and condition reads only while fewer than three jobs of
// either kind have been sent.
enum { kWritesInARow = 10, kConditionReadsInARow = 3 };

static void buildHandshake()
{
    driver.sendState = kJobHandshake;
    handShakeFrame();
}

static void buildWrite()
{
    driver.readItemCount = 1;
    getWriteFrame(driver.curVar);
}

static int buildRead()
{
    if (driver.curReadList.size() == 1) {
        driver.curReadList[0] = driver.curVar;
    } else {
        driver.curReadList.clear();
        driver.curReadList.append(driver.curVar);
    }
    driver.readItemCount = 1;
    return getReadFrame(driver.curReadList);
}

static void buildConditionOrRecipeRead()
{
    driver.readItemCount = buildRead();
}

static void pickWrite()
{
    driver.curVar = driver.pendingWrites.at(0);
    driver.sendState = kJobWrite;
    ++driver.tryCount;
    buildWrite();
}

static void pickConditionRead()
{
    driver.curVar = driver.conditionReads.at(0);
    driver.sendState = kJobConditionRead;
    ++driver.tryCount;
    buildConditionOrRecipeRead();
}

static void pickCyclicRead()
{
    if (driver.sendState != kJobCyclicRead) {
        std::memset(driver.curVar.data, 0, sizeof driver.curVar.data); // reads have no values
    }
    driver.sendState = kJobCyclicRead;
    driver.tryCount = 0;
    driver.readItemCount = 1;
    if (!repeatRequest()) {
        driver.curVar = driver.cyclicReads.at(driver.nextCyclicRead);
        buildRead();
        keepRequest();
    }
}

static void becomeIdle()
{
    driver.tryCount = 0;
    driver.sendState = kJobIdle;
}

// A write whose callback is still running on another thread blocks the queue until its value is
// stored: its answer would settle a value that is not there yet.
static bool isWriteDue()
{
    return !driver.pendingWrites.isEmpty() && driver.tryCount < kWritesInARow &&
           !isUnstored(driver.pendingWrites.at(0));
}

static void pickPanelJob()
{
    if (isWriteDue()) {
        pickWrite();
    } else if (!driver.conditionReads.isEmpty() && driver.tryCount < kConditionReadsInARow) {
        pickConditionRead();
    } else if (driver.nextCyclicRead < driver.cyclicReads.size()) {
        pickCyclicRead();
    } else {
        becomeIdle();
    }
}

// A recipe transfer is requested but there are no blocks: the last job is sent again.
static void repeatLastJob()
{
    switch (driver.sendState) {
    case kJobHandshake:
        handShakeFrame();
        break;
    case kJobWrite:
    case kJobRecipeWrite:
        buildWrite();
        break;
    case kJobConditionRead:
    case kJobRecipeRead:
        buildConditionOrRecipeRead();
        break;
    case kJobCyclicRead:
        buildRead();
        break;
    default: // nothing was sent yet
        break;
    }
}

static void pickRecipeJob(const RecipeRequests &requests)
{
    if (driver.rcpIndex < 0 || driver.rcpIndex >= driver.rcpBlocks.size()) {
        repeatLastJob();
        return;
    }
    rcpAddrToVar(driver.rcpBlocks.at(driver.rcpIndex), driver.curVar, requests.write ? 1 : 0);
    if (requests.write) {
        driver.sendState = kJobRecipeWrite;
        buildWrite();
    } else {
        driver.sendState = kJobRecipeRead;
        buildConditionOrRecipeRead();
    }
}

static void buildNextJob()
{
    const RecipeRequests requests = readRecipeRequests();
    driver.blockInFlight = -1;
    if (driver.needHandshake != 0) {
        buildHandshake();
    } else if (requests.write || requests.read) {
        pickRecipeJob(requests);
    } else {
        pickPanelJob();
    }
}

int intf_getSendFrame(FRAME_PRO &out)
{
    const DriverEntry inside;
    if (driver.frames.isEmpty()) {
        buildNextJob();
    }
    if (driver.frames.isEmpty()) {
        return 0;
    }
    copyFrame(out, driver.frames.at(0));
    return 1;
}
