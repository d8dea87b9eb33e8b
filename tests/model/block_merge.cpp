#include "model/block_merge.h"

#include "model/register_name.h"

#include <algorithm>
#include <functional>

namespace model {

namespace {

/** Station, register and address in one number; it wraps, and negative stations come last. */
std::uint32_t weight(const Range &range)
{
    const auto place = static_cast<std::uint32_t>(registerPlace(range.name));
    return (static_cast<std::uint32_t>(range.station) * 16U + place) * 65535U +
           static_cast<std::uint32_t>(range.start);
}

bool isLighter(const Range &a, const Range &b)
{
    return weight(a) < weight(b);
}

/** A bit range becomes the words that it touches, as the driver counts them. */
Range inWords(Range range)
{
    const auto bar = range.name.find('_');
    if (bar == std::string::npos || range.name.find('_', bar + 1) != std::string::npos) {
        return range;
    }
    if (range.name.substr(bar) == "_bit") {
        range.count += range.start % 16;
        range.count = range.count / 16 + (range.count % 16 != 0 ? 1 : 0);
        range.start /= 16;
    }
    range.name = deviceLetter(range.name) + "_W";
    return range;
}

/** May the range join the block, over a gap of at most `mostGap` units? */
bool mayJoin(const Range &block, const Range &next, int mostGap)
{
    if (block.station != next.station || block.name != next.name) {
        return false;
    }
    if (next.start - (block.start + block.count) > mostGap) {
        return false;
    }
    return !isContact(block.name) || block.start == next.start;
}

/** One walk over the ranges; `begins` hears the index of each block's first range. */
std::vector<Range> joinNeighbours(const std::vector<Range> &ranges, int mostGap, int mostWords,
                                  const std::function<void(std::size_t)> &begins)
{
    std::vector<Range> blocks;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        const Range &next = ranges[i];
        if (!blocks.empty() && mayJoin(blocks.back(), next, mostGap)) {
            Range &block = blocks.back();
            const int span = next.start + next.count - block.start;
            if (span <= mostWords) {
                block.count = std::max(block.count, span);
                continue;
            }
        }
        blocks.push_back(next);
        begins(i);
    }
    return blocks;
}

} // namespace

std::vector<Range> mergeMonitored(const std::vector<Range> &keys, int mostWords)
{
    std::vector<Range> ranges;
    std::transform(keys.begin(), keys.end(), std::back_inserter(ranges), inWords);
    std::stable_sort(ranges.begin(), ranges.end(), isLighter);
    const auto ignore = [](std::size_t) {};
    ranges = joinNeighbours(ranges, 0, mostWords, ignore);
    return joinNeighbours(ranges, mostWords, mostWords, ignore);
}

void sortParts(std::vector<RecipePart> &parts)
{
    std::stable_sort(parts.begin(), parts.end(), [](const RecipePart &a, const RecipePart &b) {
        return isLighter(a.range, b.range);
    });
}

std::vector<RecipeBlock> mergeRecipe(const std::vector<RecipePart> &parts, int mostWords)
{
    std::vector<Range> ranges;
    std::transform(parts.begin(), parts.end(), std::back_inserter(ranges),
                   [](const RecipePart &part) { return part.range; });
    std::vector<RecipeBlock> blocks;
    const std::vector<Range> whole =
        joinNeighbours(ranges, 0, mostWords, [&blocks, &parts](std::size_t i) {
            blocks.push_back({{Range(), parts[i].place}, i});
        });
    for (std::size_t i = 0; i < whole.size(); ++i) {
        blocks[i].whole.range = whole[i];
    }
    return blocks;
}

} // namespace model
