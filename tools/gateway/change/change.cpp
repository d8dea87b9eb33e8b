#include "gateway/change/change.h"

#include <tuple>

namespace cnet::gateway {

namespace {

bool isSameSource(const ChangeSource &left, const ChangeSource &right)
{
    const auto all = [](const ChangeSource &source) {
        return std::tie(source.line, source.station, source.tag, source.unit, source.type,
                        source.scale, source.offset);
    };
    return all(left) == all(right);
}

} // namespace

bool operator==(const Change &left, const Change &right)
{
    const auto all = [](const Change &change) {
        return std::tie(change.value, change.quality, change.cause, change.atMs);
    };
    return isSameSource(*left.source, *right.source) && all(left) == all(right);
}

} // namespace cnet::gateway
