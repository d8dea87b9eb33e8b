#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/toml/config_table.h"

#include <QString>

namespace cnet::gateway {

/** What is wrong with the name of a group, node, device or host of Sparkplug; empty: nothing. */
QString sparkplugIdMisfit(const QString &id);

/** A sink of the kind "sparkplug". @param folders of what it keeps, and of paths without one */
SparkplugSettings readSparkplug(ConfigTable &table, const ConfigFolders &folders);

} // namespace cnet::gateway
