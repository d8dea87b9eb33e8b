#include "gateway/status/process_usage.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QList>

#include <sys/resource.h>
#include <unistd.h>

namespace cnet::gateway {

namespace {

double secondsOf(const timeval &time)
{
    constexpr double kMicroseconds = 1e6;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / kMicroseconds;
}

} // namespace

ProcessUsage processUsage()
{
    ProcessUsage usage;
    rusage times{};
    if (getrusage(RUSAGE_SELF, &times) == 0) {
        usage.cpuSeconds = secondsOf(times.ru_utime) + secondsOf(times.ru_stime);
    }
    QFile pages(QLatin1String("/proc/self/statm"));
    if (pages.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> counts = pages.readAll().split(' ');
        const qint64 pageBytes = sysconf(_SC_PAGESIZE);
        usage.virtualBytes = counts.value(0).toLongLong() * pageBytes;
        usage.residentBytes = counts.value(1).toLongLong() * pageBytes;
    }
    const QDir files(QLatin1String("/proc/self/fd"));
    usage.openFiles = static_cast<int>(
        files.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
    return usage;
}

} // namespace cnet::gateway
