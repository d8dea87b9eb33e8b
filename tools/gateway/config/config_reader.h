#pragma once

#include "gateway/config/gateway_config.h"

#include "host/text/finding.h"

#include <QByteArray>

#include <optional>

namespace cnet::gateway {

/**
 * Reads the configuration, and finds all that is wrong with it. The tag files are not looked into.
 *
 * @param content TOML
 * @param findings receives each mistake with its place
 * @return what could be understood; to be used where there is no mistake
 */
GatewayConfig understoodConfig(const QByteArray &content, const ConfigFolders &folders,
                               Findings &findings);

/** The same. @return nothing where there is a mistake */
std::optional<GatewayConfig> readConfig(const QByteArray &content, const ConfigFolders &folders,
                                        Findings &findings);

/** What the gateway does without a configuration: a simulated press line, stored in a folder. */
GatewayConfig demoConfig(const QString &tagFile, const QString &stateFolder);

} // namespace cnet::gateway
