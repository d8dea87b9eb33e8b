#pragma once

#include <QString>

namespace cnet {

/** What a frame served: the driver's request without its kilobyte of values. */
struct RequestRange
{
    int opKind = 0;
    int stationNo = 0;
    QString regName;
    int startAddr = 0;
    int count = 0;
};

} // namespace cnet
