#pragma once

#include <QtGlobal>

namespace cnet::gateway {

/** What this process takes of its machine. */
struct ProcessUsage
{
    double cpuSeconds = 0; ///< in all threads, since it began
    qint64 residentBytes = 0;
    qint64 virtualBytes = 0;
    int openFiles = 0;
};

/** From any thread. What the system does not tell is 0. */
ProcessUsage processUsage();

} // namespace cnet::gateway
