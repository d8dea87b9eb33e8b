#include "host/decode/frame_text.h"

#include "host/address/value_text.h"
#include "host/wire/characters.h"
#include "host/wire/frame_words.h"

#include <QStringList>

namespace cnet {

namespace {

QString byteText(char byte)
{
    switch (byte) {
    case kEtx:
        return QLatin1String("<ETX>");
    case kEot:
        return QLatin1String("<EOT>");
    case kEnq:
        return QLatin1String("<ENQ>");
    case kAck:
        return QLatin1String("<ACK>");
    case kNak:
        return QLatin1String("<NAK>");
    case '\\':
        return QLatin1String("\\\\");
    default:
        break;
    }
    const auto code = static_cast<unsigned char>(byte);
    if (code >= 0x20 && code < 0x7f) {
        return QChar::fromLatin1(byte);
    }
    return QLatin1String("\\x") +
           QString::number(code, 16).toUpper().rightJustified(2, QLatin1Char('0'));
}

QString ranges(const DecodedFrame &frame)
{
    const int most = 4;
    QStringList texts;
    for (const FrameRange &range : frame.ranges.mid(0, most)) {
        texts.append(rangeText(range));
    }
    if (frame.ranges.size() > most) {
        texts.append(QString::fromLatin1("... (%1)").arg(frame.ranges.size()));
    }
    return texts.join(QLatin1String("; "));
}

QString saying(const DecodedFrame &frame)
{
    const QString command = QString::fromLatin1(frame.command);
    switch (frame.direction) {
    case FrameDirection::Request:
        return QLatin1String(frame.writes() ? "write " : "read ") + ranges(frame);
    case FrameDirection::Answer:
        return command + (frame.writes() ? QLatin1String(" done")
                                         : QLatin1String(" answered: ") + ranges(frame));
    case FrameDirection::Refusal:
        return command + QLatin1String(" refused: ") +
               (frame.errorCode ? refusalInWords(*frame.errorCode) : QLatin1String("?"));
    case FrameDirection::Unknown:
        break;
    }
    return QString();
}

} // namespace

QString visibleText(const QByteArray &bytes)
{
    QString text;
    for (const char byte : bytes) {
        text += byteText(byte);
    }
    return text;
}

QString rangeText(const FrameRange &range)
{
    const QString what = range.hasAddress ? range.item.text()
                                          : counted(range.item.count, range.isBit ? "bit" : "word");
    return range.values.isEmpty()
               ? what
               : what + QLatin1String(" = ") + valuesText(range.values, range.isBit);
}

QString directionText(FrameDirection direction)
{
    switch (direction) {
    case FrameDirection::Request:
        return QLatin1String("request");
    case FrameDirection::Answer:
        return QLatin1String("answer");
    case FrameDirection::Refusal:
        return QLatin1String("refusal");
    case FrameDirection::Unknown:
        break;
    }
    return QLatin1String("no frame");
}

QString verdictText(FrameVerdict verdict)
{
    switch (verdict) {
    case FrameVerdict::NoFrame:
        return QLatin1String("no frame");
    case FrameVerdict::Malformed:
        return QLatin1String("malformed");
    case FrameVerdict::Cut:
        return QLatin1String("cut");
    case FrameVerdict::WrongCheck:
        return QLatin1String("wrong check");
    case FrameVerdict::Mismatch:
        return QLatin1String("mismatch");
    case FrameVerdict::Good:
        break;
    }
    return QLatin1String("good");
}

QString frameSummary(const DecodedFrame &frame)
{
    if (frame.direction == FrameDirection::Unknown) {
        return QLatin1String("no frame: ") + frame.fault;
    }
    QString text = frame.station < 0 ? QLatin1String("no station")
                                     : QString::fromLatin1("station %1").arg(frame.station);
    const bool said = frame.isGood() || !frame.ranges.isEmpty() || frame.errorCode;
    if (!frame.command.isEmpty()) {
        text += QLatin1String(", ") + (said ? saying(frame) : QString::fromLatin1(frame.command));
    }
    if (!frame.isGood()) {
        text += QString::fromLatin1("; %1 at byte %2: %3")
                    .arg(verdictText(frame.verdict))
                    .arg(frame.faultAt)
                    .arg(frame.fault);
    }
    return text;
}

QString faultLine(const DecodedFrame &frame)
{
    if (frame.isGood()) {
        return QString();
    }
    const auto column = visibleText(frame.bytes.left(frame.faultAt)).size();
    return QString(static_cast<int>(column), QLatin1Char(' ')) + QLatin1String("^ ") + frame.fault;
}

} // namespace cnet
