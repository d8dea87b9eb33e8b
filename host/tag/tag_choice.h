#pragma once

#include "host/address/register_catalog.h"
#include "host/tag/tag_set.h"

#include <QString>
#include <QVector>

#include <optional>

namespace cnet {

/** One value of an array as a tag of its own, "mould.zones[2]". @param index from 0 */
Tag oneValue(const Tag &tag, int index);

/**
 * The one tag that a word stands for: the name of a tag, or one value of an array,
 * "mould.zones[2]", counted from 0.
 *
 * @param error receives one sentence when the result is empty
 */
std::optional<Tag> oneTag(const QString &word, const TagSet &tags, QString &error);

/**
 * The tags that a word stands for: what oneTag() and TagSet::select() take, or an item without a
 * name, "D_W:100@f32", whose address the driver has not checked yet. No name has a colon, and every
 * item has one.
 *
 * @param station of an item that names none
 * @param error receives one sentence when the result is empty
 */
std::optional<QVector<Tag>> tagsOrItem(const QString &word, const TagSet &tags, int station,
                                       const RegisterCatalog &registers, QString &error);

} // namespace cnet
