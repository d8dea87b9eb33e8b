#pragma once

#include "host/tag/tag.h"
#include "host/value/typed_value.h"

#include <optional>

namespace cnet {

/**
 * A value as people read it, without its unit: with as many decimals as the scale has, a float with
 * the fewest digits that stand for it, an enum's text or its number where there is none, a string
 * in quotation marks with control characters as "\x0A". What is not known is a dash.
 */
QString typedText(const Tag &tag, const TypedValue &value);

/** With its unit, and with its fault in brackets: "12.5 mm/s", "- (wrong BCD digit)". */
QString shownText(const Tag &tag, const TypedValue &value);

/**
 * Reads what typedText() writes, and what people write: "12.5", "-3", "0x1F" of a whole type
 * without scale, "true", "on" and "1" of a truth, an enum's text in either case or its number, and
 * of a string text with or without quotation marks. Blanks around it do not count.
 *
 * @param error receives one sentence, with an example, when the result is empty
 */
std::optional<Scalar> parseTyped(const Tag &tag, const QString &text, QString &error);

} // namespace cnet
