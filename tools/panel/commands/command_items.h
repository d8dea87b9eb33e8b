#pragma once

#include "host/address/item.h"
#include "panel/commands/commands.h"

#include <QVector>

namespace cnet::panel {

/**
 * Reads the items on a command's line and has the driver check their addresses.
 *
 * @param station of items that name none
 * @param error receives one sentence when the result is false: an item is wrong, or there is none
 */
bool readItems(const Invocation &invocation, int station, QVector<Item> &items, QString &error);

} // namespace cnet::panel
