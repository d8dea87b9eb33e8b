#include "panel/recipe_area.h"

#include <QMutexLocker>

namespace panel {

namespace {

// Places of the two request bytes in the shared block.
const int kWriteRequest = 60115;
const int kReadRequest = 60116;

int requestPlace(RecipeDirection direction)
{
    return direction == RecipeDirection::Write ? kWriteRequest : kReadRequest;
}

bool isWord(int index)
{
    return index >= 0 && index < DriverSession::kRecipeWords;
}

} // namespace

void RecipeArea::request(RecipeDirection direction)
{
    const QMutexLocker lock(&m_driver.sharedBlockLock());
    m_driver.sharedBlock()[requestPlace(direction)] = 1;
}

bool RecipeArea::isRequested(RecipeDirection direction)
{
    const QMutexLocker lock(&m_driver.sharedBlockLock());
    return m_driver.sharedBlock()[requestPlace(direction)] != 0;
}

void RecipeArea::clearRequests()
{
    const QMutexLocker lock(&m_driver.sharedBlockLock());
    m_driver.sharedBlock()[kWriteRequest] = 0;
    m_driver.sharedBlock()[kReadRequest] = 0;
}

void RecipeArea::setWord(int index, quint16 value)
{
    if (isWord(index)) {
        unsigned char *const bytes = m_driver.recipeBuffer() + 2 * index;
        bytes[0] = static_cast<unsigned char>(value & 0xFF);
        bytes[1] = static_cast<unsigned char>(value >> 8);
    }
}

quint16 RecipeArea::word(int index)
{
    if (!isWord(index)) {
        return 0;
    }
    const unsigned char *const bytes = m_driver.recipeBuffer() + 2 * index;
    return static_cast<quint16>(bytes[0] | bytes[1] << 8);
}

} // namespace panel
