#include "gateway/service/service_manager.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <ctime>

namespace cnet::gateway {

namespace {

constexpr qint64 kUsPerMs = 1000;

// A name that begins with @ is in the kernel, and has a zero there.
QByteArray addressOf(const QByteArray &name)
{
    sockaddr_un address{};
    const bool isKnown = name.startsWith('/') || name.startsWith('@');
    if (!isKnown || name.size() >= static_cast<int>(sizeof address.sun_path)) {
        return {};
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
    if (name.startsWith('@')) {
        address.sun_path[0] = '\0';
    }
    const size_t length = offsetof(sockaddr_un, sun_path) + static_cast<size_t>(name.size());
    return QByteArray(reinterpret_cast<const char *>(&address), static_cast<int>(length));
}

// The manager may mean another process, whose environment this one was given.
bool isMeant(const QByteArray &process)
{
    return process.isEmpty() || process.toLongLong() == getpid();
}

} // namespace

ServiceManager::ServiceManager()
    : m_address(addressOf(qgetenv("NOTIFY_SOCKET")))
{
    const qint64 watchdogMs = qgetenv("WATCHDOG_USEC").toLongLong() / kUsPerMs;
    if (watchdogMs > 0 && isMeant(qgetenv("WATCHDOG_PID"))) {
        m_watchdogMs = watchdogMs;
    }
    for (const char *name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"}) {
        qunsetenv(name);
    }
    if (!m_address.isEmpty()) {
        m_descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    }
}

ServiceManager::~ServiceManager()
{
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

// A manager that takes nothing now holds nothing up; it is told again soon.
void ServiceManager::send(const QByteArray &message) const
{
    if (m_descriptor >= 0) {
        sendto(m_descriptor, message.constData(), static_cast<size_t>(message.size()), MSG_NOSIGNAL,
               reinterpret_cast<const sockaddr *>(m_address.constData()),
               static_cast<socklen_t>(m_address.size()));
    }
}

void ServiceManager::tellReloading()
{
    // The manager compares this with its own clock, which is the system's monotonic one.
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const qint64 us = qint64{now.tv_sec} * 1000000 + now.tv_nsec / 1000;
    send("RELOADING=1\nMONOTONIC_USEC=" + QByteArray::number(us));
}

void ServiceManager::tellStatus(const QString &text)
{
    if (text != m_status) {
        m_status = text;
        QByteArray line = text.toUtf8();
        line.replace('\n', ' ');
        send("STATUS=" + line);
    }
}

} // namespace cnet::gateway
