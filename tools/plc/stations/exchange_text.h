#pragma once

#include "plc/stations/line.h"

#include <QString>

namespace plc {

/** Describes a frame, for example "station 1: read %DW100 x5". Takes any bytes. */
QString frameInWords(const QByteArray &frame);

/** Makes bytes readable: control characters by name, printable ones as they are, others as hex. */
QString visible(const QByteArray &bytes);

/** "fault: delay, repeat", or nothing where none has fired. */
QString faultsText(const std::vector<Fault> &fired);

/** Two lines for a trace, without the final line end: the request, and what was sent if anything.
 */
QString exchangeText(const Exchange &exchange);

} // namespace plc
