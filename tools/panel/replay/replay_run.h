#pragma once

#include "host/recording/recording.h"
#include "panel/options/link_settings.h"
#include "panel/output/monitor_output.h"
#include "panel/system/messages.h"

#include <vector>

namespace cnet::panel {

/** Requests of a capture, and how they are sent again. */
struct ReplayOptions
{
    std::vector<RecordedExchange> exchanges; ///< at least one
    double speed = 1; ///< above 0: how much faster than they were sent; infinite: at once
    OutputFormat format = OutputFormat::Text; ///< text or JSON
};

/**
 * Sends the requests over the link, one after the other, and prints where an answer is another one
 * than was recorded.
 *
 * @return exit code: kDeviceFailed where there is a difference, or not all was sent
 */
int runReplay(const LinkSettings &link, const ReplayOptions &options, Messages &messages);

} // namespace cnet::panel
