#pragma once

#include "host/decode/decoded_frame.h"
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

/** How long to wait for the answer to a request that is sent as it is, in milliseconds. */
int patienceFor(const LinkSettings &settings, const DecodedFrame &request);

/** What came back, as a line of a trace. */
void traceReply(const RawReply &raw, Messages &messages);

} // namespace cnet::panel
