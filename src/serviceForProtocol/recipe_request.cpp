#include "serviceForProtocol/recipe_request.h"

#include "shared/protocol.h"

static bool isRecipePossible()
{
    return driver.shmBase != nullptr && driver.shmMutex != nullptr && driver.rcpBuffer != nullptr;
}

RecipeRequests readRecipeRequests()
{
    RecipeRequests requests = {false, false};
    if (isRecipePossible()) {
        QMutexLocker lock(driver.shmMutex);
        requests.write = driver.shmBase[kRecipeWriteByte] == 1;
        requests.read = driver.shmBase[kRecipeReadByte] == 1;
    }
    return requests;
}

void clearRecipeRequest(RecipeRequestByte byte)
{
    if (isRecipePossible()) {
        QMutexLocker lock(driver.shmMutex);
        driver.shmBase[byte] = 0;
    }
}
