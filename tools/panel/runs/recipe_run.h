#pragma once

#include "panel/system/messages.h"
#include "host/recipe/recipe_area.h"
#include "host/recipe/recipe_file.h"
#include "panel/commands/link_settings.h"

namespace cnet::panel {

/**
 * Transfers a recipe, with a progress bar where standard error is a terminal, and says how it
 * ended.
 *
 * @param items of which no two overlap, with addresses checked; of a write with their values
 * @param values of a read that went well: receives the words of each item
 * @return exit code
 */
int runRecipe(const DriverFunctions &driver, const LinkSettings &link,
              const RegisterCatalog &registers, const QVector<RecipeItem> &items,
              RecipeDirection direction, Messages &messages, QVector<QVector<quint16>> &values);

} // namespace cnet::panel
