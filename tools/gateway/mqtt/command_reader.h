#pragma once

#include "gateway/change/topic_template.h"
#include "gateway/change/write_request.h"
#include "gateway/mqtt/mqtt_connection.h"

#include <optional>

namespace cnet::gateway {

/** A message that wants a tag written. */
struct Command
{
    WriteRequest request;
    QString fault; ///< why nobody needs to be asked, in words; empty: there is nothing wrong
};

/**
 * Reads a message on a command topic: {"id":"7","v":12.5}, or a value as plain text.
 * @return nothing: the topic is of another kind
 */
std::optional<Command> readCommand(const TopicTemplate &topic, const MqttMessage &message);

} // namespace cnet::gateway
