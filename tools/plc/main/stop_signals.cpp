#include "plc/main/stop_signals.h"

#include <QCoreApplication>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace plc {

namespace {

// A signal may arrive at any instruction. Writing to a pipe is one of the few things its handler
// may do.
int pipeEnds[2] = {-1, -1}; // NOLINT(misc-use-anonymous-namespace)
volatile std::sig_atomic_t caught = 0;

void onSignal(int /*number*/)
{
    caught = 1;
    const char byte = 0;
    const ssize_t ignored = write(pipeEnds[1], &byte, 1);
    static_cast<void>(ignored);
}

void handle(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a write to a reader that never reads would keep the program alive.
    sigaction(number, &action, nullptr);
}

} // namespace

StopSignals::StopSignals(QObject *parent)
    : QObject(parent)
{
    // The stations keep running when the reader of the trace goes away.
    handle(SIGPIPE, SIG_IGN);
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [] { QCoreApplication::quit(); });
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        handle(number, onSignal);
    }
}

bool StopSignals::isCaught()
{
    return caught != 0;
}

StopSignals::~StopSignals()
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        handle(number, SIG_DFL);
    }
    m_notifier.reset();
    for (int &end : pipeEnds) {
        if (end >= 0) {
            close(end);
            end = -1;
        }
    }
}

} // namespace plc
