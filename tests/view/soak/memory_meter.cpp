#include "view/soak/memory_meter.h"

#include <QFile>

#include <algorithm>

namespace cnet::view {

namespace {

constexpr double kKbPerMb = 1024;
constexpr double kSecondsPerHour = 3600;
constexpr size_t kLeastOfSlope = 3;

} // namespace

double residentMb()
{
    QFile file(QLatin1String("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) {
            return line.mid(6).simplified().split(' ').first().toDouble() / kKbPerMb;
        }
    }
    return 0;
}

void MemoryMeter::add(double atS, double mb)
{
    m_points.push_back({atS, mb});
}

double MemoryMeter::beginMb() const
{
    const size_t first = std::min(m_points.size(), 1 + m_points.size() / 10);
    double sum = 0;
    for (size_t i = 0; i < first; ++i) {
        sum += m_points[i].mb;
    }
    return first == 0 ? 0 : sum / static_cast<double>(first);
}

double MemoryMeter::mostMb() const
{
    double most = 0;
    for (const Point &point : m_points) {
        most = std::max(most, point.mb);
    }
    return most;
}

double MemoryMeter::lastMb() const
{
    return m_points.empty() ? 0 : m_points.back().mb;
}

double MemoryMeter::slopeMbPerHour() const
{
    if (m_points.size() < kLeastOfSlope) {
        return 0;
    }
    const auto count = static_cast<double>(m_points.size());
    double meanS = 0;
    double meanMb = 0;
    for (const Point &point : m_points) {
        meanS += point.atS / count;
        meanMb += point.mb / count;
    }
    double both = 0;
    double times = 0;
    for (const Point &point : m_points) {
        both += (point.atS - meanS) * (point.mb - meanMb);
        times += (point.atS - meanS) * (point.atS - meanS);
    }
    return times > 0 ? both / times * kSecondsPerHour : 0;
}

double MemoryMeter::riseMb() const
{
    return m_points.empty()
               ? 0
               : slopeMbPerHour() * (m_points.back().atS - m_points.front().atS) / kSecondsPerHour;
}

} // namespace cnet::view
