#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace cnet::gateway {

/**
 * What a gateway says of itself, for a terminal.
 * @param json its page /status
 * @return nothing where that is no such page
 */
std::optional<QString> statusTextOf(const QByteArray &json);

} // namespace cnet::gateway
