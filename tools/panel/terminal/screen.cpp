#include "panel/terminal/screen.h"

#include "panel/terminal/screen_text.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace cnet::panel {

namespace {

const char kHideCursor[] = "\x1b[?25l";
const char kShowCursor[] = "\x1b[?25h";
const char kClearToLineEnd[] = "\x1b[K";
const char kClearBelow[] = "\x1b[J";
const char kClearAll[] = "\x1b[2J\x1b[H";

} // namespace

Screen::Screen(QIODevice &device, std::function<QSize()> size)
    : m_device(device)
    , m_size(std::move(size))
{
    m_device.write(kHideCursor);
}

Screen::~Screen()
{
    m_device.write(kShowCursor);
}

QByteArray Screen::backToTop() const
{
    const auto up = m_shown.size();
    return up == 0 ? QByteArray("\r") : "\r\x1b[" + QByteArray::number(up) + 'A';
}

void Screen::draw()
{
    QByteArray bytes = backToTop();
    for (const QString &line : std::as_const(m_lines)) {
        bytes += line.toLocal8Bit() + kClearToLineEnd + "\r\n";
    }
    bytes += kClearBelow;
    m_device.write(bytes);
    m_shown = m_lines;
}

void Screen::refresh(const Monitor &monitor, const MonitorStatus &status)
{
    const QSize size = m_size();
    // A terminal that was made narrower has wrapped the old lines, so their number is not known.
    if (m_lastSize.isValid() && size != m_lastSize) {
        m_device.write(kClearAll);
        m_shown.clear();
    }
    m_lastSize = size;
    // The cursor stands below the last line, which takes a row of its own.
    const int rowsBelow = m_bottomLine.isEmpty() ? 1 : 2;
    m_lines = screenText(monitor, status, size.width(), std::max(1, size.height() - rowsBelow),
                         m_scrolled);
    if (!m_bottomLine.isEmpty()) {
        m_lines.append(m_bottomLine.right(size.width()));
    }
    draw();
}

void Screen::end(const Monitor &monitor, const MonitorStatus &status)
{
    refresh(monitor, status);
}

void Screen::say(const QString &line)
{
    m_device.write(backToTop() + kClearBelow + line.toLocal8Bit() + "\r\n");
    m_shown.clear();
    draw();
}

bool isTerminal(int fileDescriptor)
{
    const QByteArray kind = qgetenv("TERM");
    return isatty(fileDescriptor) == 1 && !kind.isEmpty() && kind != "dumb";
}

QSize terminalSize(int fileDescriptor)
{
    winsize size{};
    if (ioctl(fileDescriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        return {80, 24};
    }
    return {size.ws_col, size.ws_row};
}

} // namespace cnet::panel
