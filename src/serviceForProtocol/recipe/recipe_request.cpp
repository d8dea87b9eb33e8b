#include "serviceForProtocol/recipe/recipe_request.h"

#include "shared/protocol.h"

namespace {

/// The host's shared block, with the host's mutex locked. A host that holds this mutex may be
/// waiting to enter the driver, so the driver's lock is released first.
class LockedBlock
{
public:
    /// @param block  the host's, not null, like `lock`
    LockedBlock(unsigned char *block, QMutex *lock)
        : m_block(block)
        , m_lock(lock)
    {
        m_lock->lock();
    }

    ~LockedBlock() { m_lock->unlock(); }

    unsigned char &at(RecipeRequestByte byte) { return m_block[byte]; }

private:
    unsigned char *const m_block;
    QMutex *const m_lock;
    const DriverExit m_outside; // from before the mutex is locked until it is unlocked

    Q_DISABLE_COPY(LockedBlock)
};

} // namespace

static bool isRecipePossible()
{
    return driver.shmBase != nullptr && driver.shmMutex != nullptr && driver.rcpBuffer != nullptr;
}

RecipeRequests readRecipeRequests()
{
    RecipeRequests requests = {false, false};
    if (isRecipePossible()) {
        LockedBlock block(driver.shmBase, driver.shmMutex);
        requests.write = block.at(kRecipeWriteByte) == kRecipeRequested;
        requests.read = block.at(kRecipeReadByte) == kRecipeRequested;
    }
    return requests;
}

void clearRecipeRequest(RecipeRequestByte byte)
{
    if (isRecipePossible()) {
        LockedBlock block(driver.shmBase, driver.shmMutex);
        block.at(byte) = 0;
    }
}
