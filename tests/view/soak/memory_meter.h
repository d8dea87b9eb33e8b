#pragma once

#include <QString>

#include <vector>

namespace cnet::view {

/** What this process has in memory, in MB; 0 where the system does not tell. */
double residentMb();

/** The memory of a process over time, once it is warm: it must not grow. */
class MemoryMeter
{
public:
    /** @param atS seconds since the start, rising @param mb see residentMb() */
    void add(double atS, double mb);

    int count() const { return static_cast<int>(m_points.size()); }
    /** Of the first tenth, and at least of one; 0 where there is nothing. */
    double beginMb() const;
    double mostMb() const;
    double lastMb() const;
    /** How much it grows along the straight line that fits best; 0 with less than three. */
    double slopeMbPerHour() const;
    /** What that line makes of the time that was measured. */
    double riseMb() const;

private:
    struct Point
    {
        double atS = 0;
        double mb = 0;
    };
    std::vector<Point> m_points;
};

} // namespace cnet::view
