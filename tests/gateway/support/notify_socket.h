#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QTemporaryDir>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace cnet::gateway {

/** What a service manager hears. */
class NotifySocket
{
public:
    NotifySocket()
        : m_descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().constData(), sizeof address.sun_path - 1);
        m_isBound =
            bind(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    }
    ~NotifySocket() { close(m_descriptor); }
    NotifySocket(const NotifySocket &) = delete;
    NotifySocket &operator=(const NotifySocket &) = delete;

    bool isBound() const { return m_isBound; }
    QByteArray path() const
    {
        return QFile::encodeName(m_directory.filePath(QLatin1String("notify")));
    }

    /** What was told since the last call. */
    QList<QByteArray> heard() const
    {
        QList<QByteArray> all;
        char part[4096];
        for (ssize_t count = 0; (count = recv(m_descriptor, part, sizeof part, 0)) >= 0;) {
            all.append(QByteArray(part, static_cast<int>(count)));
        }
        return all;
    }

private:
    QTemporaryDir m_directory;
    int m_descriptor;
    bool m_isBound = false;
};

} // namespace cnet::gateway
