#pragma once

#include <QString>

#include <optional>

namespace plc {

/**
 * Takes the last part off a setting that is read from its end: "@MS", "*TIMES" or "=VALUE".
 * @param text is cut at the last `mark`, if there is one
 * @return what followed the mark
 */
std::optional<QString> cutBehind(QString &text, QLatin1Char mark);

} // namespace plc
