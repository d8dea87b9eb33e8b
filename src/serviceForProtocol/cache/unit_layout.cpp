#include "serviceForProtocol/cache/unit_layout.h"

#include <algorithm>

#include "shared/unit_limits.h"

static UnitLayout wideLayout(int wordBits)
{
    const UnitLayout words = {2, 2, 2, 0};
    const UnitLayout bytes = {4, 1, 2, 0};
    const UnitLayout whole = {1, 4, 2, 0};
    if (wordBits == 16) {
        return words;
    }
    return wordBits == 8 ? bytes : whole;
}

static UnitLayout bitLayout(int wordBits)
{
    const UnitLayout words = {1, 2, 1, 16};
    const UnitLayout bytes = {1, 1, 1, 8};
    const UnitLayout none = {0, 1, 1, 0};
    if (wordBits == 16) {
        return words;
    }
    return wordBits == 8 ? bytes : none;
}

UnitLayout unitLayout(const RegisterWidths &widths)
{
    const UnitLayout bytePairs = {2, 1, 1, 0};
    const UnitLayout words = {1, 2, 1, 0};
    const UnitLayout single = {1, 1, 1, 0};
    const UnitLayout none = {0, 1, 1, 0};
    switch (widths.unitBits) {
    case 32:
        return wideLayout(widths.wordBits);
    case 16:
        return widths.wordBits == 8 ? bytePairs : words;
    case 1:
    case 8:
        return widths.bitName ? bitLayout(widths.wordBits) : single;
    default:
        return none;
    }
}

int UnitLayout::values(int count) const
{
    if (unitsPerValue == 0) {
        return 0;
    }
    const int limit = isBitView() ? kMaxBits : kMaxUnits;
    return std::max(0, std::min(count / countPerValue, limit));
}
