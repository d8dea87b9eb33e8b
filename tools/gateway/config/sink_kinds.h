#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/toml/config_table.h"

#include <optional>

namespace cnet::gateway {

/**
 * Reads the settings of a sink, by its kind.
 * @param folders of files that are named without one
 * @return nothing where the kind is wrong: what belongs to it nobody knows
 */
std::optional<SinkSettings> readSink(ConfigTable &table, const ConfigFolders &folders);

/** The sink of a configuration that names none: history.sqlite. */
SinkConfig usualSink(const QString &stateFolder);

} // namespace cnet::gateway
