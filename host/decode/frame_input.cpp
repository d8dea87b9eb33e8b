#include "host/decode/frame_input.h"

#include "host/text/byte_text.h"
#include "host/wire/characters.h"
#include "host/wire/frame_splitter.h"

#include <QRegularExpression>

namespace cnet {

namespace {

const int kLongestLine = 65536;
const int kMostErrors = 20;

// What stands within the brackets of this project's trace, or of another log in hexadecimal.
QString partWith(const QRegularExpression &pattern, const QString &line)
{
    const QRegularExpressionMatch match = pattern.match(line);
    return match.hasMatch() ? match.captured(1) : QString();
}

QString traceHex(const QString &line)
{
    static const QRegularExpression brackets(QLatin1String("bytes \\[([0-9A-Fa-f ]+)\\]"));
    return partWith(brackets, line);
}

// From a head character on, with a blank or a sign before it: "12:00:01 TX: 05 30 31 72 ...".
QString loggedHex(const QString &line)
{
    static const QRegularExpression bytes(QLatin1String(
        "(?:^|[\\s:>(\\[=,])((?:0[xX])?(?:05|06|15)(?:[\\s,-]*+(?:0[xX])?[0-9A-Fa-f]{2}){3,}+)"
        "(?![0-9A-Za-z])"));
    return partWith(bytes, line);
}

// A hex dump: the offset before the bytes, the characters behind them.
QString withoutDumpColumns(const QString &line)
{
    static const QRegularExpression dump(QLatin1String(
        "^\\s*0[0-9A-Fa-f]{3,7}:?\\s+((?:[0-9A-Fa-f]{2}\\s{0,2})+?)(?:\\s*\\|.*|\\s{2,}\\S.*)?$"));
    return partWith(dump, line);
}

bool hasMarker(const QString &line)
{
    static const QRegularExpression marker(
        QLatin1String("\\\\x[0-9A-Fa-f]{2}|<(?:ENQ|ACK|NAK|ETX|EOT)>|[\\x03-\\x06\\x15]"));
    return marker.match(line).hasMatch();
}

// A head character in hexadecimal: what follows is meant to be bytes, even where it is none.
bool looksHex(const QString &line)
{
    static const QRegularExpression head(QLatin1String("^\\s*(?:0[xX])?(?:05|06|15)[\\s,-]"));
    return head.match(line).hasMatch();
}

// Station, command and type, as every frame has them.
bool hasAddressee(const QString &line)
{
    static const QRegularExpression addressee(QLatin1String("[0-9A-Fa-f]{2}[rRwW]S[SB]"));
    return addressee.match(line).hasMatch();
}

class FrameFinder
{
public:
    explicit FrameFinder(bool singleLine)
        : m_singleLine(singleLine)
    {}

    void add(const QString &line, int number)
    {
        m_number = number;
        if (line.size() > kLongestLine) {
            fail(kLongestLine, QLatin1String("the line is too long"));
            return;
        }
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || (trimmed.startsWith(QLatin1Char('#')) && !m_singleLine)) {
            return;
        }
        if (!addHex(line) && !addText(line)) {
            flush();
            ++m_found.skippedLines;
        }
    }

    FoundFrames take()
    {
        flush();
        return m_found;
    }

private:
    bool addHex(const QString &line)
    {
        for (const QString &text : {traceHex(line), withoutDumpColumns(line), line}) {
            const ByteText hex = readHexText(text);
            if (hex.isFine() && !hex.bytes.isEmpty()) {
                continueWith(hex.bytes);
                return true;
            }
        }
        if (hasMarker(line)) {
            return false;
        }
        const ByteText logged = readHexText(loggedHex(line));
        if (logged.isFine() && !logged.bytes.isEmpty()) {
            continueWith(logged.bytes);
            return true;
        }
        if (!looksHex(line)) {
            return false;
        }
        const ByteText meant = readHexText(line);
        fail(meant.column, meant.error);
        return true;
    }

    // In hexadecimal a frame may go on in the next line.
    void continueWith(const QByteArray &bytes)
    {
        if (isHead(bytes.at(0)) || m_pending.isEmpty() || endsWithWholeFrame(m_pending)) {
            flush();
            m_pendingLine = m_number;
        }
        m_pending += bytes;
    }

    bool addText(const QString &line)
    {
        const bool marked = hasMarker(line);
        if (!marked && !m_singleLine && !hasAddressee(line)) {
            return false;
        }
        const ByteText text = readEscapedText(line);
        if (!text.isFine()) {
            fail(text.column, text.error);
            return true;
        }
        flush();
        const QVector<QByteArray> frames = splitFrames(text.bytes, Between::Drop);
        for (const QByteArray &frame : frames) {
            m_found.frames.append({frame, m_number});
        }
        if (frames.isEmpty()) {
            m_found.frames.append({text.bytes.trimmed(), m_number});
        }
        return true;
    }

    void flush()
    {
        for (const QByteArray &frame : splitFrames(m_pending, Between::Keep)) {
            m_found.frames.append({frame, m_pendingLine});
        }
        m_pending.clear();
    }

    void fail(int column, const QString &why)
    {
        flush();
        if (m_found.errors.size() < kMostErrors) {
            m_found.errors.append(
                QString::fromLatin1("line %1, column %2: %3").arg(m_number).arg(column).arg(why));
        }
    }

    bool m_singleLine;
    int m_number = 0;
    QByteArray m_pending; ///< bytes in hexadecimal that may go on in the next line
    int m_pendingLine = 0;
    FoundFrames m_found;
};

} // namespace

FoundFrames findFrames(const QByteArray &content)
{
    FrameFinder finder(!content.trimmed().contains('\n'));
    int number = 1;
    for (const QByteArray &line : content.split('\n')) {
        // Not as UTF-8: a dump of a line has any bytes, and the frames are ASCII.
        finder.add(QString::fromLatin1(line), number);
        ++number;
    }
    return finder.take();
}

QByteArray readBytes(const QString &text, QString &error)
{
    const ByteText hex = readHexText(text);
    if (hex.isFine()) {
        return hex.bytes;
    }
    const ByteText read = looksHex(text) && !hasMarker(text) ? hex : readEscapedText(text);
    if (!read.isFine()) {
        error = QString::fromLatin1("column %1: %2").arg(read.column).arg(read.error);
        return {};
    }
    return read.bytes;
}

} // namespace cnet
