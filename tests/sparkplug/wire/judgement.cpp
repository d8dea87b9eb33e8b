#include "sparkplug/wire/judgement.h"

#include <QProcess>

#include <cstring>

namespace spcheck {

namespace {

constexpr int kMessagesAtOnce = 2000;

/** A field as protoc prints it. */
struct Printed
{
    QByteArray key;
    QByteArray value; ///< without quotation marks
    QList<Printed> fields;

    const Printed *find(const char *wanted) const
    {
        for (const Printed &field : fields) {
            if (field.key == wanted) {
                return &field;
            }
        }
        return nullptr;
    }
    QByteArray text(const char *wanted) const
    {
        const Printed *const field = find(wanted);
        return field == nullptr ? QByteArray("-") : field->value;
    }
};

QByteArray unquoted(const QByteArray &text)
{
    QByteArray plain;
    for (int i = 1; i + 1 < text.size(); ++i) {
        if (text.at(i) != '\\') {
            plain.append(text.at(i));
        } else if (text.at(i + 1) >= '0' && text.at(i + 1) <= '7') {
            plain.append(static_cast<char>(text.mid(i + 1, 3).toInt(nullptr, 8)));
            i += 3;
        } else {
            const char escaped = text.at(++i);
            plain.append(escaped == 'n'   ? '\n'
                         : escaped == 't' ? '\t'
                         : escaped == 'r' ? '\r'
                                          : escaped);
        }
    }
    return plain;
}

QList<Printed> parse(const QList<QByteArray> &lines, int &at)
{
    QList<Printed> fields;
    for (; at < lines.size(); ++at) {
        const QByteArray line = lines.at(at).trimmed();
        Printed field;
        if (line == "}") {
            return fields;
        }
        if (line.endsWith(" {")) {
            field.key = line.left(line.size() - 2);
            field.fields = parse(lines, ++at);
        } else {
            const auto colon = static_cast<int>(line.indexOf(": "));
            field.key = line.left(colon);
            field.value = line.mid(colon + 2);
            field.value = field.value.startsWith('"') ? unquoted(field.value) : field.value;
        }
        if (!line.isEmpty()) {
            fields.append(field);
        }
    }
    return fields;
}

template <typename Bits, typename Number>
QByteArray bitsOf(Number number)
{
    Bits bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return QByteArray::number(static_cast<quint64>(bits));
}

QByteArray valueIn(const Printed &metric)
{
    for (const Printed &field : metric.fields) {
        if (field.key == "int" || field.key == "long") {
            return field.key + ' ' + field.value;
        }
        if (field.key == "float") {
            return "float " + bitsOf<quint32>(field.value.toFloat());
        }
        if (field.key == "double") {
            return "double " + bitsOf<quint64>(field.value.toDouble());
        }
        if (field.key == "bool") {
            return field.value == "true" ? "bool 1" : "bool 0";
        }
        if (field.key == "string") {
            return "string " + field.value;
        }
        if (!field.key.isEmpty() && field.key.at(0) >= '0' && field.key.at(0) <= '9') {
            return "unknown field " + field.key;
        }
    }
    return "none";
}

QByteArray valueIn(const ReadMetric &metric)
{
    static const QList<QByteArray> kNames{"none", "int",    "long",  "float", "double",
                                          "bool", "string", "bytes", "other"};
    const QByteArray &name = kNames.at(static_cast<int>(metric.field));
    if (metric.field == Field::None) {
        return name;
    }
    return name + ' ' +
           (metric.field == Field::Text ? metric.text : QByteArray::number(metric.number));
}

QByteArray numberIn(const std::optional<quint64> &number)
{
    return number ? QByteArray::number(*number) : QByteArray("-");
}

QByteArray textOf(const Printed &message)
{
    QByteArray text = message.text("timestamp") + ' ' + message.text("seq");
    for (const Printed &metric : message.fields) {
        if (metric.key != "metrics") {
            continue;
        }
        text += "\n" + metric.text("name") + ' ' + metric.text("alias") + ' ' +
                metric.text("timestamp") + ' ' + metric.text("datatype") + ' ' +
                (metric.text("isHistorical") == "true" ? "old " : "") +
                (metric.text("isNull") == "true" ? "null " : "") + valueIn(metric);
        const Printed *const properties = metric.find("properties");
        for (const Printed &field : properties == nullptr ? QList<Printed>() : properties->fields) {
            text += field.key == "keys" ? ' ' + field.value : '/' + field.text("type");
        }
    }
    return text;
}

QByteArray textOf(const ReadMessage &message)
{
    QByteArray text = numberIn(message.timestamp) + ' ' + numberIn(message.seq);
    for (const ReadMetric &metric : message.metrics) {
        text += "\n" + metric.name.value_or("-") + ' ' + numberIn(metric.alias) + ' ' +
                numberIn(metric.timestamp) + ' ' + numberIn(metric.datatype) + ' ' +
                (metric.isHistorical ? "old " : "") + (metric.isNull ? "null " : "") +
                valueIn(metric);
        for (const ReadProperty &property : metric.properties) {
            text += ' ' + property.key;
        }
        for (const ReadProperty &property : metric.properties) {
            text += '/' + QByteArray::number(property.type);
        }
    }
    return text;
}

/** Length and message, as a field of a message around them. */
QByteArray wrapped(const QByteArray &payload)
{
    QByteArray bytes(1, '\x0a');
    auto size = static_cast<unsigned>(payload.size());
    for (; size >= 128; size >>= 7) {
        bytes.append(static_cast<char>(size | 128U));
    }
    return bytes + static_cast<char>(size) + payload;
}

QList<Printed> decoded(const QList<Message> &messages)
{
    QProcess protoc;
    protoc.start(QLatin1String(PROTOC),
                 {QLatin1String("--decode=Stream"), QLatin1String("--proto_path=" SPARKPLUG_FIELDS),
                  QLatin1String("fields.proto")});
    protoc.waitForStarted();
    for (const Message &message : messages) {
        protoc.write(wrapped(message.payload));
    }
    protoc.closeWriteChannel();
    protoc.waitForFinished();
    int at = 0;
    return parse(protoc.readAllStandardOutput().split('\n'), at);
}

QList<Message> ownMessages(const Stream &stream)
{
    QList<Message> messages;
    for (const Packet &packet : stream) {
        const bool isOwn =
            packet.kind == Packet::Kind::Publish && packet.from == Packet::From::Node;
        if (isOwn && packet.message.topic.startsWith("spBv1.0/")) {
            messages.append(packet.message);
        } else if (packet.kind == Packet::Kind::Connect && packet.will) {
            messages.append(*packet.will);
        }
    }
    return messages;
}

} // namespace

QStringList otherOpinions(const Stream &stream)
{
    QStringList other;
    const QList<Message> all = ownMessages(stream);
    for (int from = 0; from < all.size(); from += kMessagesAtOnce) {
        const QList<Message> some = all.mid(from, kMessagesAtOnce);
        const QList<Printed> printed = decoded(some);
        if (printed.size() != some.size()) {
            other.append(QString::fromLatin1("protoc reads %1 messages of %2")
                             .arg(printed.size())
                             .arg(some.size()));
            continue;
        }
        for (int i = 0; i < some.size(); ++i) {
            const auto read = readMessage(some.at(i).payload);
            const QByteArray own = read ? textOf(*read) : QByteArray("no message");
            if (own != textOf(printed.at(i))) {
                other.append(QString::fromUtf8(some.at(i).topic + ": protoc reads " +
                                               textOf(printed.at(i)) + ", the checker " + own));
            }
        }
    }
    return other;
}

QStringList faultsOf(const Stream &stream, const Subject &subject)
{
    Checker checker(subject);
    checker.see(stream);
    checker.finish();
    return checker.report().filter(QLatin1String("fail ")) + otherOpinions(stream);
}

} // namespace spcheck
