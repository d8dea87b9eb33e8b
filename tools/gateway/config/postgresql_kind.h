#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/toml/config_table.h"

namespace cnet::gateway {

/** A sink of the kind "postgresql". @param folder of paths that do not begin with one */
PostgresqlSettings readPostgresql(ConfigTable &table, const QString &folder);

} // namespace cnet::gateway
