#include "panel/system/stop_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace cnet::panel {

namespace {

const std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};

std::array<int, 2> s_pipe{-1, -1};
volatile std::sig_atomic_t s_caught = 0;

// Only what is safe in a handler: one byte into a pipe whose other end the event loop watches.
void handle(int /*signal*/)
{
    const int saved = errno;
    s_caught = 1;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(s_pipe[1], &byte, 1);
    errno = saved;
}

} // namespace

StopSignals::StopSignals(QObject *parent)
    : QObject(parent)
{
    s_caught = 0;
    if (pipe2(s_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(s_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(s_pipe[0], &byte, 1) == 1) {
        }
        Q_EMIT caught();
    });
    struct sigaction action = {};
    action.sa_handler = handle;
    for (const int number : kSignals) {
        sigaction(number, &action, nullptr);
    }
}

bool StopSignals::isCaught()
{
    return s_caught != 0;
}

StopSignals::~StopSignals()
{
    if (!m_notifier) {
        return;
    }
    for (const int number : kSignals) {
        std::signal(number, SIG_DFL);
    }
    m_notifier.reset();
    close(s_pipe[0]);
    close(s_pipe[1]);
}

} // namespace cnet::panel
