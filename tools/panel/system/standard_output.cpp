#include "panel/system/standard_output.h"

#include "panel/system/stop_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace cnet::panel {

namespace {

int s_error = 0; ///< of standard output, as errno tells it; 0: none yet

bool writeAll(const char *data, qint64 length)
{
    while (length > 0 && s_error == 0) {
        const ssize_t written = write(STDOUT_FILENO, data, static_cast<size_t>(length));
        if (written >= 0) {
            data += written;
            length -= written;
        } else if (errno != EINTR || StopSignals::isCaught()) {
            s_error = errno;
        }
    }
    return s_error == 0;
}

} // namespace

void keepStandardStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // Opened the other way round, so that using it is an error as it was. The lowest
            // number that is free is the stream's own.
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

bool writeToStandardOutput(const QByteArray &text)
{
    return writeAll(text.constData(), text.size());
}

OutputState standardOutputState(QString &reason)
{
    if (s_error == 0) {
        return OutputState::Fine;
    }
    reason = qt_error_string(s_error);
    return s_error == EINTR ? OutputState::Interrupted : OutputState::Failed;
}

void resetStandardOutput()
{
    s_error = 0;
}

qint64 StandardOutput::readData(char * /*data*/, qint64 /*longest*/)
{
    return -1;
}

// The output that uses this device does not look at what becomes of it.
qint64 StandardOutput::writeData(const char *data, qint64 length)
{
    if (!writeAll(data, length) && !m_failed) {
        m_failed = true;
        Q_EMIT failed();
    }
    return length;
}

} // namespace cnet::panel
