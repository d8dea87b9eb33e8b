#pragma once

#include "host/tag/tag.h"
#include "host/value/typed_value.h"

#include <optional>

namespace cnet {

/**
 * Whether the scale of a tag can be used with its type: finite, not 0, and of numbers only.
 * @return empty, or why not, in one sentence with an example
 */
QString scaleMisfit(const Tag &tag);

/**
 * A value as people have it: raw * scale + offset, and checked against the tag's bounds.
 *
 * Whole numbers stay whole, and exact to the last of 64 bits, where scale and offset are whole.
 * Otherwise the result is the number of decimals that scale and offset have, 12.3 and not
 * 12.300000000000001; beyond fifteen digits it is ValueFault::TooLarge.
 */
TypedValue scaledValue(const Tag &tag, const TypedValue &raw);

/**
 * The inverse, for a write: what stands in the words where people have `wanted`.
 *
 * Of a whole type it is rounded to the nearest step, halves away from zero, where the tag has a
 * scale: with a scale of 0.1, 12.34 is written as 12.3. Without a scale nothing is rounded. It is
 * not checked against the range of the type; encodeValue() does that.
 *
 * @param error receives one sentence when the result is empty: beyond the bounds, or not a number
 */
std::optional<Scalar> unscaledValue(const Tag &tag, const Scalar &wanted, QString &error);

/** Decimals that scaled values have, 0 to kMostDecimals; of types that are whole. */
int decimalsOf(const Tag &tag);
constexpr int kMostDecimals = 15;

} // namespace cnet
