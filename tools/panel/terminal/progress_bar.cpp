#include "panel/terminal/progress_bar.h"

#include "panel/terminal/terminal.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace cnet::panel {

namespace {

const int kLongestBar = 50;
const char kClearLine[] = "\r\x1b[K";

} // namespace

QString progressText(int done, int total, int columns, const char *noun)
{
    const int all = std::max(total, 1);
    const int part = std::clamp(done, 0, all);
    const QString words = QString::fromLatin1(" %1 of %2 %3")
                              .arg(part, static_cast<int>(QString::number(all).size()))
                              .arg(all)
                              .arg(QLatin1String(noun));
    const int brackets = 2;
    const int room = columns - static_cast<int>(words.size()) - brackets;
    const int length = std::min(room, kLongestBar);
    if (length < 1) {
        return words.trimmed().left(std::max(columns, 0));
    }
    const int full = static_cast<int>(static_cast<qint64>(length) * part / all);
    return QLatin1Char('[') + QString(full, QLatin1Char('#')) +
           QString(length - full, QLatin1Char('.')) + QLatin1Char(']') + words;
}

ProgressBar::ProgressBar(Sink sink, int columns, const char *noun)
    : m_sink(std::move(sink))
    , m_columns(columns)
    , m_noun(noun)
{}

void ProgressBar::show(int done, int total)
{
    if (m_sink) {
        // One column less: some terminals wrap when the cursor is behind the last column.
        m_sink(QByteArray(kClearLine) +
               progressText(done, total, m_columns - 1, m_noun).toLatin1());
        m_shown = true;
    }
}

void ProgressBar::clear()
{
    if (m_shown) {
        m_sink(kClearLine);
        m_shown = false;
    }
}

ProgressBar::Sink standardErrorTerminal()
{
    if (!isTerminal(STDERR_FILENO)) {
        return {};
    }
    return [](const QByteArray &bytes) {
        std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
        std::fflush(stderr);
    };
}

} // namespace cnet::panel
