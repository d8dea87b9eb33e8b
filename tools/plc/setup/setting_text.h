#pragma once

#include "plc/setup/point_text.h"

#include <QString>

#include <optional>
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

/**
 * Takes the last part off a setting that is read from its end: "@MS", "*TIMES" or "=VALUE".
 * @param text is cut at the last `mark`, if there is one
 * @return what followed the mark
 */
std::optional<QString> cutBehind(QString &text, QLatin1Char mark);

} // namespace plc
