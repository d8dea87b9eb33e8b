#pragma once

#include <QString>

namespace plc {

/**
 * Turns any text into one short line that a terminal shows as it is. A message begins with what was
 * given and ends with what was expected, so the middle of a long one is left out.
 */
QString oneLine(QString text);

} // namespace plc
