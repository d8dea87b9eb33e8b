#pragma once

#include "gateway/config/gateway_config.h"

#include <QByteArray>

#include <optional>

namespace cnet::gateway {

/**
 * Reads a password where it is kept, each time anew, so that it can be changed meanwhile. A line
 * end behind it does not belong to it.
 * @param error receives why, without the password, when the result is empty
 */
std::optional<QByteArray> readSecret(const Secret &secret, QString &error);

} // namespace cnet::gateway
