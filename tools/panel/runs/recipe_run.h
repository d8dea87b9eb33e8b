#pragma once

#include "host/driver/driver.h"
#include "host/recipe/recipe_file.h"
#include "host/recipe/recipe_job.h"
#include "panel/options/link_settings.h"
#include "panel/system/messages.h"

namespace cnet::panel {

/** A recipe and what is to be done with it. */
struct RecipeRun
{
    QVector<RecipeItem> items;
    RecipeDirection direction = RecipeDirection::Write;
    Verify verify = Verify::Yes;
};

/**
 * Transfers a recipe, shows its progress, and says how it ended.
 *
 * @param values receives those of each item, as read
 * @return exit code
 */
int runRecipe(Driver &driver, const LinkSettings &link, const RecipeRun &run, Messages &messages,
              QVector<QVector<quint16>> &values);

} // namespace cnet::panel
