#include "gateway/service/listening.h"

#include <QFile>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace cnet::gateway {

namespace {

constexpr int kBacklog = 32;
constexpr int kPatienceSeconds = 5;
// Of a page: thousands of stations.
constexpr int kLongestAnswer = 64 * 1024 * 1024;
const char kFile[] = "status.socket";

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

/** A descriptor that is closed unless it is released. */
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {}
    ~Descriptor()
    {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return m_number >= 0; }
    int get() const { return m_number; }
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};

/** The file in a folder by an address of its own: a folder's name may be too long for one. */
class LocalAddress
{
public:
    explicit LocalAddress(const QString &folder)
        : m_folder(open(QFile::encodeName(folder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC))
    {
        m_address.sun_family = AF_UNIX;
        m_path = "/proc/self/fd/" + QByteArray::number(m_folder.get()) + '/' + kFile;
        std::memcpy(m_address.sun_path, m_path.constData(), static_cast<size_t>(m_path.size()));
    }

    bool isThere() const { return m_folder.isOpen(); }
    const char *path() const { return m_path.constData(); }

    bool bindTo(const Descriptor &own) const { return bind(own.get(), generic(), kSize) == 0; }
    bool connectTo(const Descriptor &own) const
    {
        return connect(own.get(), generic(), kSize) == 0;
    }

private:
    static constexpr socklen_t kSize = sizeof(sockaddr_un);

    const sockaddr *generic() const { return reinterpret_cast<const sockaddr *>(&m_address); }

    Descriptor m_folder;
    sockaddr_un m_address{};
    QByteArray m_path;
};

int portOf(int descriptor)
{
    sockaddr_in6 address{}; // long enough for both families, and the port is at one place
    socklen_t size = sizeof address;
    getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    return ntohs(address.sin6_port);
}

bool bindTo(const Descriptor &own, const ListenAddress &address)
{
    const auto port = htons(static_cast<quint16>(address.port));
    if (address.isIpv6) {
        sockaddr_in6 six{};
        six.sin6_family = AF_INET6;
        six.sin6_port = port;
        six.sin6_addr = in6addr_loopback;
        return bind(own.get(), reinterpret_cast<const sockaddr *>(&six), sizeof six) == 0;
    }
    sockaddr_in four{};
    four.sin_family = AF_INET;
    four.sin_port = port;
    four.sin_addr.s_addr = htonl(address.ipv4);
    return bind(own.get(), reinterpret_cast<const sockaddr *>(&four), sizeof four) == 0;
}

} // namespace

QString listeningFile()
{
    return QLatin1String(kFile);
}

std::optional<Listening> listenOnLoopback(const ListenAddress &address, QString &error)
{
    Descriptor own(socket(address.isIpv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int yes = 1;
    // A gateway that was started anew need not wait for connections of the one before it.
    setsockopt(own.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (!own.isOpen() || !bindTo(own, address) || listen(own.get(), kBacklog) != 0) {
        error = QString::fromLatin1("cannot listen at %1: %2").arg(address.text, systemError());
        return std::nullopt;
    }
    const int port = portOf(own.get());
    return Listening{own.release(), port};
}

std::optional<Listening> listenInFolder(const QString &folder, QString &error)
{
    const LocalAddress address(folder);
    Descriptor own(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    {
        const Descriptor other(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        if (address.connectTo(other)) {
            error = QString::fromLatin1("another gateway tells of itself in %1").arg(folder);
            return std::nullopt;
        }
    }
    unlink(address.path());
    constexpr mode_t kOwnerAndGroup = 0660;
    if (!address.isThere() || !own.isOpen() || !address.bindTo(own) ||
        chmod(address.path(), kOwnerAndGroup) != 0 || listen(own.get(), kBacklog) != 0) {
        error = QString::fromLatin1("cannot listen in %1: %2").arg(folder, systemError());
        return std::nullopt;
    }
    return Listening{own.release(), 0};
}

void stopListeningInFolder(const QString &folder)
{
    unlink(LocalAddress(folder).path());
}

std::optional<QByteArray> askInFolder(const QString &folder, const QByteArray &path, QString &error)
{
    const LocalAddress address(folder);
    const Descriptor own(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval patience{kPatienceSeconds, 0};
    setsockopt(own.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(own.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    const QByteArray request = "GET " + path + " HTTP/1.0\r\nHost: localhost\r\n\r\n";
    if (!address.isThere() || !address.connectTo(own) ||
        send(own.get(), request.constData(), static_cast<size_t>(request.size()), MSG_NOSIGNAL) !=
            request.size()) {
        const bool isNobody = errno == ENOENT || errno == ECONNREFUSED;
        error = isNobody ? QString::fromLatin1("no gateway runs in %1").arg(folder)
                         : QString::fromLatin1("cannot ask in %1: %2").arg(folder, systemError());
        return std::nullopt;
    }
    QByteArray answer;
    char part[16384];
    ssize_t count = 0;
    while (answer.size() < kLongestAnswer && (count = recv(own.get(), part, sizeof part, 0)) > 0) {
        answer.append(part, static_cast<int>(count));
    }
    const int body = static_cast<int>(answer.indexOf("\r\n\r\n"));
    if (count != 0 || body < 0 || !answer.startsWith("HTTP/1.") || answer.mid(9, 3) != "200") {
        error = QString::fromLatin1("the gateway in %1 does not say how it stands").arg(folder);
        return std::nullopt;
    }
    return answer.mid(body + 4);
}

} // namespace cnet::gateway
