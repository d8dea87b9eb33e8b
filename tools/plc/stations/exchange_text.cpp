#include "plc/stations/exchange_text.h"

#include "plc/faults/fault_kinds.h"
#include "plc/wire/request.h"

#include <QStringList>

namespace plc {

namespace {

// head st(2) command type(2)
constexpr int kTextPosition = 6;

QString nameOf(char byte)
{
    switch (byte) {
    case kEnq:
        return QLatin1String("[ENQ]");
    case kEot:
        return QLatin1String("[EOT]");
    case kAck:
        return QLatin1String("[ACK]");
    case kNak:
        return QLatin1String("[NAK]");
    case kEtx:
        return QLatin1String("[ETX]");
    default:
        return {};
    }
}

QString refusalText(int code)
{
    struct Row
    {
        Refusal code;
        const char *text;
    };
    static const Row rows[] = {
        {Refusal::TooManyBlocks, "more than 16 blocks"},
        {Refusal::NameTooLong, "name longer than 16 characters"},
        {Refusal::TypeNotSupported, "data type not supported"},
        {Refusal::Malformed, "malformed data or name"},
        {Refusal::NoSuchAddress, "no such device or address"},
        {Refusal::TooManyWords, "more than 60 words"},
        {Refusal::ExtraCharacters, "extra characters"},
        {Refusal::TypesDiffer, "data types differ"},
        {Refusal::NotHexadecimal, "data are not hexadecimal"},
    };
    for (const Row &row : rows) {
        if (static_cast<int>(row.code) == code) {
            return QLatin1String(row.text);
        }
    }
    return QLatin1String("unknown code");
}

QString itemName(const Item &item)
{
    const Point &point = item.first;
    const QString number = point.kind == PointKind::Bit
                               ? QString::number(point.address / 16) +
                                     QString::number(point.address % 16, 16).toUpper()
                               : QString::number(point.address);
    return QLatin1Char('%') + QString(QLatin1Char(point.device)) +
           QLatin1Char(point.kind == PointKind::Word ? 'W' : 'X') + number;
}

QString dataOf(const Item &item)
{
    QStringList values;
    for (const quint16 value : item.data) {
        values << QString::fromLatin1(hex(value, item.first.kind == PointKind::Word ? 4 : 2));
    }
    return values.isEmpty() ? QString() : QLatin1String(" = ") + values.join(QLatin1Char(' '));
}

QString requestInWords(const Request &request)
{
    const bool read =
        request.service == Service::ReadSingle || request.service == Service::ReadBlock;
    const bool block =
        request.service == Service::ReadBlock || request.service == Service::WriteBlock;
    QStringList items;
    for (const Item &item : request.items) {
        items << itemName(item) +
                     (block ? QString::fromLatin1(" x%1").arg(item.count) : QString()) +
                     dataOf(item);
    }
    return QLatin1String(read ? "read " : "write ") + items.join(QLatin1String(", "));
}

QString answerInWords(const QByteArray &answer)
{
    FieldReader reader(answer);
    reader.take(1);
    const QString station = QString::fromLatin1("station %1: ").arg(reader.takeHex(2).value_or(-1));
    if (answer.startsWith(kNak)) {
        reader.take(3);
        const QString code = QString::fromLatin1(answer.mid(kTextPosition, 4));
        return station + QString::fromLatin1("refused, %1 (%2)")
                             .arg(code, refusalText(reader.takeHex(4).value_or(-1)));
    }
    const QByteArray text = answer.mid(kTextPosition);
    const auto end = text.indexOf(kEtx);
    if (end <= 0) {
        return station + QLatin1String("done");
    }
    return station + QLatin1String("data ") + QString::fromLatin1(text.left(end));
}

} // namespace

QString frameInWords(const QByteArray &frame)
{
    if (frame.size() > kCommandPosition && (frame[0] == kAck || frame[0] == kNak)) {
        return answerInWords(frame);
    }
    const std::optional<Envelope> envelope = openEnvelope(frame);
    if (!envelope) {
        return QLatin1String("not a whole request, or its block check is wrong");
    }
    const QString station = QString::fromLatin1("station %1: ").arg(envelope->station);
    const auto wanted = readRequest(*envelope);
    if (const Refusal *refusal = std::get_if<Refusal>(&wanted)) {
        return station + refusalText(static_cast<int>(*refusal));
    }
    return station + requestInWords(std::get<Request>(wanted));
}

QString visible(const QByteArray &bytes)
{
    QString text;
    for (const char byte : bytes) {
        const QString name = nameOf(byte);
        if (!name.isEmpty()) {
            text += name;
        } else if (byte > ' ' && byte < 0x7F && byte != '[' && byte != ']') {
            text += QLatin1Char(byte);
        } else {
            text += QString::fromLatin1("[%1]").arg(
                QString::fromLatin1(hex(static_cast<quint8>(byte), 2)));
        }
    }
    return text;
}

QString faultsText(const std::vector<Fault> &fired)
{
    QStringList names;
    for (const Fault &fault : fired) {
        names << faultName(fault.kind);
    }
    return names.isEmpty() ? QString()
                           : QString::fromLatin1("fault: %1").arg(names.join(QLatin1String(", ")));
}

QString exchangeText(const Exchange &exchange)
{
    QString text = QString::fromLatin1("> %1  %2")
                       .arg(visible(exchange.request), frameInWords(exchange.request));
    text += QLatin1String("\n< ");
    if (exchange.sent.empty()) {
        text += QLatin1String("nothing");
    } else {
        text += visible(joined(exchange.sent));
        text += QLatin1String("  ") + frameInWords(exchange.answer);
        if (const int ms = duration(exchange.sent)) {
            text += QString::fromLatin1(", in %1 ms").arg(ms);
        }
    }
    if (!exchange.fired.empty()) {
        text += QString::fromLatin1("  (%1)").arg(faultsText(exchange.fired));
    }
    return text;
}

} // namespace plc
