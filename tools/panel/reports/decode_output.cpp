#include "panel/reports/decode_output.h"

#include "host/decode/frame_text.h"
#include "host/wire/frame_words.h"

#include <QJsonArray>
#include <QJsonObject>

namespace cnet::panel {

namespace {

const int kBytesShown = 10;

QByteArray bytesOf(const DecodedFrame &frame, const FrameField &field)
{
    return frame.bytes.mid(field.offset, field.length);
}

QString shortened(const QByteArray &bytes, QString (*text)(const QByteArray &))
{
    return text(bytes.left(kBytesShown)) + QLatin1String(bytes.size() > kBytesShown ? " ..." : "");
}

QString fieldLine(const DecodedFrame &frame, const FrameField &field)
{
    const QByteArray bytes = bytesOf(frame, field);
    QString line = QString::fromLatin1("  %1  %2 %3 %4 %5")
                       .arg(field.offset, 5)
                       .arg(shortened(bytes, hexText), -33)
                       .arg(shortened(bytes, visibleText), -14)
                       .arg(field.name, -12)
                       .arg(field.meaning);
    if (!field.fault.isEmpty()) {
        line += QLatin1String(" ! ") + field.fault;
    }
    return line;
}

QString withoutBlanksBehind(QString line)
{
    while (line.endsWith(QLatin1Char(' '))) {
        line.chop(1);
    }
    return line + QLatin1Char('\n');
}

QJsonObject fieldJson(const DecodedFrame &frame, const FrameField &field)
{
    QJsonObject object{{QLatin1String("offset"), field.offset},
                       {QLatin1String("length"), field.length},
                       {QLatin1String("name"), field.name},
                       {QLatin1String("text"), visibleText(bytesOf(frame, field))},
                       {QLatin1String("meaning"), field.meaning}};
    if (!field.fault.isEmpty()) {
        object.insert(QLatin1String("fault"), field.fault);
        object.insert(QLatin1String("fault_at"), field.faultAt);
    }
    return object;
}

QJsonObject rangeJson(const FrameRange &range)
{
    QJsonObject object{{QLatin1String("station"), range.item.station},
                       {QLatin1String("count"), range.item.count},
                       {QLatin1String("bit"), range.isBit}};
    if (range.hasAddress) {
        object.insert(QLatin1String("item"), range.item.text());
        object.insert(QLatin1String("register"), range.item.reg.name);
        object.insert(QLatin1String("address"), range.item.addressText(0));
    }
    QJsonArray values;
    for (const quint16 value : range.values) {
        values.append(value);
    }
    object.insert(QLatin1String("values"), values);
    return object;
}

template <typename Part, typename Json>
QJsonArray all(const QVector<Part> &parts, Json json)
{
    QJsonArray array;
    for (const Part &part : parts) {
        array.append(json(part));
    }
    return array;
}

} // namespace

QByteArray decodedText(const DecodedFrame &frame)
{
    QString text;
    if (frame.direction != FrameDirection::Unknown) {
        text = directionText(frame.direction) + QLatin1String(": ");
    }
    text +=
        frameSummary(frame) + QLatin1String("\n  ") + visibleText(frame.bytes) + QLatin1Char('\n');
    if (!frame.isGood()) {
        text += QLatin1String("  ") + faultLine(frame) + QLatin1Char('\n');
    }
    for (const FrameField &field : frame.fields) {
        text += withoutBlanksBehind(fieldLine(frame, field));
    }
    return text.toLocal8Bit();
}

QJsonObject decodedJson(const DecodedFrame &frame)
{
    QJsonObject object{
        {QLatin1String("direction"), directionText(frame.direction)},
        {QLatin1String("verdict"), verdictText(frame.verdict)},
        {QLatin1String("summary"), frameSummary(frame)},
        {QLatin1String("bytes"), QString::fromLatin1(frame.bytes.toHex())},
        {QLatin1String("fields"),
         all(frame.fields, [&frame](const FrameField &field) { return fieldJson(frame, field); })},
        {QLatin1String("ranges"), all(frame.ranges, rangeJson)}};
    const auto insert = [&object](const char *name, const QJsonValue &value, bool known) {
        if (known) {
            object.insert(QLatin1String(name), value);
        }
    };
    insert("station", frame.station, frame.station >= 0);
    insert("command", QString::fromLatin1(frame.command), !frame.command.isEmpty());
    insert("error", frame.errorCode.value_or(0), frame.errorCode.has_value());
    insert("check", visibleText(frame.checkFound), !frame.checkExpected.isEmpty());
    insert("check_expected", QString::fromLatin1(frame.checkExpected),
           !frame.checkExpected.isEmpty());
    insert("fault", frame.fault, !frame.isGood());
    insert("fault_at", frame.faultAt, !frame.isGood());
    return object;
}

} // namespace cnet::panel
