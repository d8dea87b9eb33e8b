#include "host/tag/tag_values.h"

#include "host/tag/scaling.h"
#include "host/value/value_codec.h"

#include <algorithm>
#include <cmath>

namespace cnet {

namespace {

Quality qualityOf(const TypedValue &value, bool isKnown, Quality all)
{
    const bool isFine = all == Quality::Good || all == Quality::Waiting;
    if (!isKnown) {
        return all == Quality::Good ? Quality::NeverRead : all;
    }
    return isFine && value.fault != ValueFault::None ? Quality::Implausible : all;
}

} // namespace

QVector<TagValue> readTag(const Tag &tag, const QVector<quint16> &units, const QVector<bool> &known,
                          Quality quality)
{
    const int step = tag.type.unitsPerValue();
    QVector<TagValue> values;
    for (int i = 0; i < tag.count; ++i) {
        const int first = i * step;
        const bool isKnown = first + step <= std::min(units.size(), known.size()) &&
                             std::all_of(known.cbegin() + first, known.cbegin() + first + step,
                                         [](bool unit) { return unit; });
        TagValue own;
        if (isKnown) {
            own.units = units.mid(first, step);
            own.value = scaledValue(tag, decodeValue(tag.type, own.units));
        }
        own.quality = qualityOf(own.value, isKnown, quality);
        values.append(own);
    }
    return values;
}

QVector<TagValue> readTag(const Tag &tag, const ItemState &state)
{
    QVector<quint16> units;
    QVector<bool> known;
    for (const ItemValue &value : state.values) {
        units.append(value.shown());
        known.append(value.isShown());
    }
    return readTag(tag, units, known, state.quality);
}

bool isChange(const Tag &tag, const TypedValue &before, const TypedValue &now)
{
    const bool sameFault = before.fault == now.fault;
    if (!tag.deadband || !sameFault || !isNumber(before.value) || !isNumber(now.value)) {
        return before != now;
    }
    const double difference = approximately(now.value) - approximately(before.value);
    return before != now && std::fabs(difference) >= *tag.deadband;
}

} // namespace cnet
