#pragma once

#include "host/recipe/recipe_file.h"
#include "host/text/finding.h"

#include <QString>
#include <QVector>

namespace cnet::view {

/** What a recipe file is read with. */
struct RecipeReading
{
    int station = 1; ///< of lines that name none, 0 to 31
    const RegisterCatalog &registers;
    RecipeFile::AddressCheck check;
};

/** The most mistakes that are looked for in a file. */
constexpr int kMostMistakes = 20;

/**
 * Reads a file whose values may be missing.
 * @param content whatever the file holds
 * @param mistakes receives the first ones of the file, each with its place, when the result is
 * empty
 */
std::optional<RecipeFile> readRecipe(const QByteArray &content, const RecipeReading &reading,
                                     QVector<Finding> &mistakes);

} // namespace cnet::view
