#include "serviceForProtocol/recipe/recipe_request.h"

#include "shared/protocol.h"

namespace {

/// The host's shared block, locked as the host locks it. A host that holds this lock may be waiting
/// to enter the driver, so nobody waits for it from inside.
class LockedBlock
{
public:
    /// @param block, lock  as the host handed them over, neither of them null
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
    const DriverExit m_outside; // before the lock is taken, and until it is given back

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
