#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/toml/config_table.h"

namespace cnet::gateway {

/** "password_file" and "password_credential" of a sink. @param folder of paths that do not begin
 * with one */
Secret readSecretKeys(ConfigTable &table, const QString &folder);

} // namespace cnet::gateway
