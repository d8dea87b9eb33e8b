#pragma once

#include "host/tag/tag.h"
#include "panel/commands/commands.h"

#include <QVector>

namespace cnet::panel {

/**
 * Reads the items on a command's line and in the lists that it names, and has the driver check
 * their addresses.
 *
 * @param station of items that name none
 * @param error receives one sentence when the result is false: an item is wrong, or there is none
 */
bool readTags(const Invocation &invocation, int station, QVector<Tag> &tags, QString &error);

/** Where they are. */
QVector<Item> itemsOf(const QVector<Tag> &tags);

} // namespace cnet::panel
