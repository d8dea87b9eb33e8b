#include "panel/terminal/raw_terminal.h"

#include <unistd.h>

namespace cnet::panel {

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
    raw.c_cc[VMIN] = 1;
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

} // namespace cnet::panel
