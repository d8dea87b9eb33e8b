#include "gateway/mqtt/command_reader.h"

#include "gateway/sinks/json_object.h"

#include <QLocale>

namespace cnet::gateway {

namespace {

constexpr int kMostBytes = 4096;
constexpr int kMostOfId = 200;

/** A text, truth or number as text; nothing for anything else. */
std::optional<QString> textOf(const QJsonValue &value)
{
    if (value.isString()) {
        return value.toString();
    }
    if (value.isBool()) {
        return QLatin1String(value.toBool() ? "true" : "false");
    }
    if (value.isDouble()) {
        // A whole number stays exact, where Qt's reader has kept it so.
        const QVariant number = value.toVariant();
        return number.userType() == QMetaType::Double
                   ? QString::number(number.toDouble(), 'g', QLocale::FloatingPointShortest)
                   : QString::number(number.toLongLong());
    }
    return std::nullopt;
}

QString readObject(const QByteArray &payload, WriteRequest &request)
{
    QString error;
    const auto object = readJsonObject(payload, error);
    if (!object) {
        return QLatin1String("the message ") + error;
    }
    request.id = textOf(object->value(QLatin1String("id"))).value_or(QString()).left(kMostOfId);
    const auto value = textOf(object->value(QLatin1String("v")));
    request.value = value.value_or(QString());
    return value ? QString()
                 : QLatin1String("there is no value; expected \"v\" with a number, text or truth");
}

} // namespace

std::optional<Command> readCommand(const TopicTemplate &topic, const MqttMessage &message)
{
    const auto names = topic.read(message.topic);
    if (!names) {
        return std::nullopt;
    }
    Command command;
    WriteRequest &request = command.request;
    request.line = names->line;
    request.tag = names->tag;
    request.arrival =
        message.isRetained ? WriteRequest::Arrival::Retained : WriteRequest::Arrival::Live;
    request.reply.topic = message.responseTopic;
    request.reply.correlation = message.correlation;
    if (message.payload.size() > kMostBytes) {
        command.fault = QString::fromLatin1("the message has more than %1 bytes").arg(kMostBytes);
        return command;
    }
    const QString text = QString::fromUtf8(message.payload).trimmed();
    if (text.contains(QChar(QChar::ReplacementCharacter)) || message.payload.contains('\0')) {
        command.fault = QLatin1String("the message is no text in UTF-8");
    } else if (text.startsWith(QLatin1Char('{'))) {
        command.fault = readObject(message.payload, request);
    } else if (text.isEmpty()) {
        command.fault = QLatin1String("the message is empty");
    } else {
        request.value = text;
    }
    return command;
}

} // namespace cnet::gateway
