#include "panel/system/input_file.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace cnet::panel {

namespace {

class File
{
public:
    // Without waiting: to open a pipe that nobody writes to would take for ever.
    explicit File(const QString &path)
        : m_descriptor(open(QFile::encodeName(path).constData(),
                            O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC))
    {}
    // One that is open already, and stays so.
    explicit File(int descriptor)
        : m_descriptor(descriptor)
        , m_isOwn(false)
    {}
    ~File()
    {
        if (m_descriptor >= 0 && m_isOwn) {
            close(m_descriptor);
        }
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }

    /** @return bytes read, 0 at the end, negative with errno for a failure */
    ssize_t readSome(char *to, size_t most, int patienceMs) const
    {
        pollfd input{m_descriptor, POLLIN, 0};
        const int ready = poll(&input, 1, patienceMs);
        if (ready == 0) {
            errno = ETIMEDOUT;
        }
        return ready == 1 ? read(m_descriptor, to, most) : -1;
    }

private:
    int m_descriptor;
    bool m_isOwn = true;
};

std::optional<QByteArray> readAll(const File &file, const QString &path, int longest,
                                  QString &error, int patienceMs)
{
    const auto fail = [&](int code) {
        error = QString::fromLatin1("cannot read %1: %2").arg(path, qt_error_string(code));
        return std::nullopt;
    };
    if (!file.isOpen()) {
        return fail(errno);
    }
    QByteArray content;
    std::array<char, 65536> bytes{};
    while (content.size() <= longest) {
        const ssize_t count = file.readSome(bytes.data(), bytes.size(), patienceMs);
        if (count == 0) {
            return content;
        }
        if (count < 0 && errno == ETIMEDOUT) {
            error = QString::fromLatin1("cannot read %1: nothing comes from it").arg(path);
            return std::nullopt;
        }
        if (count > 0) {
            content.append(bytes.data(), static_cast<int>(count));
        } else if (errno != EAGAIN && errno != EINTR) {
            return fail(errno);
        }
    }
    error = QString::fromLatin1("%1 cannot be used: it is longer than %2 bytes")
                .arg(path, QString::number(longest));
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> readInputFile(const QString &path, int longest, QString &error,
                                        int patienceMs)
{
    return readAll(File(path), path, longest, error, patienceMs);
}

std::optional<QByteArray> readStandardInput(int longest, QString &error, int patienceMs)
{
    return readAll(File(STDIN_FILENO), QLatin1String("standard input"), longest, error, patienceMs);
}

} // namespace cnet::panel
