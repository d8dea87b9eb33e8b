#include "gateway/mqtt/value_payload.h"

#include "host/value/json_value.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace cnet::gateway {

namespace {

/** As JSON, made once: nearly every value has the same. */
const QByteArray &qualityJson(Quality quality)
{
    static const auto texts = [] {
        std::array<QByteArray, static_cast<size_t>(Quality::LineDown) + 1> made;
        for (size_t i = 0; i < made.size(); ++i) {
            appendJson(made[i], qualityText(static_cast<Quality>(i)));
        }
        return made;
    }();
    return texts[static_cast<size_t>(quality)];
}

} // namespace

void appendPayload(QByteArray &to, const Change &change, SinkBatch::Age age)
{
    to += "{\"v\":";
    appendJson(to, change.value);
    to += ",\"q\":";
    to += qualityJson(change.quality);
    if (!change.cause.isEmpty()) {
        to += ",\"why\":";
        appendJson(to, change.cause);
    }
    to += ",\"t\":";
    appendNumber(to, change.atMs);
    to += age == SinkBatch::Age::Backlog ? ",\"old\":true}" : "}";
}

QByteArray statusPayload(const LineStatus &status)
{
    const bool isGood = status.state == LineStatus::State::Good;
    QByteArray payload = isGood ? "{\"s\":\"good\"" : "{\"s\":\"bad\"";
    if (!status.cause.isEmpty()) {
        payload += ",\"why\":";
        appendJson(payload, status.cause);
    }
    return payload + ",\"t\":" + QByteArray::number(status.atMs) + '}';
}

QByteArray answerPayload(const WriteAnswer &answer)
{
    QJsonObject object;
    const auto add = [&object](const char *key, const QString &text) {
        if (!text.isEmpty()) {
            object.insert(QLatin1String(key), text);
        }
    };
    add("id", answer.id);
    add("line", answer.line);
    add("tag", answer.tag);
    add("outcome", outcomeText(answer.outcome));
    add("why", answer.reason);
    add("v", answer.isNow);
    object.insert(QLatin1String("t"), answer.atMs);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

MqttMessage jsonMessage(const QString &topic, const QByteArray &payload)
{
    static const QString type = QLatin1String("application/json");
    MqttMessage message;
    message.topic = topic;
    message.payload = payload;
    message.contentType = type;
    return message;
}

} // namespace cnet::gateway
