#include "panel/system/messages.h"

#include <cstdio>
#include <utility>

namespace cnet::panel {

namespace {

const int kLongestLine = 600;

// Arguments, file names and the system's own texts may hold anything. What was given stands at the
// beginning of a message and what was expected at its end, so a long one is shortened in the
// middle.
QString oneLine(const QString &text)
{
    QString line = text;
    if (line.size() > kLongestLine) {
        line = text.left(kLongestLine / 2) + QLatin1String("...") + text.right(kLongestLine / 2);
    }
    for (QChar &letter : line) {
        if (!letter.isPrint()) {
            letter = QLatin1Char('?');
        }
    }
    return line;
}

} // namespace

Messages::Messages()
    : m_sink(writeToStandardError)
{}

void Messages::setSink(Sink sink)
{
    m_sink = sink ? std::move(sink) : Sink(writeToStandardError);
}

void Messages::say(const QString &text)
{
    line(QLatin1String("cnet-panel: ") + oneLine(text));
}

void Messages::sayLost(const QString &text)
{
    m_outputLost = true;
    say(text);
}

void Messages::line(const QString &text)
{
    m_sink(text);
}

void writeToStandardError(const QString &line)
{
    const QByteArray bytes = line.toLocal8Bit() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
    std::fflush(stderr);
}

} // namespace cnet::panel
