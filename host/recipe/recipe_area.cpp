#include "host/recipe/recipe_area.h"

#include <QMutexLocker>

namespace cnet {

namespace {

int requestPlace(RecipeDirection direction)
{
    return direction == RecipeDirection::Write ? kRecipeWriteByte : kRecipeReadByte;
}

bool isWord(int index)
{
    return index >= 0 && index < DriverCore::kRecipeWords;
}

} // namespace

void RecipeArea::request(RecipeDirection direction)
{
    const QMutexLocker lock(&m_driver.sharedBlockLock());
    m_driver.sharedBlock()[requestPlace(direction)] = kRecipeRequested;
}

bool RecipeArea::isRequested(RecipeDirection direction)
{
    const QMutexLocker lock(&m_driver.sharedBlockLock());
    return m_driver.sharedBlock()[requestPlace(direction)] != 0;
}

void RecipeArea::clearRequests()
{
    const QMutexLocker lock(&m_driver.sharedBlockLock());
    m_driver.sharedBlock()[kRecipeWriteByte] = 0;
    m_driver.sharedBlock()[kRecipeReadByte] = 0;
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

} // namespace cnet
