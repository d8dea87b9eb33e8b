#pragma once

#include <vector>

#include "model/item.h"

namespace model {

/** A range of a recipe, and where in the buffer its values stand. */
struct RecipePart
{
    Range range;
    int place = 0;
};

/** A run of recipe parts that travels in one request. */
struct RecipeBlock
{
    RecipePart whole;
    std::size_t firstPart = 0;
};

/** The block reads that serve the monitored ranges, as few as `mostWords` allows. */
std::vector<Range> mergeMonitored(const std::vector<Range> &keys, int mostWords);

/** Sorts the parts by station, register and address. */
void sortParts(std::vector<RecipePart> &parts);

/** The blocks of sorted parts: only what touches or overlaps goes together. */
std::vector<RecipeBlock> mergeRecipe(const std::vector<RecipePart> &parts, int mostWords);

} // namespace model
