#pragma once

#include "support/exchange_helpers.h"
#include "support/recipe_helpers.h"

/// Jobs of each kind that wait for their turn, in the order of their priority.
enum Waiting {
    kHandshake = 1,
    kRecipeWrite = 2,
    kRecipeRead = 4,
    kWrite = 8,
    kConditionRead = 16,
    kCyclicRead = 32
};

inline void setRecipe()
{
    QVector<_RCP_VAR_PRO> items = recipeItems("1 T_W 1 1 1; 1 T_W 3 1 3");
    intf_setRcpAddress(items);
}

inline void setWaiting(int waiting)
{
    driver.needHandshake = waiting & kHandshake;
    driver.shmBase[kRecipeWriteByte] = (waiting & kRecipeWrite) != 0 ? 1 : 0;
    driver.shmBase[kRecipeReadByte] = (waiting & kRecipeRead) != 0 ? 1 : 0;
    if ((waiting & kWrite) != 0) {
        queueWrites(1, 1);
    }
    if ((waiting & kConditionRead) != 0) {
        queueReads(driver.conditionReads, "K_W", 1, 1);
    }
    if ((waiting & kCyclicRead) != 0) {
        queueReads(driver.cyclicReads, "M_W", 1, 1);
    }
}
