#pragma once

#include "host/scan/scan_options.h"
#include "panel/options/link_settings.h"
#include "panel/output/monitor_output.h"
#include "panel/system/messages.h"

namespace cnet::panel {

/**
 * Scans the line and prints each station when all is known of it.
 *
 * @param link whose own line settings do not count; those of the options do
 * @return exit code
 */
int runScan(const LinkSettings &link, const ScanOptions &options, OutputFormat format,
            Messages &messages);

} // namespace cnet::panel
