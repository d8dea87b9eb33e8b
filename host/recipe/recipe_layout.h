#pragma once

#include "host/driver/driver_library.h"
#include "host/recipe/recipe_file.h"

#include <QVector>

namespace cnet {

/** A recipe as the driver takes it, and where its values lie in the recipe buffer. */
struct RecipeLayout
{
    QVector<_RCP_VAR_PRO> items;
    QVector<int> firstWord; ///< of each item of the file, in the buffer
    int words = 0;
};

/**
 * Lays a recipe out in the recipe buffer.
 *
 * The driver merges items that touch into one block, and such a block takes its values from the
 * buffer in one piece, from where its first item has them. So the values lie in the order of the
 * addresses, by station and register, without gaps, whatever the order of the file.
 *
 * The driver merges but never cuts: items are cut where a block is full.
 *
 * @param items of which no two overlap
 * @param registers gives the order of the registers
 * @param blockWords words of a block, at least 1
 */
RecipeLayout layOutRecipe(const QVector<RecipeItem> &items, const RegisterCatalog &registers,
                          int deviceNumber, int blockWords);

} // namespace cnet
