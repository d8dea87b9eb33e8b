#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/toml/config_table.h"

namespace cnet::gateway {

/** Reads [audit]. @param stateFolder of a file that is named without one */
AuditConfig readAudit(ConfigTable &root, const QString &stateFolder);

/** Reads [writes.NAME] of all lines. The tags are not looked for yet. */
void readWrites(ConfigTable &root, QVector<LineConfig> &lines);

} // namespace cnet::gateway
