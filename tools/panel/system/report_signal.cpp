#include "panel/system/report_signal.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace cnet::panel {

namespace {

std::array<int, 2> s_pipe{-1, -1};

// Only what is safe in a handler; see StopSignals.
void handle(int /*signal*/)
{
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(s_pipe[1], &byte, 1);
    errno = saved;
}

} // namespace

ReportSignal::ReportSignal(QObject *parent)
    : QObject(parent)
{
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
    // A report must not end what the program is waiting in.
    action.sa_flags = SA_RESTART;
    sigaction(SIGUSR1, &action, nullptr);
}

ReportSignal::~ReportSignal()
{
    if (!m_notifier) {
        return;
    }
    std::signal(SIGUSR1, SIG_DFL);
    m_notifier.reset();
    close(s_pipe[0]);
    close(s_pipe[1]);
}

} // namespace cnet::panel
