#pragma once

#include "gateway/config/gateway_config.h"

#include "host/driver/driver.h"
#include "host/tag/tag_set.h"
#include "host/tagfile/tag_file.h"

#include <QString>

#include <optional>

namespace cnet::gateway {

/**
 * Reads the tag file of a line, whatever is wrong with it.
 * @param error receives one sentence when the result is empty: the file cannot be read
 */
std::optional<TagFile> readLineTags(const LineConfig &line, const Driver &driver, QString &error);

/** The stations that tags are on, each once, rising. */
QVector<int> stationsOf(const TagSet &tags);

} // namespace cnet::gateway
