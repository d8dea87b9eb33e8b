#include "panel/messages.h"

#include <cstdio>
#include <utility>

namespace panel {

Messages::Messages()
    : m_sink(writeToStandardError)
{}

void Messages::setSink(Sink sink)
{
    m_sink = sink ? std::move(sink) : Sink(writeToStandardError);
}

void Messages::say(const QString &text)
{
    line(QLatin1String("cnet-panel: ") + text);
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

} // namespace panel
