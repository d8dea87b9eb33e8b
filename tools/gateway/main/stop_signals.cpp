#include "gateway/main/stop_signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace cnet::gateway {

namespace {

// Threads take over what is blocked, so that the signals come to the descriptor alone.
int descriptorOfSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, number);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
}

} // namespace

StopSignals::StopSignals()
    : m_descriptor(descriptorOfSignals())
    , m_notifier(std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        signalfd_siginfo what{};
        if (read(m_descriptor, &what, sizeof what) == static_cast<ssize_t>(sizeof what)) {
            if (what.ssi_signo == SIGHUP) {
                Q_EMIT reloadAsked();
            } else {
                Q_EMIT caught();
            }
        }
    });
}

StopSignals::~StopSignals()
{
    m_notifier.reset();
    close(m_descriptor);
}

} // namespace cnet::gateway
