#pragma once

#include "host/exchange/raw_exchange.h"
#include "panel/options/link_settings.h"
#include "panel/system/messages.h"

#include <optional>

namespace cnet::panel {

/**
 * Opens the link, sends one frame and waits for its answer.
 *
 * @param exitCode receives kNoLink, or kDeviceFailed where the user ended it, when the result is
 * empty
 */
std::optional<RawReply> sendFrame(const LinkSettings &settings, const QByteArray &frame,
                                  Messages &messages, int &exitCode);

} // namespace cnet::panel
