#pragma once

#include "host/address/register_catalog.h"
#include "host/tag/tag.h"
#include "host/value/typed_value.h"

#include <QVector>

#include <optional>

namespace cnet {

/**
 * Reads "ITEM@TYPE[*SCALE][+OFFSET|-OFFSET]", for example "D_W:0*4@i16*0.1-5", or an item without a
 * type, which is raw. A count before the "@" counts values of the type; without one it counts
 * words, bits or contacts.
 *
 * The addresses are not checked by the driver yet: Driver::check() does that for the tag's item.
 *
 * @param defaultStation station of an item that names none
 * @param error receives one sentence, with an example, when the result is empty
 * @return a tag without a name
 */
std::optional<Tag> parseTypedItem(const QString &text, int defaultStation,
                                  const RegisterCatalog &registers, QString &error);

/** The text that parseTypedItem() takes for a tag's place, type and scale. */
QString typedItemText(const Tag &tag);

/** Of one value of a tag: "1/D_W:102@f32". @param index from 0 */
QString typedItemText(const Tag &tag, int index);

/** What a tag is called: its name, or typedItemText() where it has none. */
QString tagText(const Tag &tag);

/** Of one value of a tag: of an array "mould.zones[2]" or "1/D_W:102@f32". @param index from 0 */
QString tagText(const Tag &tag, int index);

/** True where words or bits are handed on as they are, under the item's own text: without a name.
 */
bool isPlain(const Tag &tag);

/** Values that the user wants a tag to have, in the tag's unit. */
struct TypedAssignment
{
    Tag tag;
    QVector<Scalar> values; ///< as many as the tag counts
};

/**
 * Reads "ITEM@TYPE=VALUE[,VALUE...]", with values as parseTyped() takes them. An item without a
 * count has as many values as are given; one with a count takes as many, or one for all.
 */
std::optional<TypedAssignment> parseTypedAssignment(const QString &text, int defaultStation,
                                                    const RegisterCatalog &registers,
                                                    QString &error);

/**
 * Reads "VALUE[,VALUE...]" for a tag, with values as parseTyped() takes them: as many as it counts,
 * or one for all.
 */
std::optional<TypedAssignment> parseTagValues(const Tag &tag, const QString &list, QString &error);

/** True where an item or an assignment has a type: an "@" in front of any "=". */
bool hasType(const QString &text);

} // namespace cnet
