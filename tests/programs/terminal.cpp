#include "terminal.h"

#include "support/terminal_grid.h"

#include <QElapsedTimer>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <array>
#include <csignal>
#include <cstring>
#include <ctime>
#include <utility>
#include <vector>

namespace {

const int kPatienceMs = 30000;

bool areEqual(const termios &left, const termios &right)
{
    return left.c_iflag == right.c_iflag && left.c_oflag == right.c_oflag &&
           left.c_cflag == right.c_cflag && left.c_lflag == right.c_lflag &&
           std::memcmp(left.c_cc, right.c_cc, sizeof left.c_cc) == 0;
}

} // namespace

Terminal::~Terminal()
{
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    for (const int end : {m_master, m_slave}) {
        if (end >= 0) {
            close(end);
        }
    }
}

void Terminal::setSize(int columns, int rows)
{
    m_columns = columns;
    m_rows = rows;
}

bool Terminal::start(const QList<QByteArray> &command)
{
    winsize size{};
    size.ws_col = static_cast<unsigned short>(m_columns);
    size.ws_row = static_cast<unsigned short>(m_rows);
    if (openpty(&m_master, &m_slave, nullptr, nullptr, &size) != 0 ||
        tcgetattr(m_slave, &m_before) != 0) {
        return false;
    }
    std::vector<char *> arguments;
    for (const QByteArray &argument : command) {
        arguments.push_back(const_cast<char *>(argument.constData()));
    }
    arguments.push_back(nullptr);
    m_child = fork();
    if (m_child == 0) {
        close(m_master);
        login_tty(m_slave);
        setenv("TERM", "xterm", 1);
        execv(arguments.front(), arguments.data());
        _exit(127);
    }
    return m_child > 0;
}

bool Terminal::shows(const QByteArray &text)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kPatienceMs) {
        const auto at = m_shown.indexOf(text, m_seen);
        if (at >= 0) {
            m_seen = static_cast<int>(at + text.size());
            return true;
        }
        if (!readMore(kPatienceMs)) {
            break;
        }
    }
    return false;
}

bool Terminal::displays(const QByteArray &text)
{
    QElapsedTimer clock;
    clock.start();
    while (!screen().contains(text)) {
        if (clock.elapsed() > kPatienceMs || !readMore(kPatienceMs)) {
            return false;
        }
    }
    return true;
}

QByteArray Terminal::screen() const
{
    TerminalGrid grid(m_columns, m_rows);
    grid.write(m_shown);
    return grid.text().toUtf8();
}

bool Terminal::type(const QByteArray &keys)
{
    return write(m_master, keys.constData(), static_cast<size_t>(keys.size())) == keys.size();
}

void Terminal::signal(int number)
{
    kill(m_child, number);
}

bool Terminal::stopOutput(bool stop)
{
    return tcflow(m_slave, stop ? TCOOFF : TCOON) == 0;
}

bool Terminal::isAsUsual() const
{
    termios settings{};
    return tcgetattr(m_slave, &settings) == 0 && (settings.c_lflag & ICANON) != 0 &&
           (settings.c_lflag & ECHO) != 0;
}

bool Terminal::isAsBefore() const
{
    termios settings{};
    return tcgetattr(m_slave, &settings) == 0 && areEqual(settings, m_before);
}

// The terminal itself does not end with its program, for this end keeps it open.
int Terminal::wait()
{
    QElapsedTimer clock;
    clock.start();
    int status = -1;
    while (waitpid(m_child, &status, WNOHANG) == 0) {
        if (clock.elapsed() > kPatienceMs) {
            return -1;
        }
        readMore(10);
    }
    while (readMore(0)) {
    }
    return exitCode(status);
}

int Terminal::signalUntilEnd(int number)
{
    // One that comes while it ends already would kill it.
    constexpr int kMostSignals = 30;
    constexpr int kLooksPerSignal = 40;
    constexpr timespec kPause{0, 10000000};
    int status = -1;
    for (int i = 0; i < kMostSignals * kLooksPerSignal; ++i) {
        if (i % kLooksPerSignal == 0) {
            kill(m_child, number);
        }
        nanosleep(&kPause, nullptr);
        if (waitpid(m_child, &status, WNOHANG) == m_child) {
            return exitCode(status);
        }
    }
    return -1;
}

int Terminal::exitCode(int status)
{
    m_child = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool Terminal::readMore(int waitMs)
{
    pollfd end{m_master, POLLIN, 0};
    std::array<char, 4096> bytes{};
    if (poll(&end, 1, waitMs) != 1) {
        return false;
    }
    const ssize_t count = read(m_master, bytes.data(), bytes.size());
    if (count > 0) {
        m_shown.append(bytes.data(), static_cast<int>(count));
    }
    return count > 0;
}
