#include "host/wire/frame_words.h"

#include "host/wire/answer_shape.h"
#include "host/wire/block_check.h"
#include "host/wire/characters.h"

#include <QStringList>

#include <algorithm>

namespace cnet {

namespace {

struct CodeName
{
    int code;
    const char *name;
};

// The error codes of the MASTER-K manuals.
const CodeName kCodeNames[] = {
    {0x0003, "more than 16 blocks"},
    {0x0004, "name longer than 16 characters"},
    {0x0007, "data type of the name not supported"},
    {0x0011, "malformed data or name"},
    {0x1132, "no such device, or address outside the device"},
    {0x1232, "more than 60 words in one request"},
    {0x1234, "more characters in the frame than the request needs"},
    {0x1332, "data types of one request differ"},
    {0x1432, "data that are not hexadecimal"},
};

QString latin1(const QByteArray &text)
{
    return QString::fromLatin1(text);
}

// Fields of a frame's body from left to right; what lies beyond its end reads as empty or 0.
class Fields
{
public:
    explicit Fields(const QByteArray &body)
        : m_body(body)
    {}

    QByteArray take(int count)
    {
        QByteArray field = m_body.left(count);
        m_body.remove(0, count);
        return field;
    }

    int takeNumber() { return take(2).toInt(nullptr, 16); }
    bool atEnd() const { return m_body.isEmpty(); }
    QByteArray rest() const { return m_body; }

private:
    QByteArray m_body;
};

// "10 bytes 0001 0002": data in groups of four characters, as a PLC word has.
QString dataInWords(const QByteArray &data)
{
    const int digits = 4;
    const int size = static_cast<int>(data.size());
    QByteArray text;
    text.reserve(size + size / digits + 1);
    for (int at = 0; at < size; at += digits) {
        if (at > 0) {
            text += ' ';
        }
        text.append(data.constData() + at, std::min(digits, size - at));
    }
    return latin1(text);
}

QString singleRequestInWords(Fields fields, bool writes)
{
    QStringList names;
    for (int blocks = fields.takeNumber(); blocks > 0 && !fields.atEnd(); --blocks) {
        QByteArray name = fields.take(fields.takeNumber());
        QString text = latin1(name);
        if (writes) {
            const int digits = name.mid(2, 1).toUpper() == "X" ? 2 : 4;
            text += QLatin1String(" = ") + latin1(fields.take(digits));
        }
        names.append(text);
    }
    return names.join(QLatin1String(", "));
}

QString blockRequestInWords(Fields fields, bool writes)
{
    const QString name = latin1(fields.take(fields.takeNumber()));
    const int words = fields.takeNumber();
    const QString text = QString::fromLatin1("%1 words from %2").arg(words).arg(name);
    return writes ? text + QLatin1String(" = ") + dataInWords(fields.rest()) : text;
}

QString requestInWords(const QByteArray &command, const QByteArray &body)
{
    const bool writes = command.left(1).toLower() == "w";
    const bool single = command.mid(1) == "SS";
    if (!single && command.mid(1) != "SB") {
        return QString::fromLatin1("command %1").arg(latin1(command));
    }
    return QString::fromLatin1("%1 %2").arg(QLatin1String(writes ? "write" : "read"),
                                            single ? singleRequestInWords(Fields(body), writes)
                                                   : blockRequestInWords(Fields(body), writes));
}

QString answerInWords(const QByteArray &command, const QByteArray &body)
{
    if (body.isEmpty()) {
        return QLatin1String("done");
    }
    Fields fields(body);
    QStringList blocks;
    for (int count = fields.takeNumber(); count > 0 && !fields.atEnd(); --count) {
        blocks.append(dataInWords(fields.take(2 * fields.takeNumber())));
    }
    return QString::fromLatin1("%1 answered: %2")
        .arg(latin1(command), blocks.join(QLatin1String(", ")));
}

// Head st(2) command(3)
const int kBodyPosition = 6;

} // namespace

QString frameInWords(const QByteArray &frame)
{
    if (frame.isEmpty()) {
        return QLatin1String("nothing");
    }
    const char head = frame.at(0);
    const int tail = static_cast<int>(frame.indexOf(head == kEnq ? kEot : kEtx));
    if (!isHead(head)) {
        return QLatin1String("no frame");
    }
    if (tail < kBodyPosition) {
        return QLatin1String("a frame without its end");
    }
    const QByteArray command = frame.mid(kCommandPosition, 3);
    const QByteArray body = frame.mid(kBodyPosition, tail - kBodyPosition);
    const int station = stationOf(frame);
    QString text = station < 0 ? QString(QLatin1String("no station, "))
                               : QString::fromLatin1("station %1, ").arg(station);
    if (head == kEnq) {
        text += requestInWords(command, body);
    } else if (head == kAck) {
        text += answerInWords(command, body);
    } else {
        const std::optional<int> code = refusalCode(frame);
        text += QString::fromLatin1("%1 refused: %2")
                    .arg(latin1(command), code ? refusalInWords(*code) : QLatin1String("?"));
    }
    if (hasBlockCheck(command.at(0)) &&
        frame.mid(tail + 1, kBlockCheckLength) != blockCheck(frame, tail + 1)) {
        text += QLatin1String(" (block check wrong)");
    }
    return text;
}

std::optional<int> refusalCode(const QByteArray &frame)
{
    if (!frame.startsWith(kNak)) {
        return std::nullopt;
    }
    bool ok = false;
    const int code = frame.mid(kBodyPosition, 4).toInt(&ok, 16);
    return ok ? std::optional<int>(code) : std::nullopt;
}

bool isWriteRequest(const QByteArray &frame)
{
    const char command = frame.size() > kCommandPosition ? frame.at(kCommandPosition) : '\0';
    return command == 'w' || command == 'W';
}

QString refusalInWords(int code)
{
    const char *name = "an unknown error code";
    for (const CodeName &entry : kCodeNames) {
        if (entry.code == code) {
            name = entry.name;
        }
    }
    return QString::fromLatin1("%1, %2")
        .arg(code, 4, 16, QLatin1Char('0'))
        .arg(QLatin1String(name));
}

QString hexText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

} // namespace cnet
