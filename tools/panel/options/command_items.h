#pragma once

#include "host/tag/tag.h"
#include "panel/options/invocation.h"
#include "panel/options/tag_input.h"

#include <QVector>

namespace cnet::panel {

/**
 * Reads the items on a command's line and in the lists that it names, and has the driver check
 * their addresses.
 *
 * @param station of items that name none
 * @param error receives one sentence when the result is false: an item is wrong, or there is none
 */
bool readItems(const Invocation &invocation, int station, QVector<Tag> &tags, QString &error);

/**
 * The same for a command with --tags: behind it stand names, groups and patterns instead of items,
 * and none at all for all tags.
 *
 * @param choice its station is of items and tags that name none; receives the file and the words,
 * where there is a file
 */
bool readTags(const Invocation &invocation, TagChoice &choice, ChosenTags &chosen, QString &error);

/** Where they are. */
QVector<Item> itemsOf(const QVector<Tag> &tags);

} // namespace cnet::panel
