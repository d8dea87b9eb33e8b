#pragma once

#include "host/monitor/item_state.h"
#include "host/monitor/quality.h"
#include "host/tag/tag.h"
#include "host/value/typed_value.h"

#include <QVector>

namespace cnet {

/** One value of a tag as it was read. */
struct TagValue
{
    TypedValue value;
    QVector<quint16> units; ///< its words as they came; empty where not all of them are known
    Quality quality = Quality::NeverRead;
};

/**
 * What the words of an item say about a tag's values, scaled and checked.
 *
 * @param units words, or 0 and 1, as many as the tag's item counts
 * @param known of each unit: it was read
 * @param quality of all of them; of a value that is not known it is NeverRead where this is Good,
 * and of one whose words make no sense Implausible where this is Good or Waiting
 */
QVector<TagValue> readTag(const Tag &tag, const QVector<quint16> &units, const QVector<bool> &known,
                          Quality quality);

/** Of a watched item; values that wait for the PLC count. @param state of the tag's own item */
QVector<TagValue> readTag(const Tag &tag, const ItemState &state);

/**
 * Whether a value differs by enough to tell of it: by the tag's deadband where it has one and both
 * are numbers, else at all.
 */
bool isChange(const Tag &tag, const TypedValue &before, const TypedValue &now);

} // namespace cnet
