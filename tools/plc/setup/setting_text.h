#pragma once

#include "plc/setup/point_text.h"

#include <vector>

namespace plc {

/** Values of consecutive addresses. */
struct Setting
{
    int station = -1; ///< negative: all stations
    Point first;
    std::vector<quint16> values;
};

/** "[STATION/]REGISTER:ADDRESS=VALUE[,VALUE...]"; values like 12, -3 or 0x1234. */
Parsed<Setting> parseSetting(const QString &text);

} // namespace plc
