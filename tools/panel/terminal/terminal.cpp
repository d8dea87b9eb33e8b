#include "panel/terminal/terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>

namespace cnet::panel {

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

// In the background the change itself would stop the program.
RawTerminal::RawTerminal(int fileDescriptor)
    : m_fileDescriptor(fileDescriptor)
{
    if (isatty(fileDescriptor) != 1 || tcgetpgrp(fileDescriptor) != getpgrp() ||
        tcgetattr(fileDescriptor, &m_before) != 0) {
        return;
    }
    termios raw = m_before;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    raw.c_cc[VMIN] = 0;
    raw.c_cc[VTIME] = 0;
    // Neither lets the program restore the terminal.
    raw.c_cc[VQUIT] = _POSIX_VDISABLE;
    raw.c_cc[VSUSP] = _POSIX_VDISABLE;
    m_active = tcsetattr(fileDescriptor, TCSANOW, &raw) == 0;
}

RawTerminal::~RawTerminal()
{
    if (m_active) {
        tcsetattr(m_fileDescriptor, TCSANOW, &m_before);
    }
}

std::optional<QByteArray> typedKeys(int fileDescriptor)
{
    std::array<char, 256> keys{};
    const ssize_t count = read(fileDescriptor, keys.data(), keys.size());
    if (count > 0) {
        return QByteArray(keys.data(), static_cast<int>(count));
    }
    // Of a terminal that is gone nothing comes, either.
    pollfd end{fileDescriptor, POLLIN, 0};
    const bool isGone = count < 0 || poll(&end, 1, 0) < 0 || (end.revents & POLLHUP) != 0;
    return isGone ? std::nullopt : std::optional<QByteArray>(QByteArray());
}

} // namespace cnet::panel
