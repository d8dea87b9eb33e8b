#pragma once

#include "gateway/mqtt/mqtt_connection.h"
#include "gateway/sinks/sink.h"

#include <QByteArray>

namespace cnet::gateway {

/**
 * Appends a change as subscribers get it: {"v":12.5,"q":"good","t":1700000000000}, with "why" for
 * a cause, and with "old":true for one of a backlog, which may not be the newest.
 */
void appendPayload(QByteArray &to, const Change &change, SinkBatch::Age age);

/** How a line or station does, as a payload: {"s":"bad","why":"no answer","t":1700000000000}. */
QByteArray statusPayload(const LineStatus &status);

/** What became of a request: {"id":"7","outcome":"taken",...}. */
QByteArray answerPayload(const WriteAnswer &answer);

/** A message with one of these, or with another payload of JSON; not retained. */
MqttMessage jsonMessage(const QString &topic, const QByteArray &payload);

} // namespace cnet::gateway
