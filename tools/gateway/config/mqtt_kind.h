#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/toml/config_table.h"

namespace cnet::gateway {

/**
 * Reads how brokers are reached: what all kinds of sinks at a broker have in common.
 * @param folder of files that are named without one
 */
MqttConnectionSettings readMqttConnection(ConfigTable &table, const QString &folder);

/** Reads what is published, and where. */
MqttSettings readMqtt(ConfigTable &table, const ConfigFolders &folders);

} // namespace cnet::gateway
