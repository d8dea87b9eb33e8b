#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/sinks/sink.h"

#include "host/time/clock.h"

#include <memory>

namespace cnet::gateway {

/** The sink for settings, of whatever kind they are. @param clock must outlive it */
std::unique_ptr<Sink> makeSink(const SinkSettings &settings, Clock &clock);

} // namespace cnet::gateway
