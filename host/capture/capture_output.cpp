#include "host/capture/capture_output.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace cnet {

namespace {

// A reader that lags behind catches up within this; one that was stopped must not stop the line.
constexpr int kPatienceMs = 200;

bool isRegularFile(int descriptor, qint64 &size)
{
    struct stat status = {};
    const bool regular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    size = regular ? status.st_size : 0;
    return regular;
}

} // namespace

bool CaptureOutput::fail(const QString &text)
{
    m_error = text;
    return false;
}

bool CaptureOutput::fail(int code)
{
    return fail(qt_error_string(code));
}

// Without waiting, since a pipe that nobody reads would be waited for for ever. After that writing
// may wait as usual.
bool CaptureOutput::open(const QString &path)
{
    close();
    const mode_t everybody = 0666;
    m_descriptor = ::open(QFile::encodeName(path).constData(),
                          O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, everybody);
    if (m_descriptor < 0) {
        return fail(errno == ENXIO ? QLatin1String("nobody reads from this pipe")
                                   : qt_error_string(errno));
    }
    m_regular = isRegularFile(m_descriptor, m_size);
    if (m_regular && flock(m_descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        close();
        return fail(QLatin1String("another program writes a capture there"));
    }
    fcntl(m_descriptor, F_SETFL, fcntl(m_descriptor, F_GETFL) & ~O_NONBLOCK);
    return true;
}

bool CaptureOutput::openStandardOutput()
{
    close();
    if (isatty(STDOUT_FILENO) == 1) {
        return fail(QLatin1String("it is a terminal; a capture goes into a pipe, for example "
                                  "| wireshark -k -i -"));
    }
    m_descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (m_descriptor < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        return fail(errno);
    }
    // Never emptied: somebody may have written to it before, or append to it.
    m_regular = false;
    return true;
}

void CaptureOutput::close()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
    m_descriptor = -1;
    m_readerSlow = false;
}

bool CaptureOutput::empty()
{
    if (!m_regular) {
        return true;
    }
    if (ftruncate(m_descriptor, 0) != 0 || lseek(m_descriptor, 0, SEEK_SET) != 0) {
        return fail(errno);
    }
    m_size = 0;
    return true;
}

// It is waited for once; as long as it has not read since then, no frame on the line waits for it.
bool CaptureOutput::readerHasRoom()
{
    pollfd output{m_descriptor, POLLOUT, 0};
    const int ready = poll(&output, 1, m_readerSlow ? 0 : kPatienceMs);
    m_readerSlow = ready <= 0;
    return !m_readerSlow;
}

CaptureWrite CaptureOutput::write(const QByteArray &block)
{
    const auto length = static_cast<qint64>(block.size());
    qint64 done = 0;
    while (done < length) {
        if (!m_regular && !readerHasRoom()) {
            if (done == 0) {
                return CaptureWrite::Dropped;
            }
            fail(QLatin1String("its reader stopped in the middle of a packet"));
            return CaptureWrite::Failed;
        }
        const ssize_t written = ::write(m_descriptor, block.constData() + done,
                                        static_cast<std::size_t>(length - done));
        if (written >= 0) {
            done += written;
        } else if (errno != EINTR) {
            fail(errno);
            // What stands there stays readable: no half block at the end.
            [[maybe_unused]] const int cut = m_regular ? ftruncate(m_descriptor, m_size) : 0;
            return CaptureWrite::Failed;
        }
    }
    m_size += length;
    return CaptureWrite::Done;
}

bool CaptureOutput::writeAll(const QByteArray &block)
{
    const CaptureWrite result = write(block);
    if (result == CaptureWrite::Dropped) {
        fail(QLatin1String("nobody reads it"));
    }
    return result == CaptureWrite::Done;
}

QString ringFile(const QString &path, int age)
{
    const QString suffix = QFileInfo(path).suffix();
    const QString end = suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix;
    return path.left(path.size() - end.size()) + QString::fromLatin1(".%1").arg(age) + end;
}

bool makeRoomInRing(const QString &path, int files)
{
    const auto bytes = [](const QString &name) { return QFile::encodeName(name); };
    if (files < 2) {
        return true;
    }
    for (int age = files - 1; age > 1; --age) {
        // One that is not there yet leaves a gap, which closes by itself.
        std::rename(bytes(ringFile(path, age - 1)).constData(),
                    bytes(ringFile(path, age)).constData());
    }
    return std::rename(bytes(path).constData(), bytes(ringFile(path, 1)).constData()) == 0 ||
           errno == ENOENT;
}

} // namespace cnet
