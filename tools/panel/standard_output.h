#pragma once

#include <QByteArray>

namespace panel {

/** Writes to standard output, at once. */
void writeToStandardOutput(const QByteArray &text);

} // namespace panel
